#include "document/pictures/PictureFiles.h"

#include <QFileInfo>

#include "common/FileSystem.h"
#include "common/Text.h"

bool IsFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

bool IsPictureFile(const QString& name)
{
    const qsizetype point = name.lastIndexOf(QLatin1Char('.'));
    const QString extension = Lower(name.mid(point + 1));
    for (const QLatin1String known : {QLatin1String("gif"), QLatin1String("png"), QLatin1String("bmp"),
                                      QLatin1String("jpg"), QLatin1String("pcx")}) {
        if (point >= 0 && extension == known) {
            return true;
        }
    }
    return false;
}

std::vector<QString> ListPictureFiles(const QString& folder)
{
    std::vector<QString> paths;
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        if (!entry.isDirectory && !entry.isHidden && IsPictureFile(entry.name)) {
            paths.push_back(JoinPath(folder, entry.name));
        }
    }
    return paths;
}

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
    for (const QString& folder : ListSubfolders()) {
        if (IsFile(folder + name)) {
            return folder + name;
        }
    }
    return QString();
}

const QStringList& CPictureFinder::ListSubfolders()
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
