#include "deploy/server/SiteFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <vector>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include "common/DirectoryProcessor.h"
#include "common/Exceptions.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "resources/StringTable.h"

namespace {

// The time of its last change is that of the site's last use.
QString LockPath(const QString& folder)
{
    return JoinPath(folder, QStringLiteral("lock"));
}

int OpenLock(const QString& folder)
{
    return ::open(QFile::encodeName(LockPath(folder)).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
}

// A disk that knows no locks has nothing in use.
bool IsLockedByOthers(const CDescriptor& lock)
{
    return ::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

class CSizeSum final : public CDirectoryProcessor {
public:
    Answer OnFile(const QString& path, const DirectoryEntry&) override
    {
        bytes += QFileInfo(path).size();
        return Answer::Continue;
    }
    int64_t bytes = 0;
};

int64_t SizeOf(const QString& folder)
{
    CSizeSum sum;
    ProcessDirectory(folder, sum);
    return sum.bytes;
}

// Another program may have removed the folder between the opening and the locking.
bool IsStillThere(const CDescriptor& lock, const QString& folder)
{
    struct stat locked {};
    struct stat named {};
    return ::fstat(lock.Get(), &locked) == 0 &&
           ::stat(QFile::encodeName(LockPath(folder)).constData(), &named) == 0 &&
           locked.st_ino == named.st_ino && locked.st_dev == named.st_dev;
}

void RemoveUnlessInUse(const QString& folder)
{
    const CDescriptor lock(OpenLock(folder));
    if (lock.Get() >= 0 && !IsLockedByOthers(lock)) {
        RemoveDirectoryTree(folder);
    }
}

std::vector<QString> FoldersIn(const QString& folder)
{
    std::vector<QString> folders;
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        if (entry.isDirectory) {
            folders.push_back(JoinPath(folder, entry.name));
        }
    }
    return folders;
}

} // namespace

CSiteFolder::CSiteFolder(const Options& options, const QString& key)
    : options(options),
      name(JoinPath(
          options.folder,
          QString::fromLatin1(QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex()))),
      lock(-1)
{
    do {
        // It holds unpublished pictures.
        MakeDirectoryPath(name, DirectoryAccess::OwnerOnly);
        lock.Reset(OpenLock(name));
        if (lock.Get() < 0) {
            throw CWin32Exception(errno, Text(StringId::FileNotWritten, LockPath(name)));
        }
        if (IsLockedByOthers(lock)) {
            throw CGenericException(Text(StringId::UploadFailed), Text(StringId::SiteInUse),
                                    Text(StringId::WaitForOtherProgram));
        }
    } while (!IsStillThere(lock, name));
    ::futimens(lock.Get(), nullptr);
    MakeDirectoryPath(GetSite());
}

QString CSiteFolder::GetSite() const
{
    return JoinPath(name, QStringLiteral("site/"));
}

QString CSiteFolder::GetRecordPath() const
{
    return JoinPath(name, QStringLiteral("record"));
}

QString CSiteFolder::GetHashesPath() const
{
    return JoinPath(name, QStringLiteral("hashes"));
}

QString CSiteFolder::GetJournalPath() const
{
    return JoinPath(name, QStringLiteral("journal"));
}

void CSiteFolder::RemoveLongestUnused() const
{
    std::vector<std::pair<int64_t, QString>> byUse;
    for (const QString& folder : FoldersIn(options.folder)) {
        if (folder != name) {
            const auto stamp = FileStamp::Of(LockPath(folder));
            byUse.emplace_back(stamp ? stamp->modified : 0, folder);
        }
    }
    std::sort(byUse.rbegin(), byUse.rend());
    int64_t bytes = SizeOf(name);
    for (const auto& [use, folder] : byUse) {
        bytes += SizeOf(folder);
        if (bytes > options.limit) {
            RemoveUnlessInUse(folder);
        }
    }
}

int64_t GetSizeOfSites(const QString& folder)
{
    return SizeOf(folder);
}

void ClearSites(const QString& folder)
{
    for (const QString& site : FoldersIn(folder)) {
        RemoveUnlessInUse(site);
    }
}
