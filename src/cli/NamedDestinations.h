#pragma once

#include <memory>
#include <vector>

#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/secrets/PasswordProtection.h"
#include "ftpengine/secrets/SystemKeyring.h"
#include "resources/StringTable.h"

// The stored FTP destinations as a person at the command line names them: by display name without regard to
// case, or, for names that are not unique, by key. Belongs to one run of a command; single-threaded.
class CNamedDestinations {
public:
    // All are borrowed and must outlive this object. keyring: may be null.
    CNamedDestinations(CSettingsStore& store, const CPasswordProtection& protection,
                       CKeyring* keyring = nullptr);

    struct Owner {
        bool allUsers = false;
    };
    // Throws CWrongUse for a name or a part of the address that can't be kept, CGenericException if the name
    // is taken or the store can't be written; then nothing of it is stored. connection: with the name, and
    // with the password, which is stored as well.
    void Add(const FTPDestinationConnection& connection, Owner owner);
    // The only one of that name; else the one of that key. Throws CGenericException.
    CFTPDestination Find(const QString& name) const;
    // Throws CGenericException.
    void Remove(const QString& name);

    // "KEY<tab>NAME<tab>ADDRESS<tab>this user" or "... all users", one on each line, without passwords.
    QString List() const;

private:
    std::vector<CFTPDestination> FindAll(const QString& name) const;
    [[noreturn]] void ThrowNotWritten(StringId caption, const CFTPDestination& destination) const;
    [[noreturn]] void ThrowNotProtected(const CFTPDestination& destination) const;

    CSettingsStore& store;
    const CPasswordProtection& protection;
    CFTPDestinations destinations;
};

// The stored destinations of the running program, with the settings and the keys that they need. Belongs to
// one run of a command; single-threaded.
class CDestinationSession {
public:
    CDestinationSession();

    CNamedDestinations& GetDestinations() { return destinations; }

private:
    const std::unique_ptr<CSettingsStore> settings;
    const CPasswordProtection protection;
    CSystemKeyring keyring;
    CNamedDestinations destinations;
};
