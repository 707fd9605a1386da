#include "shell/frame/ProjectFile.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"

void RequireProjectFile(const QString& path)
{
    if (FileExists(path) && !path.endsWith(QStringLiteral(".gallery"), Qt::CaseInsensitive)) {
        throw CGenericException(Text(StringId::NotAProject, path), Text(StringId::ProjectsEndInGallery),
                                Text(StringId::ChooseProjectFile));
    }
}
