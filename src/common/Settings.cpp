#include "common/Settings.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>

#include "common/Descriptor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/ThreadSafety.h"

namespace {

// Files with these rights for others are made and kept.
constexpr mode_t UserFileMode = 0600;
constexpr mode_t MachineFileMode = 0644;

class CIniSettingsStore final : public CSettingsStore {
public:
    CIniSettingsStore(const QString& userFolder, const QString& machineFolder)
        : userFolder(userFolder), machineFolder(machineFolder)
    {}

    std::optional<QString> Read(Scope scope, const QString& key, const QString& name) const override
    {
        const QVariant value = ReadVariant(scope, key, name);
        return value.isValid() && !IsBytes(value) ? std::optional(value.toString()) : std::nullopt;
    }

    std::optional<QByteArray> ReadBytes(Scope scope, const QString& key, const QString& name) const override
    {
        const QVariant value = ReadVariant(scope, key, name);
        return IsBytes(value) ? std::optional(value.toByteArray()) : std::nullopt;
    }

    QStringList ListSubKeys(Scope scope, const QString& key) const override
    {
        const QString prefix = PrefixOf(key);
        const CMutexLock lock(mutex);
        QStringList names;
        for (const QString& entry : ReaderOf(Locate(scope, key)).allKeys()) {
            if (entry.startsWith(prefix) && entry.indexOf(QLatin1Char('/'), prefix.size()) >= 0) {
                names += entry.mid(prefix.size()).section(QLatin1Char('/'), 0, 0);
            }
        }
        names.removeDuplicates();
        names.sort();
        return names;
    }

    bool WriteAll(Scope scope, const QString& key, const Values& values) override
    {
        return Change(scope, key, [&](QSettings& file) {
            for (const auto& each : values) {
                const QString entry = EntryOf(key, each.first);
                std::visit([&](const auto& value) { file.setValue(entry, value); }, each.second);
            }
        });
    }

    bool RemoveValue(Scope scope, const QString& key, const QString& name) override
    {
        return !ReadVariant(scope, key, name).isValid() ||
               Change(scope, key, [&](QSettings& file) { file.remove(EntryOf(key, name)); });
    }

    bool RemoveKey(Scope scope, const QString& key) override
    {
        return !HoldsAnything(scope, key) ||
               Change(scope, key, [&](QSettings& file) { file.remove(GroupOf(key)); });
    }

    bool CanWrite(Scope scope, const QString& key) const override
    {
        const QString path = Locate(scope, key);
        if (FileExists(path) &&
            CDescriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC)).Get() < 0) {
            return false;
        }
        // The file is replaced by another one in its folder. Rights alone don't tell, since a disk may be
        // read-only, so one is tried.
        QString folder = QFileInfo(path).path();
        while (!FileExists(folder)) {
            folder = QFileInfo(folder).path();
        }
        return QTemporaryFile(JoinPath(folder, QStringLiteral("try-XXXXXX"))).open();
    }

    QString Locate(Scope scope, const QString& key) const override
    {
        const QString& folder = scope == Scope::User ? userFolder : machineFolder;
        return JoinPath(folder, key.section(QLatin1Char('/'), 0, 0) + QStringLiteral(".ini"));
    }

private:
    // Kept open, since each new one would parse its file anew. It is never changed itself; it sees what this
    // and other programs have written.
    const QSettings& ReaderOf(const QString& path) const VISTORAMA_REQUIRES(mutex)
    {
        std::unique_ptr<QSettings>& reader = readers[path];
        if (!reader) {
            reader = std::make_unique<QSettings>(path, QSettings::IniFormat);
        }
        reader->sync();
        return *reader;
    }

    QVariant ReadVariant(Scope scope, const QString& key, const QString& name) const
    {
        const CMutexLock lock(mutex);
        return ReaderOf(Locate(scope, key)).value(EntryOf(key, name));
    }

    bool HoldsAnything(Scope scope, const QString& key) const
    {
        const QString prefix = PrefixOf(key);
        const CMutexLock lock(mutex);
        const QStringList entries = ReaderOf(Locate(scope, key)).allKeys();
        return std::any_of(entries.begin(), entries.end(),
                           [&](const QString& entry) { return entry.startsWith(prefix); });
    }

    template <class Action>
    bool Change(Scope scope, const QString& key, const Action& action)
    {
        const CMutexLock lock(mutex);
        const QString path = Locate(scope, key);
        if (!PrepareFile(path, scope == Scope::User ? UserFileMode : MachineFileMode)) {
            return false;
        }
        // Lines that are none of an INI file get lost in the writing; a copy keeps them.
        if (ReaderOf(path).status() == QSettings::FormatError) {
            QFile::copy(path, path + QStringLiteral(".damaged"));
        }
        QSettings file(path, QSettings::IniFormat);
        action(file);
        file.sync();
        return file.status() == QSettings::NoError;
    }

    // Makes the file, or takes from it the rights that it should not give. False if it can't be read and
    // written: QSettings would replace a file that it can't read.
    static bool PrepareFile(const QString& path, mode_t mode)
    {
        const QByteArray name = QFile::encodeName(path);
        if (!MakeFolderOf(path, mode)) {
            return false;
        }
        struct stat status;
        const bool isNew = ::stat(name.constData(), &status) != 0;
        const CDescriptor file(::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, mode));
        if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0) {
            return false;
        }
        const mode_t rights = status.st_mode & 07777;
        // A new file has lost what the umask forbids, but the machine's is for everybody.
        const mode_t wanted = isNew                  ? mode
                              : mode == UserFileMode ? rights & ~mode_t(S_IRWXG | S_IRWXO)
                                                     : rights;
        return rights == wanted || ::fchmod(file.Get(), wanted) == 0;
    }

    static bool MakeFolderOf(const QString& path, mode_t mode)
    {
        try {
            MakeDirectoryPath(QFileInfo(path).path(),
                              mode == UserFileMode ? DirectoryAccess::OwnerOnly : DirectoryAccess::Usual);
            return true;
        } catch (const CExceptionBase&) {
            return false;
        }
    }

    static bool IsBytes(const QVariant& value) { return value.typeId() == QMetaType::QByteArray; }

    static QString GroupOf(const QString& key) { return key.section(QLatin1Char('/'), 1); }

    // What all entries of a key begin with.
    static QString PrefixOf(const QString& key)
    {
        const QString group = GroupOf(key);
        return group.isEmpty() ? QString() : group + QLatin1Char('/');
    }

    static QString EntryOf(const QString& key, const QString& name)
    {
        // The default value may not stand for its key itself: removing it would remove all sub-keys.
        return PrefixOf(key) + (name.isEmpty() ? QStringLiteral("@") : name);
    }

    // Constant after construction.
    const QString userFolder;
    const QString machineFolder;

    mutable CMutex mutex;
    mutable std::map<QString, std::unique_ptr<QSettings>> readers VISTORAMA_GUARDED_BY(mutex); // by path
};

} // namespace

bool CSettingsStore::Write(Scope scope, const QString& key, const QString& name, const QString& value)
{
    return WriteAll(scope, key, {{name, value}});
}

std::unique_ptr<CSettingsStore> CreateIniSettings(const QString& userFolder, const QString& machineFolder)
{
    return std::make_unique<CIniSettingsStore>(userFolder, machineFolder);
}

std::unique_ptr<CSettingsStore> CreateProgramSettings()
{
    return CreateIniSettings(FindSettingsFolder(), FindMachineSettingsFolder());
}

CRegistrySettingsBase::CRegistrySettingsBase(CSettingsStore& store, CSettingsStore::Scope scope,
                                             const QString& key, std::vector<Row> table)
    : store(store), scope(scope), key(key), table(std::move(table))
{}

uint32_t CRegistrySettingsBase::GetDWord(const QString& name) const
{
    bool isNumber = false;
    const uint32_t stored = store.Read(scope, key, name).value_or(QString()).toUInt(&isNumber);
    return isNumber ? stored : DefaultOf(name).toUInt();
}

QString CRegistrySettingsBase::GetString(const QString& name) const
{
    return store.Read(scope, key, name).value_or(DefaultOf(name));
}

bool CRegistrySettingsBase::SetString(const QString& name, const QString& value)
{
    return store.Write(scope, key, name, value);
}

QString CRegistrySettingsBase::DefaultOf(const QString& name) const
{
    for (const Row& row : table) {
        if (row.name == name) {
            return row.defaultValue;
        }
    }
    return QString();
}
