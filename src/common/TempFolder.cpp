#include "common/TempFolder.h"

#include <cerrno>
#include <random>
#include <sys/stat.h>

#include <QFile>

#include "common/DirectoryProcessor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "resources/Resources.h"

CTempFolder::CTempFolder(const QString& parent)
{
    std::random_device random;
    do {
        // The prefix stands twice; leftovers of crashed runs are recognised by it.
        path = parent + QStringLiteral("cvn_tmp_cvn_tmp_") + QString::number(random(), 16);
    } while (FileExists(path));
    if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0) {
        throw CWin32Exception(errno, Text(StringId::DirectoryNotCreated, path));
    }
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
