#include "common/Settings.h"

#include <mutex>

#include <QSettings>

#include "common/FileSystem.h"
#include "common/Platform.h"

namespace {

class CIniSettingsStore final : public CSettingsStore {
public:
    CIniSettingsStore(const QString& userFolder, const QString& machineFolder)
        : userFolder(userFolder), machineFolder(machineFolder)
    {}

    std::optional<QString> Read(Scope scope, const QString& key, const QString& name) const override
    {
        const std::lock_guard lock(mutex);
        const QSettings file(FileOf(scope, key), QSettings::IniFormat);
        const QVariant value = file.value(EntryOf(key, name));
        return value.isValid() ? std::optional(value.toString()) : std::nullopt;
    }

    bool Write(Scope scope, const QString& key, const QString& name, const QString& value) override
    {
        const std::lock_guard lock(mutex);
        QSettings file(FileOf(scope, key), QSettings::IniFormat);
        file.setValue(EntryOf(key, name), value);
        file.sync();
        return file.status() == QSettings::NoError;
    }

private:
    QString FileOf(Scope scope, const QString& key) const
    {
        const QString& folder = scope == Scope::User ? userFolder : machineFolder;
        return JoinPath(folder, key.section(QLatin1Char('/'), 0, 0) + QStringLiteral(".ini"));
    }

    static QString EntryOf(const QString& key, const QString& name)
    {
        return key.section(QLatin1Char('/'), 1) + QLatin1Char('/') + name;
    }

    // Constant after construction.
    const QString userFolder;
    const QString machineFolder;

    mutable std::mutex mutex;
};

} // namespace

std::unique_ptr<CSettingsStore> CreateIniSettings(const QString& userFolder, const QString& machineFolder)
{
    return std::make_unique<CIniSettingsStore>(userFolder, machineFolder);
}

std::unique_ptr<CSettingsStore> CreateProgramSettings()
{
    return CreateIniSettings(FindSettingsFolder(), QStringLiteral("/etc/xdg"));
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
