#include "common/TempFolder.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include "common/DirectoryProcessor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "resources/Resources.h"

namespace {

// Odd on purpose: the prefix stands twice.
const char prefix[] = "cvn_tmp_cvn_tmp_";

QString FindFreePath(const QString& parent)
{
    std::random_device random;
    QString path;
    do {
        path = parent + QLatin1String(prefix) + QString::number(random(), 16);
    } while (FileExists(path));
    return path;
}

// Negative if another run has it locked, or if it is no folder that could be.
int Lock(const QString& folder)
{
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

// A folder that was made a moment ago may be one that its run is about to lock.
bool IsOld(int folder)
{
    struct stat status;
    return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
           status.st_mtim.tv_sec < ::time(nullptr) - 60;
}

void RemoveLeftovers(const QString& parent)
{
    for (const DirectoryEntry& entry : ListDirectory(parent)) {
        if (!entry.isDirectory || !entry.name.startsWith(QLatin1String(prefix))) {
            continue;
        }
        const CDescriptor folder(Lock(parent + entry.name));
        if (folder.Get() >= 0 && IsOld(folder.Get())) {
            RemoveDirectoryTree(parent + entry.name);
        }
    }
}

} // namespace

CTempFolder::CTempFolder(const QString& parent) : lock(-1)
{
    RemoveLeftovers(parent);
    path = FindFreePath(parent);
    if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0) {
        throw CWin32Exception(errno, Text(StringId::DirectoryNotCreated, path));
    }
    // A disk that knows no locks leaves it without one: its age alone protects it then.
    lock.Reset(Lock(path));
    path = WithTrailingSeparator(path);
}

CTempFolder::~CTempFolder()
{
    RemoveDirectoryTree(path);
}

QString CTempFolder::ExtractResource(const QString& name, const QString& type, const QString& fileName,
                                     bool overwrite)
{
    const QString target = path + fileName;
    if (overwrite || !FileExists(target)) {
        WriteFileAtomically(target, FindResource(name, type));
    }
    return target;
}
