#include "deploy/server/LocalSite.h"

#include <algorithm>
#include <map>
#include <unistd.h>

#include <QDataStream>
#include <QDateTime>
#include <QFile>

#include "common/Exceptions.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "common/WorkerPool.h"
#include "deploy/server/ContentHash.h"
#include "resources/StringTable.h"

namespace {

constexpr quint32 magic = 0x56485331;
// The clocks of file systems are coarse, down to two seconds.
constexpr int64_t restless = 3'000'000'000; // nanoseconds

struct KnownHash {
    FileStamp stamp;
    QByteArray hash;
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
        QByteArray hash;
        stream >> name >> size >> modified >> hash;
        hashes[name] = {{size, modified}, hash};
    }
    const bool isWhole = stream.status() == QDataStream::Ok &&
                         std::all_of(hashes.begin(), hashes.end(), [](const auto& entry) {
                             return entry.second.hash.size() == CContentHash::size;
                         });
    return isWhole ? hashes : KnownHashes();
}

[[noreturn]] void ThrowNotRead(const QString& path)
{
    throw CFileException(
        path, {StringId::CouldNotOpenFile, StringId::FileDoesNotExist, StringId::CheckFolderAndFileName});
}

QByteArray HashOf(const QString& path)
{
    QFile file(path);
    CContentHash hash;
    std::vector<char> block(1024 * 1024);
    qint64 count = -1;
    if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        while ((count = file.read(block.data(), static_cast<qint64>(block.size()))) > 0) {
            hash.Add(block.data(), static_cast<std::size_t>(count));
        }
    }
    if (count < 0) {
        ThrowNotRead(path);
    }
    return hash.Get();
}

} // namespace

CLocalSite::CLocalSite(const SiteSources& sources, const QString& hashesPath)
    : hashesPath(hashesPath), lookedAt(QDateTime::currentMSecsSinceEpoch() * 1'000'000)
{
    const KnownHashes known = LoadHashes(hashesPath);
    for (const auto& [path, source] : sources) {
        const auto stamp = FileStamp::Of(source);
        if (!stamp) {
            continue;
        }
        if (::access(QFile::encodeName(source).constData(), R_OK) != 0) {
            ThrowNotRead(source);
        }
        const auto hash = known.find(path);
        const bool isKnown = hash != known.end() && hash->second.stamp == *stamp;
        files.push_back({.path = path,
                         .source = source,
                         .size = stamp->size,
                         .modified = stamp->modified,
                         .hash = isKnown ? hash->second.hash : QByteArray()});
    }
}

void CLocalSite::ReadHashes(const std::function<bool(const LocalFile&)>& isNeeded, const CStopSignal& stop)
{
    std::vector<LocalFile*> unknown;
    for (LocalFile& file : files) {
        if (file.hash.isEmpty() && isNeeded(file)) {
            unknown.push_back(&file);
        }
    }
    OnAllCores(unknown.size(), [&](size_t i) {
        if (!stop.IsSet()) {
            unknown[i]->hash = HashOf(unknown[i]->source);
        }
    });
}

void CLocalSite::SetHashes(const std::map<QString, QByteArray>& hashes)
{
    for (LocalFile& file : files) {
        const auto found = hashes.find(file.path);
        if (found != hashes.end()) {
            file.hash = found->second;
        }
    }
}

void CLocalSite::SaveHashes() const
{
    std::vector<const LocalFile*> kept;
    for (const LocalFile& file : files) {
        if (!file.hash.isEmpty() && lookedAt - file.modified > restless) {
            kept.push_back(&file);
        }
    }
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << magic << static_cast<quint32>(kept.size());
    for (const LocalFile* const file : kept) {
        stream << file->path << qint64{file->size} << qint64{file->modified} << file->hash;
    }
    ReplaceFile(hashesPath, bytes, Durability::Plain);
}
