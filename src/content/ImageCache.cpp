#include "content/ImageCache.h"

#include <atomic>
#include <fcntl.h>
#include <limits>
#include <mutex>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/DirectoryProcessor.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "document/cover/CoverCache.h"
#include "effects/FileNames.h"
#include "effects/ImageEffect.h"

namespace {

constexpr qsizetype readableLength = 60; // of a name that is made longer
constexpr int64_t nanoseconds = 1'000'000'000;
constexpr int64_t usedAnew = 60 * 60; // seconds; a use that follows so soon on another isn't noted

// Bytes that this program has written since it has looked at the limit. So many at first that it looks at
// once: a program that never writes much would never look otherwise.
std::atomic<int64_t> written = std::numeric_limits<int64_t>::max() / 2;

// 16 hexadecimal digits.
QString HashOf(const QString& text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().left(16));
}

// The time of a file's last change is that of its last use.
void MarkUsed(const QString& path)
{
    const auto stamp = FileStamp::Of(path);
    if (stamp && stamp->modified / nanoseconds < QDateTime::currentSecsSinceEpoch() - usedAnew) {
        ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), nullptr, 0);
    }
}

QFileInfoList FilesOf(const QString& folder, QDir::SortFlags order = QDir::Unsorted)
{
    return QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, order);
}

} // namespace

CImageCache::CImageCache() : options{.folder = FindImageCacheFolder()}
{
    static std::once_flag once;
    std::call_once(once, [] { RemoveFormerImageFolders(FindTemporaryFolder()); });
}

QString CImageCache::PathFor(const QString& sourcePath, const CImageEffect& effect) const
{
    // They show unpublished pictures.
    MakeDirectoryPath(options.folder, DirectoryAccess::OwnerOnly);
    const FileNameParts name = SplitFileName(effect.GetResultFileName(ExtractLastName(sourcePath)));
    const QString key = effect.GetKey();
    const auto stamp = FileStamp::Of(sourcePath);
    const QString state = stamp ? QStringLiteral("%1 %2").arg(stamp->size).arg(stamp->modified) : QString();
    // The path comes last, since it alone may hold line breaks that the chain has, too.
    const QString all = state + QLatin1Char('\n') + (key.isNull() ? name.base : key) + QLatin1Char('\n') +
                        name.extension + QLatin1Char('\n') + sourcePath;
    QString path = JoinPath(options.folder,
                            name.base.left(readableLength) + QLatin1Char('_') + HashOf(all) + name.extension);
    MarkUsed(path);
    return path;
}

void CImageCache::NoteMade(const QString& path) const
{
    const int64_t size = QFileInfo(path).size();
    if (written.fetch_add(size) + size >= options.limit / 16) {
        written = 0;
        RemoveLongestUnused();
    }
}

void CImageCache::RemoveLongestUnused() const
{
    RemoveAbandonedTemporaries(options.folder);
    int64_t size = 0;
    for (const QFileInfo& file : FilesOf(options.folder, QDir::Time)) {
        size += file.size();
        if (size > options.limit) {
            QFile::remove(file.filePath());
        }
    }
}

int64_t CImageCache::GetSize() const
{
    int64_t size = 0;
    for (const QFileInfo& file : FilesOf(options.folder)) {
        size += file.size();
    }
    return size;
}

void CImageCache::Clear() const
{
    RemoveAbandonedTemporaries(options.folder);
    for (const QFileInfo& file : FilesOf(options.folder)) {
        if (!file.isHidden()) {
            QFile::remove(file.filePath());
        }
    }
}

void RemoveFormerImageFolders(const QString& temporaryFolder)
{
    for (const DirectoryEntry& entry : ListDirectory(temporaryFolder)) {
        if (entry.isDirectory && entry.name.endsWith(QStringLiteral("_imgs"))) {
            RemoveDirectoryTree(JoinPath(temporaryFolder, entry.name));
        }
    }
}

int64_t GetSizeOfCaches()
{
    return CImageCache().GetSize() + CCoverCache({.folder = FindCoversFolder()}).GetSize();
}

void ClearCaches()
{
    CImageCache().Clear();
    CCoverCache({.folder = FindCoversFolder()}).Clear();
}
