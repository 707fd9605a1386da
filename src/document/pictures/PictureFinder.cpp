#include "document/pictures/PictureFinder.h"

#include <QFileInfo>

#include "common/FileSystem.h"

namespace {

// A folder is no picture, and a pipe or a device would keep whoever opens it waiting.
bool IsFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

} // namespace

QString CPictureFinder::Find(const QString& path)
{
    return IsFile(path) ? path : FindPictureInFolders(path);
}

QString CPictureFinder::FindPictureInFolders(const QString& path)
{
    const QString name = ExtractLastName(path);
    if (IsFile(projectFolder + name)) {
        return projectFolder + name;
    }
    for (const QString& folder : GetSubfolders()) {
        if (IsFile(folder + name)) {
            return folder + name;
        }
    }
    return QString();
}

const QStringList& CPictureFinder::GetSubfolders()
{
    if (!subfolders) {
        subfolders.emplace();
        for (const DirectoryEntry& entry : ListDirectory(projectFolder)) {
            if (entry.isDirectory) {
                subfolders->append(WithTrailingSeparator(projectFolder + entry.name));
            }
        }
    }
    return *subfolders;
}
