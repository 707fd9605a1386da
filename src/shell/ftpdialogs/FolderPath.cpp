#include "shell/ftpdialogs/FolderPath.h"

#include "resources/StringTable.h"

namespace {

constexpr int MaxDots = 30;

} // namespace

QString EnteredPath(const QString& directory, const QString& name)
{
    return directory.isEmpty() ? name : directory + QLatin1Char('/') + name;
}

QString NormalisedPath(const QString& path)
{
    const QString wayUp = QStringLiteral("/..");
    if (path.size() <= wayUp.size() || !path.endsWith(wayUp)) {
        return path;
    }
    const QString below = path.chopped(wayUp.size());
    return below.left(qMax(below.lastIndexOf(QLatin1Char('/')), qsizetype(0)));
}

QString WithOneMoreDot(const QString& text)
{
    const qsizetype firstDot = text.indexOf(QLatin1Char('.'));
    const bool isFull = firstDot >= 0 && text.size() - firstDot == MaxDots;
    return isFull ? Text(StringId::GettingFolders) : text + QLatin1Char('.');
}
