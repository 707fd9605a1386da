#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

// The settings store: values under hierarchical keys ("Corvane/Vistorama"), in two scopes. A value is text or
// bytes, and each is read as what it was written as. The name of the default value of a key is "". A key must
// not have a value and a sub-key of one name. Implementations are safe for use by several threads.
class CSettingsStore {
public:
    enum class Scope { User, Machine };
    using Values = std::map<QString, std::variant<QString, QByteArray>>;

    virtual ~CSettingsStore() = default;

    virtual std::optional<QString> Read(Scope scope, const QString& key, const QString& name) const = 0;
    virtual std::optional<QByteArray> ReadBytes(Scope scope, const QString& key,
                                                const QString& name) const = 0;
    // The names of the sub-keys that hold anything, in the order of their UTF-16 codes: "1", "10", "2".
    virtual QStringList ListSubKeys(Scope scope, const QString& key) const = 0;

    // These answer false, and change nothing, if the scope can't be written.
    // All values at once; values of other names stay.
    virtual bool WriteAll(Scope scope, const QString& key, const Values& values) = 0;
    bool Write(Scope scope, const QString& key, const QString& name, const QString& value);
    // True as well if there is nothing to remove.
    virtual bool RemoveValue(Scope scope, const QString& key, const QString& name) = 0;
    virtual bool RemoveKey(Scope scope, const QString& key) = 0;

    // Whether WriteAll could succeed now, as far as rights go. Changes nothing.
    virtual bool CanWrite(Scope scope, const QString& key) const = 0;

    // The place where a person finds the values of a key, for error texts.
    virtual QString Locate(Scope scope, const QString& key) const = 0;
};

// The store in INI files, one for each first part of a key: FOLDER/Corvane.ini. Both folders are given, so
// that a test has its own. A file of the user's scope gets mode 0600 before anything is written: stored
// passwords are in it. One of the machine's scope can be read by everybody. A file with serialised
// objects (SerialisedValues.h) is neither read nor written: this program writes none, and they can be
// harmful.
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
