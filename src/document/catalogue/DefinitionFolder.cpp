#include "document/catalogue/DefinitionFolder.h"

#include <QDir>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

QString FullPath(const QString& path)
{
    constexpr qsizetype limit = 1024;
    const QString full = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (full.size() > limit) {
        throw CUnexpectedException("GalleryProject", 260, Text(StringId::BufferInsufficient));
    }
    return full;
}

} // namespace

void ScanFolder(const QString& folder, const std::function<void(const QString& fullPath)>& onFile)
{
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        // Hidden: other systems leave "._name.xml" beside "name.xml", and that is no XML.
        if (!entry.isDirectory && !entry.isHidden &&
            entry.name.endsWith(QStringLiteral(".xml"), Qt::CaseInsensitive)) {
            onFile(FullPath(JoinPath(folder, entry.name)));
        }
    }
}

QString AbsoluteFolderOf(const QString& path)
{
    return WithTrailingSeparator(QDir::cleanPath(QFileInfo(path).absolutePath()));
}
