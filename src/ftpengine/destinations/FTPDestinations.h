#pragma once

#include <vector>

#include "common/Settings.h"
#include "ftpengine/destinations/FTPDestination.h"

class CKeyring;
class CPasswordProtection;

// The user's FTP connections between runs: destinations of the user, keys from 1 on, and of all users of the
// machine, keys from 0x10000 on. Nothing is cached; each call goes to the settings store. Owned by the window
// or program that uses it, and to be called on that one's thread.
class CFTPDestinations {
public:
    // A stored text can't be longer, in UTF-16 units; a longer one is not read.
    static constexpr qsizetype MaxTextLength = 259;

    enum class SaveResult { Saved, SavedWithoutPassword, NotSaved };

    // All are borrowed and must outlive this object. keyring: where the user's own passwords go first; those
    // that it doesn't take, and those of all users, go into the store, protected. May be null.
    CFTPDestinations(CSettingsStore& store, const CPasswordProtection& protection,
                     CKeyring* keyring = nullptr);

    // Never fails: a value that can't be read leaves its field empty, and so does a password that can't be
    // opened. The key says whose destination it is.
    CFTPDestination Load(int32_t key) const;
    // An empty destination with the lowest free key. It comes to exist when it is saved.
    CFTPDestination Create(bool allUsers) const;
    // Whether destinations of all users can be changed by this user.
    bool CanSaveForAllUsers() const;
    // An empty password leaves an older one in the store. Callers may ignore the result.
    SaveResult Save(const CFTPDestination& destination);
    // Clears the default if it was this one. False if the store can't be written; callers may ignore it.
    bool Delete(int32_t key);
    // The user's destinations, then those of all users; each group in the store's order.
    std::vector<CFTPDestination> Enumerate() const;

    // The key of the default destination; 0 if there is none.
    int32_t GetDefault() const;
    bool SetDefault(int32_t key);

private:
    using Scope = CSettingsStore::Scope;

    CFTPDestination LoadFrom(bool allUsers, int32_t key) const;
    void AppendAll(bool allUsers, std::vector<CFTPDestination>& destinations) const;
    // False if there is no such text, or one too long.
    bool ReadText(const CFTPDestination& place, const char* name, QString& field) const;
    ServerProtocol ReadProtocol(const CFTPDestination& place) const;
    uint16_t ReadPort(const CFTPDestination& place, ServerProtocol protocol) const;
    // Not where earlier versions have none and none is needed: what they have stored stays as it is.
    void AddChoice(const CFTPDestination& place, const QString& name, const QString& value,
                   CSettingsStore::Values& values) const;
    CSecretText ReadPassword(const CFTPDestination& place) const;
    // False if the password can't be protected.
    bool AddPassword(const CFTPDestination& destination, CSettingsStore::Values& values) const;
    // Of the secret that a destination has in the keyring; empty if it has none.
    QString NameInKeyring(const CFTPDestination& place) const;
    // The password under a new name, so that no later destination with the same key ever finds it, and the
    // former one stays until the store is written. Empty if the keyring doesn't take it.
    QString KeepInKeyring(const CFTPDestination& destination) const;
    void RemoveFromKeyring(const QString& name);
    bool SkipsProtection() const;

    CSettingsStore& store;
    const CPasswordProtection& protection;
    CKeyring* const keyring;
};

// "ftp://SERVER/DIRECTORY", or "ftpes://", "ftps://", "sftp://", without user name and password.
QString GetURL(const FTPDestinationConnection& record);
