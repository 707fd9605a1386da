#pragma once

#include <optional>

#include <QString>

#include "ftpengine/secrets/SecretText.h"

// Where a user's secrets are kept outside this program's own files. Each has a name of its own, which means
// nothing to anybody. Used on one thread at a time; no operation waits for long, or asks a person anything.
class CKeyring {
public:
    virtual ~CKeyring() = default;
    CKeyring(const CKeyring&) = delete;
    CKeyring& operator=(const CKeyring&) = delete;

    struct Item {
        QString name;
        QString label; // for people who look into their keyring
        CSecretText secret;
    };
    // In place of what bears the name. False if it can't be kept; then what was there may be gone.
    virtual bool Store(const Item& item) = 0;
    // Nothing if there is none, or the keyring is locked.
    virtual std::optional<CSecretText> Find(const QString& name) = 0;
    // False if it may be there still.
    virtual bool Remove(const QString& name) = 0;

protected:
    CKeyring() = default;
};
