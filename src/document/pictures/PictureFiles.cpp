#include "document/pictures/PictureFiles.h"

#include "common/FileSystem.h"
#include "common/Text.h"

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
