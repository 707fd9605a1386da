#include <algorithm>
#include <set>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "Check.h"
#include "cli/NamedDestinations.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/SerialisedValues.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

const QString Root = QStringLiteral("Corvane/FTPDestinations");

// The settings of a user and of the machine, all with the same bytes in their files. Each input has folders
// of its own, since files are read again only if their size or their time has changed.
class CSettingsWorkshop {
public:
    explicit CSettingsWorkshop(const QByteArray& bytes)
    {
        for (const QString& folder : {user, machine}) {
            MakeDirectoryPath(folder);
            Write(JoinPath(folder, QStringLiteral("Corvane.ini")), bytes);
            Write(JoinPath(folder, QStringLiteral("NimbleXfer.ini")), bytes);
        }
        // One key is known, so that an input can hold a password that opens; the other is of the input
        // itself.
        Write(JoinPath(user, QStringLiteral("Corvane.key")), QByteArray(32, 'k'));
        Write(JoinPath(machine, QStringLiteral("Corvane.key")), bytes.left(32));
    }

    std::unique_ptr<CSettingsStore> OpenStore() const { return CreateIniSettings(user, machine); }
    CPasswordProtection GetProtection() const { return {user, machine}; }
    QByteArray ReadUserFile() const { return ReadWholeFile(JoinPath(user, QStringLiteral("Corvane.ini"))); }

private:
    static void Write(const QString& path, const QByteArray& bytes)
    {
        Check(ReplaceFile(path, bytes, Durability::Plain) == 0, "the workshop can be written to");
        Check(::chmod(QFile::encodeName(path).constData(), 0600) == 0, "the workshop's files have an owner");
    }

    const QTemporaryDir directory;
    const QString user = directory.filePath(QStringLiteral("user"));
    const QString machine = directory.filePath(QStringLiteral("machine"));
};

bool AreEqual(const FTPDestinationConnection& one, const FTPDestinationConnection& other)
{
    return one.displayName == other.displayName && one.userName == other.userName &&
           one.password == other.password && one.server == other.server && one.directory == other.directory &&
           one.port == other.port;
}

void CheckDestination(const CFTPDestination& destination, const CFTPDestinations& destinations)
{
    const FTPDestinationConnection& record = destination.connection;
    Check(destination.key != 0, "0 is no key");
    Check(destination.keyName == QString::number(destination.key), "a key has one name");
    Check(destination.parentKeyPath == Root, "all destinations are in one place");
    Check(record.port != 0, "a port is a number from 1");
    for (const QString& text : {record.displayName, record.userName, record.server, record.directory}) {
        Check(text.size() <= CFTPDestinations::MaxTextLength, "no text is longer than it may be");
    }
    if (destination.allUsers != (destination.key >= 0x10000)) {
        return; // a number of the other scope leads elsewhere
    }
    const CFTPDestination again = destinations.Load(destination.key);
    Check(again.allUsers == destination.allUsers && again.loaded == destination.loaded &&
              AreEqual(again.connection, record),
          "what is listed is found by its key");
}

// As the command line does: by name, in a list, without failures that don't say why.
void LookUp(CSettingsStore& store, const CPasswordProtection& protection,
            const std::vector<CFTPDestination>& all)
{
    const CNamedDestinations named(store, protection);
    for (const QChar character : named.List()) {
        Check(character == QLatin1Char('\n') || character == QLatin1Char('\t') ||
                  character.category() != QChar::Other_Control,
              "a list shows no control characters");
    }
    for (const CFTPDestination& destination : all) {
        try {
            const CFTPDestination found = named.Find(destination.connection.displayName);
            Check(found.connection.displayName.compare(destination.connection.displayName,
                                                       Qt::CaseInsensitive) == 0 ||
                      found.keyName == destination.connection.displayName,
                  "a destination is found by its name");
        } catch (const CGenericException& failure) {
            Check(!failure.GetCaption().isEmpty() && !failure.GetDescription().isEmpty(),
                  "a failure says what happened, and why");
        }
    }
}

using Keys = std::set<std::pair<bool, int>>; // whose, and the number

Keys KeysOf(const std::vector<CFTPDestination>& destinations)
{
    Keys keys;
    for (const CFTPDestination& destination : destinations) {
        Check(keys.emplace(destination.allUsers, destination.key).second, "a key leads to one destination");
    }
    return keys;
}

// A new one comes to be, is found by a program that starts anew, and goes without a trace.
void AddAndDelete(const CSettingsWorkshop& workshop, bool allUsers)
{
    const std::unique_ptr<CSettingsStore> store = workshop.OpenStore();
    const CPasswordProtection protection = workshop.GetProtection();
    CFTPDestinations destinations(*store, protection);
    const Keys before = KeysOf(destinations.Enumerate());
    CFTPDestination added = destinations.Create(allUsers);
    Check(before.count({allUsers, added.key}) == 0, "a new key is a free one");
    Check(!added.loaded, "a new destination isn't stored yet");
    added.connection = {.displayName = QStringLiteral("New=\u00fc;"),
                        .userName = QStringLiteral("anna"),
                        .password = QStringLiteral("hunter2"),
                        .server = QStringLiteral("host"),
                        .directory = QStringLiteral("/www"),
                        .port = 2121};
    const SaveResult result = destinations.Save(added);
    Check(result == SaveResult::Saved || (allUsers && result == SaveResult::SavedWithoutPassword),
          "a destination is stored; only a bad key file keeps its password out");
    if (result == SaveResult::SavedWithoutPassword) {
        added.connection.password = {};
    }
    const std::unique_ptr<CSettingsStore> anew = workshop.OpenStore();
    const CFTPDestination found = CFTPDestinations(*anew, protection).Load(added.key);
    Check(found.loaded && AreEqual(found.connection, added.connection), "a stored destination comes back");
    Check(destinations.SetDefault(added.key) && destinations.GetDefault() == added.key,
          "a default is what it was set to");
    Check(destinations.Delete(added.key) && destinations.GetDefault() == 0,
          "a deleted destination is no default");
    Check(KeysOf(destinations.Enumerate()) == before, "the others stay");
}

// Values of the desktop program's and of the trace's keys, by their own road.
void ReadValues(CSettingsStore& store)
{
    const CRegistrySettingsBase settings(store, Scope::User, QStringLiteral("Corvane/Vistorama"),
                                         {{QStringLiteral("RecentProjectsCount"), QStringLiteral("10")},
                                          {QStringLiteral("ProjectFileName"), QStringLiteral("x")}});
    const QString path = settings.GetString(QStringLiteral("ProjectFileName"));
    Check(path ==
              store.Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("ProjectFileName"))
                  .value_or(QStringLiteral("x")),
          "a value is the stored one or the default");
    settings.GetDWord(QStringLiteral("RecentProjectsCount"));
    Check(settings.GetDWord(QStringLiteral("None")) == 0 ||
              store.Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("None")),
          "a value that nobody knows is 0");
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        for (const char* const key : {"Corvane", "NimbleXfer"}) {
            const QStringList names = store.ListSubKeys(scope, QLatin1String(key));
            Check(std::is_sorted(names.begin(), names.end()) &&
                      std::adjacent_find(names.begin(), names.end()) == names.end(),
                  "sub-keys are listed once, in order");
        }
    }
    store.Read(Scope::User, QStringLiteral("NimbleXfer/Trace"), QStringLiteral("File"));
}

// What one program writes leaves all that another one has written.
void CheckOthersStay(const CSettingsWorkshop& workshop)
{
    const auto destinationsNow = [&workshop] {
        const std::unique_ptr<CSettingsStore> store = workshop.OpenStore();
        const CPasswordProtection protection = workshop.GetProtection();
        return CFTPDestinations(*store, protection).Enumerate();
    };
    const auto before = destinationsNow();
    Check(workshop.OpenStore()->Write(Scope::User, QStringLiteral("Corvane/Vistorama"),
                                      QStringLiteral("ColourScheme"), QStringLiteral("dark")),
          "a value is written");
    const auto after = destinationsNow();
    Check(before.size() == after.size(), "what is written leaves the destinations alone");
    for (size_t i = 0; i < before.size(); ++i) {
        Check(before[i].key == after[i].key && AreEqual(before[i].connection, after[i].connection),
              "a destination survives what is written beside it");
    }
}

// A file that could be harmful is as if it weren't there, and stays.
void CheckLeftAlone(const CSettingsWorkshop& workshop, const QByteArray& bytes)
{
    const std::unique_ptr<CSettingsStore> store = workshop.OpenStore();
    const CPasswordProtection protection = workshop.GetProtection();
    CFTPDestinations destinations(*store, protection);
    Check(destinations.Enumerate().empty() && destinations.GetDefault() == 0, "nothing of it is read");
    CFTPDestination added = destinations.Create(false);
    added.connection.displayName = QStringLiteral("x");
    Check(destinations.Save(added) == SaveResult::NotSaved, "nothing is written to it");
    Check(!destinations.Delete(1) && !store->CanWrite(Scope::User, Root), "nothing is removed from it");
    Check(workshop.ReadUserFile() == bytes, "it stays as it was");
}

} // namespace

// Bytes of the files of the settings store, read and changed by those who use it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const CSettingsWorkshop workshop(input);
    if (HoldsSerialisedValues(input)) {
        CheckLeftAlone(workshop, input);
        return 0;
    }
    {
        const std::unique_ptr<CSettingsStore> store = workshop.OpenStore();
        const CPasswordProtection protection = workshop.GetProtection();
        const CFTPDestinations destinations(*store, protection);
        const auto all = destinations.Enumerate();
        KeysOf(all);
        for (const CFTPDestination& destination : all) {
            CheckDestination(destination, destinations);
        }
        LookUp(*store, protection, all);
        ReadValues(*store);
    }
    CheckOthersStay(workshop);
    AddAndDelete(workshop, false);
    AddAndDelete(workshop, true);
    return 0;
}
