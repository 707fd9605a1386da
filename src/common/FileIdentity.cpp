#include "common/FileIdentity.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>

#include "common/Descriptor.h"

namespace {

constexpr int64_t sampleCount = 5;
constexpr int64_t sampleSize = 4096;

int64_t Nanoseconds(const timespec& time)
{
    return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// FNV-1a, 64 bits.
void AddToHash(uint64_t& hash, const uint8_t* bytes, size_t count)
{
    constexpr uint64_t prime = 0x100000001b3;
    for (size_t i = 0; i < count; ++i) {
        hash = (hash ^ bytes[i]) * prime;
    }
}

// Of the head, the tail and three places between.
uint64_t SampleOf(const CDescriptor& file, int64_t size)
{
    uint64_t hash = 0xcbf29ce484222325;
    std::array<uint8_t, sampleSize> bytes;
    for (int64_t i = 0; i < sampleCount; ++i) {
        const int64_t offset = std::max<int64_t>(size - sampleSize, 0) * i / (sampleCount - 1);
        const ssize_t count = ::pread(file.Get(), bytes.data(), bytes.size(), offset);
        AddToHash(hash, bytes.data(), static_cast<size_t>(std::max<ssize_t>(count, 0)));
    }
    return hash;
}

} // namespace

std::optional<FileIdentity> FileIdentity::Of(const QString& path)
{
    const CDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileIdentity{.size = status.st_size,
                        .modified = Nanoseconds(status.st_mtim),
                        .changed = Nanoseconds(status.st_ctim),
                        .sample = SampleOf(file, status.st_size)};
}

std::optional<FileIdentity> FileIdentity::OfContent(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        return std::nullopt;
    }
    return FileIdentity{.size = file.size(),
                        .sample = qFromLittleEndian<uint64_t>(hash.result().constData())};
}

bool FileIdentity::IsYoungerThan(std::chrono::milliseconds age) const
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::chrono::nanoseconds latest(std::max(changed, modified));
    return now - latest < age;
}

std::optional<FileStamp> FileStamp::Of(const QString& path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    return FileStamp{.size = status.st_size, .modified = Nanoseconds(status.st_mtim)};
}
