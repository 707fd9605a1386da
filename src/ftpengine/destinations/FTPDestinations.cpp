#include "ftpengine/destinations/FTPDestinations.h"

#include <algorithm>
#include <iterator>

#include <QUuid>

#include "ftpengine/destinations/Keyring.h"
#include "ftpengine/secrets/PasswordProtection.h"

namespace {

constexpr int32_t FirstUserKey = 1;
constexpr int32_t FirstMachineKey = 0x10000;

QString RootKey()
{
    return QStringLiteral("Corvane/FTPDestinations");
}

CSettingsStore::Scope ScopeOf(bool allUsers)
{
    return allUsers ? CSettingsStore::Scope::Machine : CSettingsStore::Scope::User;
}

bool IsForAllUsers(int32_t key)
{
    return key >= FirstMachineKey;
}

QString PathOf(const CFTPDestination& place)
{
    return place.parentKeyPath + QLatin1Char('/') + place.keyName;
}

bool HasPlace(const CFTPDestination& place)
{
    return !place.parentKeyPath.isEmpty() && !place.keyName.isEmpty();
}

QString PasswordValue()
{
    return QStringLiteral("Password");
}

QString KeyringValue()
{
    return QStringLiteral("Keyring");
}

QString ProtocolValue()
{
    return QStringLiteral("Protocol");
}

QString IdentityFileValue()
{
    return QStringLiteral("IdentityFile");
}

// Earlier versions knew FTP in clear alone, and have stored no name for it.
constexpr struct {
    ServerProtocol protocol;
    const char* name;
} protocolNames[] = {{ServerProtocol::Ftp, ""},
                     {ServerProtocol::FtpTls, "ftpes"},
                     {ServerProtocol::FtpImplicitTls, "ftps"},
                     {ServerProtocol::Sftp, "sftp"}};

QString NameOf(ServerProtocol protocol)
{
    const auto found = std::find_if(std::begin(protocolNames), std::end(protocolNames),
                                    [protocol](const auto& row) { return row.protocol == protocol; });
    return QString::fromLatin1(found->name);
}

// What this version doesn't know is taken for the careful one: a password goes to nobody in clear.
ServerProtocol ProtocolNamed(const QString& name)
{
    const auto found = std::find_if(std::begin(protocolNames), std::end(protocolNames),
                                    [&name](const auto& row) { return name == QLatin1String(row.name); });
    return found == std::end(protocolNames) ? ServerProtocol::FtpTls : found->protocol;
}

CSecretText Taken(QString&& text)
{
    CSecretText secret(text);
    WipeText(text);
    return secret;
}

// The UTF-16 units of a text without a terminator, and back; both wipe what they were given.
QByteArray ToBytes(QString&& text)
{
    QByteArray bytes(reinterpret_cast<const char*>(text.utf16()),
                     text.size() * static_cast<qsizetype>(sizeof(char16_t)));
    WipeText(text);
    return bytes;
}

CSecretText FromBytes(QByteArray&& bytes)
{
    QString text(bytes.size() / static_cast<qsizetype>(sizeof(char16_t)), QChar());
    std::copy_n(bytes.constData(), text.size() * static_cast<qsizetype>(sizeof(char16_t)),
                reinterpret_cast<char*>(text.data()));
    bytes.fill('\0');
    return Taken(std::move(text));
}

} // namespace

CFTPDestinations::CFTPDestinations(CSettingsStore& store, const CPasswordProtection& protection,
                                   CKeyring* keyring)
    : store(store), protection(protection), keyring(keyring)
{}

CFTPDestination CFTPDestinations::Load(int32_t key) const
{
    return LoadFrom(IsForAllUsers(key), key);
}

CFTPDestination CFTPDestinations::Create(bool allUsers) const
{
    const QStringList taken = store.ListSubKeys(ScopeOf(allUsers), RootKey());
    int32_t key = allUsers ? FirstMachineKey : FirstUserKey;
    while (taken.contains(QString::number(key))) {
        ++key;
    }
    return LoadFrom(allUsers, key);
}

bool CFTPDestinations::CanSaveForAllUsers() const
{
    return store.CanWrite(Scope::Machine, RootKey());
}

CFTPDestinations::SaveResult CFTPDestinations::Save(const CFTPDestination& destination)
{
    if (!HasPlace(destination)) {
        return SaveResult::NotSaved;
    }
    const FTPDestinationConnection& record = destination.connection;
    CSettingsStore::Values values{
        {QStringLiteral("Dispname"), record.displayName},       {QStringLiteral("Server"), record.server},
        {QStringLiteral("Port"), QString::number(record.port)}, {QStringLiteral("Username"), record.userName},
        {QStringLiteral("Directory"), record.directory},
    };
    AddChoice(destination, ProtocolValue(), NameOf(record.protocol), values);
    AddChoice(destination, IdentityFileValue(), record.identityFile, values);
    // An empty password is never written: the older one stays.
    const bool isNew = !record.password.IsEmpty();
    const QString formerName = NameInKeyring(destination);
    const QString name = isNew ? KeepInKeyring(destination) : formerName;
    if (name != formerName) {
        values[KeyringValue()] = name;
    }
    const bool hasPassword = !isNew || !name.isEmpty() || AddPassword(destination, values);
    const bool isWritten = store.WriteAll(ScopeOf(destination.allUsers), PathOf(destination), values);
    if (name != formerName) {
        RemoveFromKeyring(isWritten ? formerName : name);
    }
    if (!isWritten) {
        return SaveResult::NotSaved;
    }
    // What the keyring has isn't left in the store.
    if (isNew && !name.isEmpty()) {
        store.RemoveValue(ScopeOf(destination.allUsers), PathOf(destination), PasswordValue());
    }
    return hasPassword ? SaveResult::Saved : SaveResult::SavedWithoutPassword;
}

bool CFTPDestinations::Delete(int32_t key)
{
    CFTPDestination place;
    place.parentKeyPath = RootKey();
    place.keyName = QString::number(key);
    place.allUsers = IsForAllUsers(key);
    const QString name = NameInKeyring(place);
    const bool isRemoved = store.RemoveKey(ScopeOf(place.allUsers), PathOf(place));
    if (isRemoved) {
        RemoveFromKeyring(name);
    }
    // One that somebody else has to remove is the default no more all the same.
    const bool isDefaultGone = GetDefault() != key || store.RemoveValue(Scope::User, RootKey(), QString());
    return isRemoved && isDefaultGone;
}

std::vector<CFTPDestination> CFTPDestinations::Enumerate() const
{
    std::vector<CFTPDestination> destinations;
    AppendAll(false, destinations);
    AppendAll(true, destinations);
    return destinations;
}

int32_t CFTPDestinations::GetDefault() const
{
    return store.Read(Scope::User, RootKey(), QString()).value_or(QString()).toInt();
}

bool CFTPDestinations::SetDefault(int32_t key)
{
    return store.Write(Scope::User, RootKey(), QString(), QString::number(key));
}

CFTPDestination CFTPDestinations::LoadFrom(bool allUsers, int32_t key) const
{
    CFTPDestination loading{.connection = {},
                            .parentKeyPath = RootKey(),
                            .keyName = QString::number(key),
                            .key = key,
                            .allUsers = allUsers,
                            .loaded = false};
    FTPDestinationConnection& record = loading.connection;
    loading.loaded = ReadText(loading, "Dispname", record.displayName);
    ReadText(loading, "Server", record.server);
    record.protocol = ReadProtocol(loading);
    record.identityFile =
        store.Read(ScopeOf(allUsers), PathOf(loading), IdentityFileValue()).value_or(QString());
    record.port = ReadPort(loading, record.protocol);
    ReadText(loading, "Username", record.userName);
    ReadText(loading, "Directory", record.directory);
    record.password = ReadPassword(loading);
    return loading;
}

void CFTPDestinations::AppendAll(bool allUsers, std::vector<CFTPDestination>& destinations) const
{
    for (const QString& name : store.ListSubKeys(ScopeOf(allUsers), RootKey())) {
        const int32_t key = name.toInt();
        // "Options" is none, and neither is "007": no key leads to it. Odd on purpose: every other number
        // counts, that of the other scope as well, though loading by that key looks in the other scope.
        if (key != 0 && name == QString::number(key)) {
            destinations.push_back(LoadFrom(allUsers, key));
        }
    }
}

bool CFTPDestinations::ReadText(const CFTPDestination& place, const char* name, QString& field) const
{
    const auto text = store.Read(ScopeOf(place.allUsers), PathOf(place), QString::fromLatin1(name));
    // Odd on purpose: a text is read into 260 units, its terminator included, and a longer one counts as
    // absent.
    const bool isRead = text && text->size() <= MaxTextLength;
    if (isRead) {
        field = *text;
    }
    return isRead;
}

ServerProtocol CFTPDestinations::ReadProtocol(const CFTPDestination& place) const
{
    return ProtocolNamed(
        store.Read(ScopeOf(place.allUsers), PathOf(place), ProtocolValue()).value_or(QString()));
}

void CFTPDestinations::AddChoice(const CFTPDestination& place, const QString& name, const QString& value,
                                 CSettingsStore::Values& values) const
{
    if (!value.isEmpty() || store.Read(ScopeOf(place.allUsers), PathOf(place), name)) {
        values[name] = value;
    }
}

uint16_t CFTPDestinations::ReadPort(const CFTPDestination& place, ServerProtocol protocol) const
{
    const uint16_t port = store.Read(ScopeOf(place.allUsers), PathOf(place), QStringLiteral("Port"))
                              .value_or(QString())
                              .toUShort();
    return port == 0 ? DefaultPortOf(protocol) : port;
}

CSecretText CFTPDestinations::ReadPassword(const CFTPDestination& place) const
{
    if (SkipsProtection()) {
        QString password;
        ReadText(place, "Password", password);
        return Taken(std::move(password));
    }
    const Scope scope = ScopeOf(place.allUsers);
    const QString name = NameInKeyring(place);
    if (!name.isEmpty()) {
        return keyring->Find(name).value_or(CSecretText());
    }
    const auto bytes = store.ReadBytes(scope, PathOf(place), PasswordValue());
    // One that can't be opened has to be typed again; the server's refusal will say so.
    return bytes ? FromBytes(protection.Unprotect(scope, *bytes).value_or(QByteArray())) : CSecretText();
}

bool CFTPDestinations::AddPassword(const CFTPDestination& destination, CSettingsStore::Values& values) const
{
    const QString name = PasswordValue();
    const CSecretText& password = destination.connection.password;
    if (SkipsProtection()) {
        values[name] = password.GetText();
        return true;
    }
    QByteArray clear = ToBytes(password.GetText());
    const auto bytes = protection.Protect(ScopeOf(destination.allUsers), clear);
    clear.fill('\0');
    if (bytes) {
        values[name] = *bytes;
    }
    return bytes.has_value();
}

QString CFTPDestinations::NameInKeyring(const CFTPDestination& place) const
{
    const auto name = store.Read(ScopeOf(place.allUsers), PathOf(place), KeyringValue());
    return keyring == nullptr ? QString() : name.value_or(QString());
}

QString CFTPDestinations::KeepInKeyring(const CFTPDestination& destination) const
{
    if (keyring == nullptr || destination.allUsers || SkipsProtection()) {
        return {};
    }
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const FTPDestinationConnection& record = destination.connection;
    const bool isKept = keyring->Store({.name = name,
                                        .label = record.userName + QLatin1Char('@') + record.server,
                                        .secret = record.password});
    return isKept ? name : QString();
}

void CFTPDestinations::RemoveFromKeyring(const QString& name)
{
    if (keyring != nullptr && !name.isEmpty()) {
        keyring->Remove(name);
    }
}

bool CFTPDestinations::SkipsProtection() const
{
    return CRegistrySettingsBase(store, Scope::User, RootKey() + QStringLiteral("/Options"), {})
               .GetDWord(QStringLiteral("SkipDPAPI")) != 0;
}

QString GetURL(const FTPDestinationConnection& record)
{
    const bool isUsualPort = record.port == DefaultPortOf(record.protocol);
    const QString scheme =
        record.protocol == ServerProtocol::Ftp ? QStringLiteral("ftp") : NameOf(record.protocol);
    const QString start = scheme + QStringLiteral("://") + record.server;
    // Odd on purpose: in clear and with another port the text ends after the ":", as it did when no dialog
    // set a port.
    if (!isUsualPort && record.protocol == ServerProtocol::Ftp) {
        return start + QLatin1Char(':');
    }
    const QString port = isUsualPort ? QString() : QLatin1Char(':') + QString::number(record.port);
    return start + port + QLatin1Char('/') + record.directory;
}
