#include "common/NamedFile.h"

#include <QDir>
#include <QFileInfo>

#include "common/FileSystem.h"
#include "common/Text.h"

namespace {

bool IsAbsolute(const QString& name)
{
    const bool hasDrive = name.size() > 1 && name[0].isLetter() && name[1] == QLatin1Char(':');
    return name.startsWith(QLatin1Char('/')) || hasDrive;
}

// Both are clean and absolute.
bool LiesBelow(const QString& path, const QString& root)
{
    return path != root && path.startsWith(WithTrailingSeparator(root));
}

QString Clean(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

// The entry of the folder, exact or else the first that differs in capitals; null if there is none.
QString FindEntry(const QString& folder, const QString& name)
{
    if (FileExists(JoinPath(folder, name))) {
        return name;
    }
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        if (EqualsIgnoreCase(entry.name, name)) {
            return entry.name;
        }
    }
    return QString();
}

// path: clean, and below root.
NamedFile FindBelow(const QString& root, const QString& path)
{
    NamedFile found{.state = NamedFile::State::Found, .path = root, .differsInCase = false};
    for (const QString& part : path.mid(root.size()).split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QString entry = FindEntry(found.path, part);
        if (entry.isNull()) {
            return {.state = NamedFile::State::Missing, .path = path, .differsInCase = false};
        }
        found.differsInCase = found.differsInCase || entry != part;
        found.path = JoinPath(found.path, entry);
    }
    if (!QFileInfo::exists(found.path)) {
        return {.state = NamedFile::State::Missing, .path = path, .differsInCase = false}; // a dangling link
    }
    const bool isInside =
        LiesBelow(QFileInfo(found.path).canonicalFilePath(), QFileInfo(root).canonicalFilePath());
    found.state = isInside ? NamedFile::State::Found : NamedFile::State::LeadsOut;
    return found;
}

NamedFile FindNative(const QString& folder, const QString& name, const QString& root)
{
    const QString path = Clean(JoinPath(folder, name));
    if (name.isEmpty()) {
        return {.state = NamedFile::State::Missing, .path = path, .differsInCase = false};
    }
    if (IsAbsolute(name) || !LiesBelow(path, Clean(root))) {
        return {.state = NamedFile::State::LeadsOut, .path = path, .differsInCase = false};
    }
    return FindBelow(Clean(root), path);
}

} // namespace

NamedFile FindNamedFile(const QString& folder, const QString& name, const QString& root)
{
    const NamedFile literal = FindNative(folder, name, root);
    if (literal.state == NamedFile::State::Found || !name.contains(QLatin1Char('\\'))) {
        return literal;
    }
    QString native = name;
    return FindNative(folder, native.replace(QLatin1Char('\\'), QLatin1Char('/')), root);
}
