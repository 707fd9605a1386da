#include "document/project/ProjectFilePath.h"

#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

const QString& Ending()
{
    static const QString ending = QStringLiteral(".gallery");
    return ending;
}

CGenericException NotAProjectError(const QString& path, StringId reason)
{
    return CGenericException(Text(StringId::NotAProject, path), Text(reason),
                             Text(StringId::ChooseGalleryFile));
}

} // namespace

bool HasProjectEnding(const QString& path)
{
    return path.endsWith(Ending(), Qt::CaseInsensitive);
}

QString WithProjectEnding(const QString& path)
{
    if (path.isEmpty() || HasProjectEnding(path)) {
        return path;
    }
    const QString project = path + Ending();
    return FileExists(path) && !FileExists(project) ? path : project;
}

void RequireOrdinaryFile(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        throw NotAProjectError(path, StringId::ProjectIsFolder);
    }
    // A link is followed; one that leads to nothing may become a file.
    const bool leadsInACircle = info.isSymLink() && QFileInfo(info.symLinkTarget()).isSymLink();
    if (info.exists() ? !info.isFile() : leadsInACircle) {
        throw NotAProjectError(path, StringId::ProjectIsNoFile);
    }
}

void RequireProjectFile(const QString& path)
{
    RequireOrdinaryFile(path);
    if (FileExists(path) && !HasProjectEnding(path)) {
        throw CGenericException(Text(StringId::NotAProject, path), Text(StringId::ProjectsEndInGallery),
                                Text(StringId::ChooseProjectFile));
    }
}
