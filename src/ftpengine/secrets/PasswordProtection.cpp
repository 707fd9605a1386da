#include "ftpengine/secrets/PasswordProtection.h"

#include <sodium.h>

#include "common/FileSystem.h"

// Protected bytes are a nonce, then the box made with it.

namespace {

constexpr qsizetype NonceSize = crypto_secretbox_NONCEBYTES;
constexpr qsizetype TagSize = crypto_secretbox_MACBYTES;

QString KeyPathIn(const QString& folder)
{
    return JoinPath(folder, QStringLiteral("Corvane.key"));
}

uint8_t* BytesOf(QByteArray& bytes)
{
    return reinterpret_cast<uint8_t*>(bytes.data());
}

const uint8_t* BytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const uint8_t*>(bytes.constData());
}

} // namespace

CPasswordProtection::CPasswordProtection(const QString& userFolder, const QString& machineFolder)
    : userKey(KeyPathIn(userFolder), CKeyFile::Readers::OwnerOnly),
      machineKey(KeyPathIn(machineFolder), CKeyFile::Readers::Everybody)
{}

std::optional<QByteArray> CPasswordProtection::Protect(Scope scope, const QByteArray& clear) const
{
    const auto key = KeyFileOf(scope).LoadOrMake();
    if (!key || sodium_init() < 0) {
        return std::nullopt;
    }
    QByteArray opaque(NonceSize + TagSize + clear.size(), '\0');
    uint8_t* const nonce = BytesOf(opaque);
    randombytes_buf(nonce, static_cast<size_t>(NonceSize));
    crypto_secretbox_easy(nonce + NonceSize, BytesOf(clear), static_cast<size_t>(clear.size()), nonce,
                          key->GetBytes());
    return opaque;
}

std::optional<QByteArray> CPasswordProtection::Unprotect(Scope scope, const QByteArray& opaque) const
{
    const qsizetype clearSize = opaque.size() - NonceSize - TagSize;
    const auto key = KeyFileOf(scope).Load();
    if (!key || clearSize < 0 || sodium_init() < 0) {
        return std::nullopt;
    }
    QByteArray clear(clearSize, '\0');
    const uint8_t* const nonce = BytesOf(opaque);
    const bool isGenuine = crypto_secretbox_open_easy(BytesOf(clear), nonce + NonceSize,
                                                      static_cast<size_t>(opaque.size() - NonceSize), nonce,
                                                      key->GetBytes()) == 0;
    return isGenuine ? std::optional(clear) : std::nullopt;
}
