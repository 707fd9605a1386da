#include "ftpengine/ssh/SshKeyFile.h"

#include <algorithm>
#include <libssh/libssh.h>

#include <QDir>
#include <QFile>

namespace {

struct Asking {
    const CSecretText& passphrase;
    bool wasAsked = false;
};

// Called by the library for a file that has a passphrase. 0 if it is in the buffer.
int GivePassphrase(const char*, char* buffer, size_t size, int, int, void* user)
{
    Asking& asking = *static_cast<Asking*>(user);
    asking.wasAsked = true;
    const std::size_t length = asking.passphrase.GetSize();
    if (length == 0 || length >= size) {
        return -1;
    }
    std::copy_n(asking.passphrase.GetBytes(), length + 1, buffer);
    return 0;
}

} // namespace

void FreeSshKey::operator()(ssh_key_struct* key) const
{
    ssh_key_free(key);
}

SshKeyFile ReadSshKeyFile(const QString& path, const CSecretText& passphrase)
{
    const QByteArray name = QFile::encodeName(path);
    if (!QFile(path).open(QIODevice::ReadOnly)) {
        return {};
    }
    Asking asking{.passphrase = passphrase};
    ssh_key read = nullptr;
    const int result = ssh_pki_import_privkey_file(name.constData(), nullptr, GivePassphrase, &asking, &read);
    OwnedSshKey key(read);
    if (result == SSH_OK) {
        return {.state = SshKeyFile::State::Read, .hasPassphrase = asking.wasAsked, .key = std::move(key)};
    }
    return {.state = asking.wasAsked ? SshKeyFile::State::Locked : SshKeyFile::State::Unfit,
            .hasPassphrase = asking.wasAsked,
            .key = {}};
}

QStringList FindOwnSshKeyFiles()
{
    QStringList files;
    for (const char* name : {"id_ed25519", "id_ecdsa", "id_rsa"}) {
        const QString path = QDir::homePath() + QStringLiteral("/.ssh/") + QLatin1String(name);
        if (QFile::exists(path)) {
            files += path;
        }
    }
    return files;
}
