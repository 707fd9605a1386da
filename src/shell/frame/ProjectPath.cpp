#include "shell/frame/ProjectPath.h"

#include <QDir>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

QString NormalisedProjectPath(const QString& path)
{
    return QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

QString ProjectNameOf(const QString& path)
{
    const QString name = ExtractLastName(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}

void RequireProjectFile(const QString& path)
{
    if (FileExists(path) && !path.endsWith(QStringLiteral(".gallery"), Qt::CaseInsensitive)) {
        throw CGenericException(Text(StringId::NotAProject, path), Text(StringId::ProjectsEndInGallery),
                                Text(StringId::ChooseProjectFile));
    }
}
