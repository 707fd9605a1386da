#include "document/files/FileTrace.h"

#include <algorithm>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

FileState LookAtFile(const QString& path)
{
    const QFileInfo file(path);
    if (!file.isFile()) {
        return {};
    }
    const QDateTime moment = file.lastModified();
    return {.isThere = true, .date = moment.isValid() ? DateFromLocalTime(moment) : 0, .size = file.size()};
}

bool IsFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

QString FileTrace::GetPath() const
{
    return relative.isEmpty() || QDir::isAbsolutePath(relative) ? QString()
                                                                : QDir::cleanPath(folder + relative);
}

QString RelativePathOf(const QString& folder, const QString& path)
{
    if (!QDir::isAbsolutePath(path)) {
        return QString();
    }
    const QString file = QDir::cleanPath(path);
    if (file.startsWith(folder)) { // most lie below the project
        return file.mid(folder.size());
    }
    const auto [end, unused] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    const qsizetype common = folder.left(end - folder.begin()).lastIndexOf(QLatin1Char('/')) + 1;
    return QStringLiteral("../").repeated(folder.mid(common).count(QLatin1Char('/'))) + file.mid(common);
}
