#include "content/DeploymentRecord.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include "common/Exceptions.h"
#include "resources/StringTable.h"

namespace {

// To be raised when the same origin gives other pixels, so that old images are not taken for new ones.
constexpr quint32 productionVersion = 1;
constexpr quint32 magic = 0x56445231;

QDataStream& operator<<(QDataStream& stream, const FileStamp& stamp)
{
    return stream << qint64{stamp.size} << qint64{stamp.modified};
}

QDataStream& operator>>(QDataStream& stream, FileStamp& stamp)
{
    qint64 size = 0;
    qint64 modified = 0;
    stream >> size >> modified;
    stamp = {size, modified};
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const CDeploymentRecord::Image& image)
{
    const CDeploymentRecord::Origin& origin = image.origin;
    return stream << origin.sourcePath << qint64{origin.source.size} << qint64{origin.source.modified}
                  << qint64{origin.source.changed} << quint64{origin.source.sample} << origin.key
                  << image.isWhole;
}

QDataStream& operator>>(QDataStream& stream, CDeploymentRecord::Image& image)
{
    CDeploymentRecord::Origin& origin = image.origin;
    qint64 size = 0;
    qint64 modified = 0;
    qint64 changed = 0;
    quint64 sample = 0;
    stream >> origin.sourcePath >> size >> modified >> changed >> sample >> origin.key >> image.isWhole;
    origin.source = {.size = size, .modified = modified, .changed = changed, .sample = sample};
    return stream;
}

bool operator==(const CDeploymentRecord::Origin& one, const CDeploymentRecord::Origin& other)
{
    return one.sourcePath == other.sourcePath && one.source == other.source && one.key == other.key;
}

} // namespace

CDeploymentRecord::CDeploymentRecord(const QString& path, const QString& targetFolder, Milliseconds restless,
                                     Durability durability)
    : path(path),
      targetFolder(WithTrailingSeparator(QDir::cleanPath(QDir(targetFolder).absolutePath()))),
      restless(restless),
      durability(durability)
{
    Load();
}

QString CDeploymentRecord::PathFor(const QString& recordsFolder, const QString& targetFolder,
                                   const QString& projectKey)
{
    const QByteArray target =
        QDir::cleanPath(QDir(targetFolder).absolutePath()).toUtf8() + '\0' + projectKey.toUtf8();
    const QByteArray name = QCryptographicHash::hash(target, QCryptographicHash::Sha1).toHex();
    return JoinPath(recordsFolder, QString::fromLatin1(name));
}

void CDeploymentRecord::TakeOver(const QString& path, const QString& formerPath)
{
    if (!FileExists(path) && FileExists(formerPath)) {
        QFile::rename(formerPath, path);
    }
}

std::optional<CDeploymentRecord::Origin> CDeploymentRecord::FindOrigin(const QString& sourcePath) const
{
    const bool isOfThisRun = !runFolder.isEmpty() && sourcePath.startsWith(runFolder);
    const auto source = isOfThisRun ? FileIdentity::OfContent(sourcePath) : FileIdentity::Of(sourcePath);
    if (!source) {
        return std::nullopt;
    }
    return Origin{.sourcePath = isOfThisRun ? sourcePath.mid(runFolder.size()) : sourcePath,
                  .source = *source,
                  .key = QString()};
}

const CDeploymentRecord::Image* CDeploymentRecord::FindCurrent(const QString& imagePath, const Origin& origin)
{
    if (origin.key.isNull()) {
        return nullptr;
    }
    const QString relative = RelativePath(imagePath);
    const auto stamp = FileStamp::Of(imagePath);
    const CMutexLock lock(mutex);
    const auto found = entries.find(relative);
    if (found == entries.end() || !found->second.image || !(found->second.image->origin == origin) ||
        stamp != found->second.stamp) {
        return nullptr;
    }
    found->second.isOfThisRun = true;
    return &*found->second.image;
}

bool CDeploymentRecord::IsListed(const QString& filePath) const
{
    const QString relative = RelativePath(filePath);
    {
        const CMutexLock lock(mutex);
        if (entries.contains(relative)) {
            return true;
        }
    }
    const auto stamp = FileStamp::Of(filePath);
    return abandonedSince != 0 && stamp && stamp->modified >= abandonedSince;
}

QStringList CDeploymentRecord::GetFiles() const
{
    const CMutexLock lock(mutex);
    QStringList files;
    for (const auto& [relative, entry] : entries) {
        files += relative;
    }
    return files;
}

void CDeploymentRecord::NoteFile(const QString& filePath)
{
    Note(filePath, std::nullopt);
}

void CDeploymentRecord::NoteImage(const QString& imagePath, const Image& image)
{
    const bool isKnown = !image.origin.key.isNull() && !image.origin.source.IsYoungerThan(restless);
    Note(imagePath, isKnown ? std::optional(image) : std::nullopt);
}

void CDeploymentRecord::Note(const QString& filePath, std::optional<Image> image)
{
    const QString relative = RelativePath(filePath);
    const auto stamp = FileStamp::Of(filePath);
    if (relative.isEmpty() || !stamp) {
        return;
    }
    const CMutexLock lock(mutex);
    entries[relative] = {.stamp = *stamp, .image = std::move(image), .isOfThisRun = true};
}

void CDeploymentRecord::RemoveLeftovers()
{
    const CMutexLock lock(mutex);
    for (auto entry = entries.begin(); entry != entries.end();) {
        if (entry->second.isOfThisRun) {
            ++entry;
            continue;
        }
        const QString leftover = targetFolder + entry->first;
        if (FileStamp::Of(leftover) == entry->second.stamp && QFile::remove(leftover)) {
            RemoveEmptyFolders(leftover.section(QLatin1Char('/'), 0, -2));
        }
        entry = entries.erase(entry);
    }
}

// Up to the target folder itself, which stays.
void CDeploymentRecord::RemoveEmptyFolders(QString folder) const
{
    while (folder.size() >= targetFolder.size() && ::rmdir(QFile::encodeName(folder).constData()) == 0) {
        folder = folder.section(QLatin1Char('/'), 0, -2);
    }
}

void CDeploymentRecord::Begin() const
{
    // The clocks of file systems are coarse, and an earlier run may have been ended the same way.
    constexpr int64_t coarse = 2'000'000'000;
    const int64_t now = QDateTime::currentMSecsSinceEpoch() * 1'000'000 - coarse;
    Write(abandonedSince != 0 ? std::min(abandonedSince, now) : now);
}

void CDeploymentRecord::Save() const
{
    Write(0);
}

void CDeploymentRecord::Write(int64_t openSince) const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    {
        const CMutexLock lock(mutex);
        stream << magic << productionVersion << targetFolder << quint32(entries.size());
        for (const auto& [relative, entry] : entries) {
            stream << relative << entry.stamp << entry.image.has_value();
            if (entry.image) {
                stream << *entry.image;
            }
        }
        stream << qint64{openSince};
    }
    const QString folder = path.section(QLatin1Char('/'), 0, -2);
    // It names unpublished pictures.
    MakeDirectoryPath(folder, DirectoryAccess::OwnerOnly);
    QFile(folder).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (const int error = ReplaceFile(path, bytes, durability)) {
        throw CWin32Exception(error, Text(StringId::FileNotWritten, path));
    }
}

void CDeploymentRecord::Load()
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 foundMagic = 0;
    quint32 foundVersion = 0;
    QString foundTarget;
    quint32 count = 0;
    stream >> foundMagic >> foundVersion >> foundTarget >> count;
    const bool isOurs = foundMagic == magic && foundTarget == targetFolder;
    std::map<QString, Entry> loaded;
    for (quint32 i = 0; i < count && isOurs && stream.status() == QDataStream::Ok; ++i) {
        QString relative;
        Entry entry;
        bool hasImage = false;
        stream >> relative >> entry.stamp >> hasImage;
        if (hasImage) {
            entry.image = Image();
            stream >> *entry.image;
        }
        // What another version has made is known as ours, but is made anew.
        if (foundVersion != productionVersion) {
            entry.image.reset();
        }
        // A damaged record must not lead out of the target, nor to the target itself.
        if (!relative.isEmpty() && relative != QLatin1String(".") && QDir::cleanPath(relative) == relative &&
            !relative.startsWith(QLatin1String("..")) && QDir::isRelativePath(relative)) {
            loaded[relative] = std::move(entry);
        }
    }
    if (stream.status() != QDataStream::Ok) {
        return;
    }
    // Those of earlier versions end here.
    qint64 openSince = 0;
    stream >> openSince;
    abandonedSince = isOurs && stream.status() == QDataStream::Ok ? openSince : 0;
    const CMutexLock lock(mutex);
    entries = std::move(loaded);
}

// Empty for a file outside the target folder.
QString CDeploymentRecord::RelativePath(const QString& filePath) const
{
    const QString clean = QDir::cleanPath(filePath);
    return clean.startsWith(targetFolder) ? clean.mid(targetFolder.size()) : QString();
}
