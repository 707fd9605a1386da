#include "shell/frame/ProjectPath.h"

#include <QDir>
#include <QFileInfo>

#include "common/FileSystem.h"

namespace {

// As many links in a row as the system follows.
constexpr int LinkLimit = 40;

QString Cleaned(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

QString NormalisedProjectPath(const QString& path)
{
    QString file = Cleaned(path);
    for (int i = 0; i < LinkLimit && QFileInfo(file).isSymLink(); ++i) {
        file = Cleaned(QFileInfo(file).symLinkTarget());
    }
    return QDir::toNativeSeparators(file);
}

QString ProjectNameOf(const QString& path)
{
    const QString name = ExtractLastName(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}
