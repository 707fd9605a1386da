#include "cli/NamedDestinations.h"

#include "cli/Answers.h"
#include "cli/ServerUrl.h"
#include "common/Exceptions.h"
#include "common/Platform.h"
#include "common/Text.h"

namespace {

CSettingsStore::Scope ScopeOf(const CFTPDestination& destination)
{
    return destination.allUsers ? CSettingsStore::Scope::Machine : CSettingsStore::Scope::User;
}

void RequireStorable(const QString& text, StringId part)
{
    if (text.size() > CFTPDestinations::MaxTextLength) {
        throw CWrongUse(Text(StringId::DestinationPartTooLong, Text(part),
                             static_cast<int>(CFTPDestinations::MaxTextLength)));
    }
}

void RequireUsableName(const QString& name)
{
    if (name.trimmed().isEmpty()) {
        throw CWrongUse(Text(StringId::DestinationNameEmpty));
    }
    for (const QChar character : name) {
        if (character.category() == QChar::Other_Control) {
            throw CWrongUse(Text(StringId::DestinationNameNotPrintable));
        }
    }
}

QString Joined(const std::vector<CFTPDestination>& destinations,
               const QString& (*text)(const CFTPDestination&))
{
    QStringList texts;
    for (const CFTPDestination& destination : destinations) {
        texts += WithoutPassword(text(destination));
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace

CNamedDestinations::CNamedDestinations(CSettingsStore& store, const CPasswordProtection& protection,
                                       CKeyring* keyring)
    : store(store), protection(protection), destinations(store, protection, keyring)
{}

void CNamedDestinations::Add(const FTPDestinationConnection& connection, Owner owner)
{
    const QString& name = connection.displayName;
    RequireUsableName(name);
    RequireStorable(name, StringId::DestinationNamePart);
    RequireStorable(connection.userName, StringId::UserNamePart);
    RequireStorable(connection.password.GetText(), StringId::PasswordPart);
    RequireStorable(connection.server, StringId::ServerPart);
    RequireStorable(connection.directory, StringId::DirectoryPart);
    if (!FindAll(name).empty()) {
        throw CGenericException(Text(StringId::DestinationExists, WithoutPassword(name)),
                                Text(StringId::DestinationNamesAreUnique), Text(StringId::ChooseAnotherName));
    }
    CFTPDestination added = destinations.Create(owner.allUsers);
    added.connection = connection;
    switch (destinations.Save(added)) {
    case CFTPDestinations::SaveResult::Saved:
        return;
    case CFTPDestinations::SaveResult::SavedWithoutPassword:
        destinations.Delete(added.key);
        ThrowNotProtected(added);
    case CFTPDestinations::SaveResult::NotSaved:
        ThrowNotWritten(StringId::DestinationNotStored, added);
    }
}

CFTPDestination CNamedDestinations::Find(const QString& name) const
{
    const auto found = FindAll(name);
    if (found.size() > 1) {
        const QString keys =
            Joined(found, [](const CFTPDestination& each) -> const QString& { return each.keyName; });
        throw CGenericException(Text(StringId::SeveralDestinations, WithoutPassword(name)),
                                Text(StringId::DestinationKeysAre, keys),
                                Text(StringId::NameDestinationByKey));
    }
    if (found.size() == 1) {
        return found.front();
    }
    const auto all = destinations.Enumerate();
    for (const CFTPDestination& destination : all) {
        if (destination.keyName == name) {
            return destination;
        }
    }
    const QString names = Joined(
        all, [](const CFTPDestination& each) -> const QString& { return each.connection.displayName; });
    throw CGenericException(Text(StringId::NoSuchDestination, WithoutPassword(name)),
                            all.empty() ? Text(StringId::NoDestinations)
                                        : Text(StringId::AvailableNames, Printable(names)),
                            Text(StringId::CheckDestinationName));
}

void CNamedDestinations::Remove(const QString& name)
{
    const CFTPDestination removed = Find(name);
    if (!destinations.Delete(removed.key)) {
        ThrowNotWritten(StringId::DestinationNotRemoved, removed);
    }
}

QString CNamedDestinations::List() const
{
    QString lines;
    for (const CFTPDestination& destination : destinations.Enumerate()) {
        const QStringList columns{
            destination.keyName, Printable(destination.connection.displayName),
            Printable(FormatServerUrl(destination.connection)),
            Text(destination.allUsers ? StringId::DestinationOfAllUsers : StringId::DestinationOfThisUser)};
        lines += columns.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return lines;
}

std::vector<CFTPDestination> CNamedDestinations::FindAll(const QString& name) const
{
    std::vector<CFTPDestination> found;
    for (const CFTPDestination& destination : destinations.Enumerate()) {
        if (EqualsIgnoreCase(destination.connection.displayName, name)) {
            found.push_back(destination);
        }
    }
    return found;
}

void CNamedDestinations::ThrowNotWritten(StringId caption, const CFTPDestination& destination) const
{
    const QString file = store.Locate(ScopeOf(destination), destination.parentKeyPath);
    throw CGenericException(
        Text(caption, WithoutPassword(destination.connection.displayName)),
        Text(StringId::SettingsFileNotWritten, file),
        Text(destination.allUsers ? StringId::AllUsersNeedAdministrator : StringId::CheckRights));
}

void CNamedDestinations::ThrowNotProtected(const CFTPDestination& destination) const
{
    throw CGenericException(
        Text(StringId::DestinationNotStored, WithoutPassword(destination.connection.displayName)),
        Text(StringId::KeyFileUnfit, protection.GetKeyPath(ScopeOf(destination))),
        Text(destination.allUsers ? StringId::CorrectMachineKeyFile : StringId::CorrectUserKeyFile));
}

CDestinationSession::CDestinationSession()
    : settings(CreateProgramSettings()),
      protection(FindDataFolder(), FindMachineSettingsFolder()),
      destinations(*settings, protection, &keyring)
{}
