#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

#include "common/Settings.h"
#include "ftpengine/secrets/KeyFile.h"

// Turns bytes into opaque bytes and back, by a random key of the user or of the machine: what is protected
// for the user can be opened by that user alone, what is protected for the machine by every user of it, and
// nothing of it elsewhere. Owned by the program; thread-safe. No operation asks a person anything.
class CPasswordProtection {
public:
    using Scope = CSettingsStore::Scope;

    // The folders of the two key files, Corvane.key; a test has its own.
    CPasswordProtection(const QString& userFolder, const QString& machineFolder);

    // Nothing if there is no fit key and none can be made. The same bytes give other bytes each time.
    std::optional<QByteArray> Protect(Scope scope, const QByteArray& clear) const;
    // Nothing if the bytes are damaged, or were protected by another key, or the key file is unfit.
    std::optional<QByteArray> Unprotect(Scope scope, const QByteArray& opaque) const;

    // The path of the key file, for error texts.
    const QString& GetKeyPath(Scope scope) const { return KeyFileOf(scope).GetPath(); }

private:
    const CKeyFile& KeyFileOf(Scope scope) const { return scope == Scope::User ? userKey : machineKey; }

    const CKeyFile userKey;
    const CKeyFile machineKey;
};
