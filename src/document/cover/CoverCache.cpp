#include "document/cover/CoverCache.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/Trace.h"
#include "document/cover/CoverComposition.h"

namespace {

// To be raised when the same pictures give a cover of other bytes.
constexpr quint32 compositionVersion = 1;

// A cover of 824 by 624 pixels takes less than 2 MB.
constexpr qint64 maxFileSize = 16 * 1024 * 1024;

constexpr int checksumSize = 16;

// Against damage, not against people: whoever can write here can write to the user's pictures as well.
QByteArray ChecksumOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
}

// Null if the file isn't one that Keep has written as a whole.
QByteArray ReadKept(const QString& file)
{
    const QFileInfo info(file);
    QFile kept(file);
    if (!info.isFile() || info.size() > maxFileSize || !kept.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    const QByteArray all = kept.readAll();
    const QByteArray cover = all.mid(checksumSize);
    return !cover.isEmpty() && all.left(checksumSize) == ChecksumOf(cover) ? cover : QByteArray();
}

// The time of its last change is that of its last use.
void MarkUsed(const QString& file)
{
    ::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), nullptr, 0);
}

QFileInfoList KeptNewestFirst(const QString& folder)
{
    // An empty name would be the current folder.
    return folder.isEmpty()
               ? QFileInfoList()
               : QDir(folder).entryInfoList({QStringLiteral("*.cover")}, QDir::Files, QDir::Time);
}

} // namespace

CCoverCache::CCoverCache(const Options& options) : options(options) {}

QByteArray CCoverCache::MakeCover(const QString& path, const std::vector<CoverPicture>& pictures)
{
    const QByteArray key = KeyOf(path, pictures);
    if (pictures.empty()) {
        // Not worth a file, but covers that show it are.
        SaveCover(path, pictures);
        return key;
    }
    if (Restore(key, path)) {
        return key;
    }
    if (SaveCover(path, pictures) != CoverState::Whole) {
        return QByteArray(); // what can't be read now may be readable later on
    }
    Keep(key, path);
    return key;
}

QByteArray CCoverCache::KeyOf(const QString& path, const std::vector<CoverPicture>& pictures) const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << compositionVersion << QFileInfo(path).suffix().toLower() << quint32(pictures.size());
    for (const CoverPicture& picture : pictures) {
        stream << picture.isCover << picture.angle;
        if (picture.isCover) {
            if (picture.coverKey.isNull()) {
                return QByteArray();
            }
            stream << picture.coverKey;
            continue;
        }
        const auto source = FileIdentity::Of(picture.path);
        if (!source || source->IsYoungerThan(options.restless)) {
            return QByteArray();
        }
        stream << picture.path << qint64{source->size} << qint64{source->modified} << qint64{source->changed}
               << quint64{source->sample};
    }
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

bool CCoverCache::Restore(const QByteArray& key, const QString& path) const
{
    if (options.folder.isEmpty() || key.isNull()) {
        return false;
    }
    const QByteArray cover = ReadKept(FileOf(key));
    if (cover.isNull() || ReplaceFile(path, cover, Durability::Plain) != 0) {
        return false;
    }
    MarkUsed(FileOf(key));
    return true;
}

void CCoverCache::Keep(const QByteArray& key, const QString& path)
{
    if (options.folder.isEmpty() || key.isNull()) {
        return;
    }
    try {
        const QByteArray cover = ReadWholeFile(path);
        MakeDirectoryPath(options.folder, DirectoryAccess::OwnerOnly);
        // They show unpublished pictures.
        QFile(options.folder).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const int error = ReplaceFile(FileOf(key), ChecksumOf(cover) + cover, Durability::Plain);
        if (error != 0) {
            throw CWin32Exception(error, Text(StringId::FileNotWritten, FileOf(key)));
        }
        if (untilTidying.fetch_sub(cover.size()) <= cover.size()) {
            untilTidying = options.limit / 16;
            RemoveLongestUnused();
        }
    } catch (const CExceptionBase& failure) {
        Trace(QStringLiteral("CCoverCache::Keep failed: ") + failure.GetDescription());
    }
}

QString CCoverCache::FileOf(const QByteArray& key) const
{
    return JoinPath(options.folder, QString::fromLatin1(key.toHex()) + QStringLiteral(".cover"));
}

int64_t CCoverCache::GetSize() const
{
    int64_t size = 0;
    for (const QFileInfo& kept : KeptNewestFirst(options.folder)) {
        size += kept.size();
    }
    return size;
}

void CCoverCache::Clear()
{
    RemoveAbandonedTemporaries(options.folder);
    for (const QFileInfo& kept : KeptNewestFirst(options.folder)) {
        QFile::remove(kept.filePath());
    }
}

void CCoverCache::RemoveLongestUnused() const
{
    RemoveAbandonedTemporaries(options.folder);
    int64_t size = 0;
    for (const QFileInfo& kept : KeptNewestFirst(options.folder)) {
        size += kept.size();
        if (size > options.limit) {
            QFile::remove(kept.filePath());
        }
    }
}
