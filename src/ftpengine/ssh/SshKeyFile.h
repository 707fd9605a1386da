#pragma once

#include <memory>

#include <QString>
#include <QStringList>

#include "ftpengine/secrets/SecretText.h"

struct ssh_key_struct;

struct FreeSshKey {
    void operator()(ssh_key_struct* key) const;
};
using OwnedSshKey = std::unique_ptr<ssh_key_struct, FreeSshKey>;

// What came of reading a key file.
struct SshKeyFile {
    enum class State {
        Read,
        Absent, // or it can't be opened
        Locked, // it has another passphrase
        Unfit,  // it isn't a key that the library knows
    };

    State state = State::Absent;
    bool hasPassphrase = false;
    OwnedSshKey key; // of State::Read
};

// passphrase: for a file that has one.
SshKeyFile ReadSshKeyFile(const QString& path, const CSecretText& passphrase);

// The files that hold a user's own keys by custom: "~/.ssh/id_ed25519" and others, as far as they are there.
QStringList FindOwnSshKeyFiles();
