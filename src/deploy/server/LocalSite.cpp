#include "deploy/server/LocalSite.h"

#include <algorithm>
#include <map>
#include <optional>

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QFile>

#include "common/Exceptions.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "common/WorkerPool.h"
#include "resources/StringTable.h"

namespace {

constexpr quint32 magic = 0x56485331;
constexpr qint64 hashSize = 32;
// The clocks of file systems are coarse, down to two seconds.
constexpr int64_t restless = 3'000'000'000; // nanoseconds

struct KnownHash {
    FileStamp stamp;
    QByteArray sha256;
};
using KnownHashes = std::map<QString, KnownHash>;

KnownHashes LoadHashes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 foundMagic = 0;
    quint32 count = 0;
    stream >> foundMagic >> count;
    KnownHashes hashes;
    for (quint32 i = 0; i < count && foundMagic == magic && stream.status() == QDataStream::Ok; ++i) {
        QString name;
        qint64 size = 0;
        qint64 modified = 0;
        QByteArray sha256;
        stream >> name >> size >> modified >> sha256;
        hashes[name] = {{size, modified}, sha256};
    }
    const bool isWhole = stream.status() == QDataStream::Ok &&
                         std::all_of(hashes.begin(), hashes.end(), [](const auto& entry) {
                             return entry.second.sha256.size() == hashSize;
                         });
    return isWhole ? hashes : KnownHashes();
}

// Without it everything is read once more the next time.
void SaveHashes(const QString& path, const KnownHashes& hashes)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << magic << static_cast<quint32>(hashes.size());
    for (const auto& [name, known] : hashes) {
        stream << name << qint64{known.stamp.size} << qint64{known.stamp.modified} << known.sha256;
    }
    ReplaceFile(path, bytes, Durability::Plain);
}

QByteArray HashOf(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        throw CFileException(
            path, {StringId::CouldNotOpenFile, StringId::FileDoesNotExist, StringId::CheckFolderAndFileName});
    }
    return hash.result();
}

} // namespace

std::vector<LocalFile> ReadLocalSite(const QString& siteFolder, const QStringList& paths,
                                     const QString& hashesPath, const CStopSignal& stop)
{
    const KnownHashes known = LoadHashes(hashesPath);
    const int64_t now = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
    std::vector<std::optional<KnownHash>> found(static_cast<size_t>(paths.size()));
    OnAllCores(found.size(), [&](size_t i) {
        const QString& name = paths[static_cast<qsizetype>(i)];
        const QString path = JoinPath(siteFolder, name);
        const auto stamp = FileStamp::Of(path);
        if (!stamp || stop.IsSet()) {
            return;
        }
        const auto hash = known.find(name);
        const bool isKnown = hash != known.end() && hash->second.stamp == *stamp;
        found[i] = KnownHash{*stamp, isKnown ? hash->second.sha256 : HashOf(path)};
    });
    std::vector<LocalFile> files;
    KnownHashes kept;
    for (size_t i = 0; i < found.size(); ++i) {
        const QString& name = paths[static_cast<qsizetype>(i)];
        if (found[i]) {
            files.push_back({name, found[i]->stamp.size, found[i]->sha256});
        }
        if (found[i] && now - found[i]->stamp.modified > restless) {
            kept[name] = *found[i];
        }
    }
    if (!stop.IsSet()) {
        SaveHashes(hashesPath, kept);
    }
    return files;
}
