#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <QString>

// The settings store: values under hierarchical keys ("Corvane/Vistorama"), in two scopes. Implementations
// are safe for use by several threads.
class CSettingsStore {
public:
    enum class Scope { User, Machine };

    virtual ~CSettingsStore() = default;

    virtual std::optional<QString> Read(Scope scope, const QString& key, const QString& name) const = 0;
    // False if the scope can't be written.
    virtual bool Write(Scope scope, const QString& key, const QString& name, const QString& value) = 0;
};

// The store in INI files, one for each first part of a key: FOLDER/Corvane.ini. Both folders are given, so
// that a test has its own.
std::unique_ptr<CSettingsStore> CreateIniSettings(const QString& userFolder, const QString& machineFolder);

// The store of the running program: the user's settings folder, and /etc/xdg for the machine.
std::unique_ptr<CSettingsStore> CreateProgramSettings();

// Settings by a table of names with defaults, under one key of one scope.
class CRegistrySettingsBase {
public:
    struct Row {
        QString name;
        QString defaultValue; // a number in decimal for a value read by GetDWord
    };

    // The store is borrowed and must outlive this object.
    CRegistrySettingsBase(CSettingsStore& store, CSettingsStore::Scope scope, const QString& key,
                          std::vector<Row> table);

    // The stored value; missing or no number: the table's default; not in the table: 0.
    uint32_t GetDWord(const QString& name) const;
    // The stored value, else the table's default, else "".
    QString GetString(const QString& name) const;
    bool SetString(const QString& name, const QString& value);

private:
    QString DefaultOf(const QString& name) const;

    CSettingsStore& store;
    const CSettingsStore::Scope scope;
    const QString key;
    const std::vector<Row> table;
};
