#include "ftpengine/secrets/KeyFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include "common/Descriptor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"

static_assert(CSecretKey::Size == crypto_secretbox_KEYBYTES);

namespace {

bool IsTrustworthy(const struct stat& status, CKeyFile::Readers readers)
{
    const bool isForAll = readers == CKeyFile::Readers::Everybody;
    const mode_t forbidden = isForAll ? S_IWGRP | S_IWOTH : S_IRWXG | S_IRWXO;
    const bool hasOwner = status.st_uid == ::geteuid() || (isForAll && status.st_uid == 0);
    return S_ISREG(status.st_mode) && hasOwner && (status.st_mode & forbidden) == 0;
}

bool MakeFolderOf(const QString& path, CKeyFile::Readers readers)
{
    try {
        QString folder = ExtractFolder(path);
        folder.chop(1);
        MakeDirectoryPath(folder, readers == CKeyFile::Readers::OwnerOnly ? DirectoryAccess::OwnerOnly
                                                                          : DirectoryAccess::Usual);
        return true;
    } catch (const CExceptionBase&) {
        return false;
    }
}

bool WriteNewFile(const QByteArray& name, mode_t mode, const CSecretKey& key)
{
    CDescriptor file(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    // The umask may have taken what everybody needs.
    return file.Get() >= 0 && ::fchmod(file.Get(), mode) == 0 &&
           file.WriteAll(key.GetBytes(), CSecretKey::Size) && ::fsync(file.Get()) == 0 && file.Close();
}

} // namespace

CSecretKey::~CSecretKey()
{
    sodium_memzero(bytes.data(), bytes.size());
}

std::optional<CSecretKey> CKeyFile::Load() const
{
    // Neither a link that somebody planted nor a pipe that never answers.
    const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const CDescriptor file(::open(QFile::encodeName(path).constData(), flags));
    struct stat status;
    if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0 || !IsTrustworthy(status, readers) ||
        status.st_size != static_cast<off_t>(CSecretKey::Size)) {
        return std::nullopt;
    }
    CSecretKey key;
    const ssize_t count = ::read(file.Get(), key.GetBytes(), CSecretKey::Size);
    return count == static_cast<ssize_t>(CSecretKey::Size) ? std::optional(key) : std::nullopt;
}

std::optional<CSecretKey> CKeyFile::LoadOrMake() const
{
    struct stat status;
    const bool isThere = ::lstat(QFile::encodeName(path).constData(), &status) == 0;
    return isThere || Make() ? Load() : std::nullopt;
}

bool CKeyFile::Make() const
{
    if (sodium_init() < 0 || !MakeFolderOf(path, readers)) {
        return false;
    }
    CSecretKey key;
    randombytes_buf(key.GetBytes(), CSecretKey::Size);
    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporary = name + '.' + QByteArray::number(randombytes_random(), 16) + ".tmp";
    const mode_t mode = readers == Readers::OwnerOnly ? 0600 : 0644;
    // Not a rename: where another program was first, its key has to stay.
    const bool isMade = WriteNewFile(temporary, mode, key) &&
                        (::link(temporary.constData(), name.constData()) == 0 || errno == EEXIST);
    ::unlink(temporary.constData());
    return isMade;
}
