#include "common/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "common/Descriptor.h"
#include "common/Exceptions.h"
#include "common/Text.h"

namespace {

bool IsSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

qsizetype LastSeparator(const QString& path)
{
    qsizetype position = path.size() - 1;
    while (position >= 0 && !IsSeparator(path[position])) {
        --position;
    }
    return position;
}

bool ComesBefore(const DirectoryEntry& a, const DirectoryEntry& b)
{
    const int folded = QString::compare(Lower(a.name), Lower(b.name));
    return folded != 0 ? folded < 0 : a.name < b.name;
}

// A link to its own folder or to one above it would make a walk endless.
bool LeadsBackUp(const QFileInfo& info)
{
    if (!info.isSymLink() || !info.isDir()) {
        return false;
    }
    const QString folder = WithTrailingSeparator(info.dir().canonicalPath());
    return folder.startsWith(WithTrailingSeparator(info.canonicalFilePath()));
}

// The parent for MakeDirectoryPath: the path without its last separators and last name.
QString ParentOf(const QString& path)
{
    QString parent = path;
    while (parent.size() > 1 && IsSeparator(parent.back())) {
        parent.chop(1);
    }
    parent = ExtractFolder(parent);
    while (parent.size() > 1 && IsSeparator(parent.back())) {
        parent.chop(1);
    }
    return parent;
}

// Of a process, with a number within it. Short, since the target's own name may already have all the length
// that a name can have.
QString TemporaryName(pid_t process, int number)
{
    return QStringLiteral(".vistorama-%1-%2.tmp").arg(process).arg(number);
}

// Beside the file; no other call and no other process has it.
QByteArray TemporaryBeside(const QString& path)
{
    static std::atomic<int> counter = 0;
    return QFile::encodeName(ExtractFolder(path) + TemporaryName(::getpid(), ++counter));
}

struct Replacement {
    QByteArray target;
    QByteArray temporary;
    bool synced;
};

// write: false, and the reason in errno, if it fails. Returns 0, or the value of errno of the step that
// failed.
int ReplaceByTemporary(const Replacement& names, const std::function<bool(CDescriptor&)>& write)
{
    struct stat old;
    const bool replaces = ::stat(names.target.constData(), &old) == 0;
    // A rename asks for rights on the folder only; a file that its owner protected has to stay.
    if (replaces && ::access(names.target.constData(), W_OK) != 0) {
        return errno;
    }
    CDescriptor file(::open(names.temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.Get() < 0) {
        return errno;
    }
    const bool written = (!replaces || ::fchmod(file.Get(), old.st_mode & 07777) == 0) && write(file) &&
                         (!names.synced || ::fsync(file.Get()) == 0) && file.Close() &&
                         ::rename(names.temporary.constData(), names.target.constData()) == 0;
    if (written) {
        return 0;
    }
    const int error = errno;
    ::unlink(names.temporary.constData());
    return error;
}

// Of an ordinary file, no link; -1 for everything else.
int64_t OrdinarySize(const QByteArray& name)
{
    struct stat status;
    return ::lstat(name.constData(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

// As many bytes as there are, up to count.
size_t ReadUpTo(const CDescriptor& file, char* bytes, size_t count)
{
    size_t total = 0;
    while (total < count) {
        const ssize_t got = ::read(file.Get(), bytes + total, count - total);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        total += static_cast<size_t>(got);
    }
    return total;
}

// Nothing, and the reason in errno, if it can't be read.
std::optional<QByteArray> ReadBytes(const QByteArray& name)
{
    const CDescriptor file(::open(name.constData(), O_RDONLY | O_CLOEXEC));
    QByteArray bytes;
    std::vector<char> buffer(256 * 1024);
    for (;;) {
        const ssize_t count = file.Get() < 0 ? -1 : ::read(file.Get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR && file.Get() >= 0) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(buffer.data(), static_cast<qsizetype>(count));
    }
}

// Files of a layout or style may be films: they are never in memory as a whole.
constexpr size_t pieceSize = 1024 * 1024;

bool HoldTheSame(const CDescriptor& file, const CDescriptor& other)
{
    std::vector<char> piece(pieceSize);
    std::vector<char> otherPiece(pieceSize);
    for (;;) {
        const size_t size = ReadUpTo(file, piece.data(), pieceSize);
        if (ReadUpTo(other, otherPiece.data(), pieceSize) != size ||
            std::memcmp(piece.data(), otherPiece.data(), size) != 0) {
            return false;
        }
        if (size < pieceSize) {
            return true;
        }
    }
}

// False, and the reason in errno, if it fails.
bool CopyToTheEnd(const CDescriptor& source, CDescriptor& destination)
{
    // Within the system, as far as the file systems of both allow it.
    constexpr size_t most = 1024 * 1024 * 1024;
    while (::copy_file_range(source.Get(), nullptr, destination.Get(), nullptr, most, 0) > 0) {
    }
    // What is left by then: everything, or nothing.
    std::vector<char> piece;
    for (;;) {
        piece.resize(pieceSize);
        const ssize_t count = ::read(source.Get(), piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0;
        }
        if (!destination.WriteAll(piece.data(), static_cast<size_t>(count))) {
            return false;
        }
    }
}

// 0, or the value of errno of the step that failed.
int TryToCopy(const QString& source, const QString& destination)
{
    const QByteArray target = QFile::encodeName(destination);
    const CDescriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (from.Get() < 0 || ::fstat(from.Get(), &status) != 0) {
        return errno;
    }
    // Reading is much cheaper than writing a file again: no blocks are given back and taken.
    if (S_ISREG(status.st_mode) && OrdinarySize(target) == status.st_size) {
        const CDescriptor to(::open(target.constData(), O_RDONLY | O_CLOEXEC));
        if (to.Get() >= 0 && HoldTheSame(from, to)) {
            return 0;
        }
        if (::lseek(from.Get(), 0, SEEK_SET) != 0) {
            return errno;
        }
    }
    // What is there may be a link to the source, and stays whole if the disk is full.
    return ReplaceByTemporary({target, TemporaryBeside(destination), false},
                              [&from](CDescriptor& to) { return CopyToTheEnd(from, to); });
}

void CopyFileOver(const QString& source, const QString& destination)
{
    if (const int error = TryToCopy(source, destination)) {
        throw CWin32Exception(error, Text(StringId::FileNotCopied, source, destination));
    }
}

// A repeated deployment has to work over files that came read-only from a read-only layout folder.
void ClearReadOnly(const QString& path)
{
    struct stat status;
    const QByteArray name = QFile::encodeName(path);
    if (::stat(name.constData(), &status) != 0 || (status.st_mode & S_IWUSR) != 0) {
        return;
    }
    if (::chmod(name.constData(), status.st_mode | S_IWUSR) != 0) {
        throw CWin32Exception(errno, Text(StringId::ReadOnlyNotCleared, path));
    }
}

// copyRoot: where the whole copy goes; if that lies inside the source it must not be copied into itself.
void CopyEntries(const QString& source, const QString& destination, const QString& copyRoot)
{
    for (const DirectoryEntry& entry : ListDirectory(source)) {
        const QString from = JoinPath(source, entry.name);
        const QString to = JoinPath(destination, entry.name);
        if (entry.isHidden || QFileInfo(from).canonicalFilePath() == copyRoot) {
            continue;
        }
        if (entry.isDirectory) {
            MakeDirectoryPath(to);
            CopyEntries(from, to, copyRoot);
        } else {
            ClearReadOnly(to);
            CopyFileOver(from, to);
        }
    }
}

// The process that a temporary file's name tells of; 0 for other names.
pid_t ProcessOfTemporary(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("^\\.vistorama-(\\d+)-\\d+\\.tmp$"));
    return form.match(name).captured(1).toInt();
}

bool IsRunning(pid_t process)
{
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

} // namespace

QString ExtractLastName(const QString& path)
{
    return path.mid(LastSeparator(path) + 1);
}

QString ExtractFolder(const QString& path)
{
    return path.left(LastSeparator(path) + 1);
}

DottedName CutAtFirstDot(const QString& name)
{
    const qsizetype dot = name.indexOf(QLatin1Char('.'));
    return dot < 0 ? DottedName{name, QString()} : DottedName{name.left(dot), name.mid(dot)};
}

QString WithTrailingSeparator(const QString& folder)
{
    return !folder.isEmpty() && IsSeparator(folder.back()) ? folder : folder + QDir::separator();
}

QString JoinPath(const QString& folder, const QString& name)
{
    return WithTrailingSeparator(folder) + name;
}

QString AddressOfFile(const QString& path)
{
    static const QString special = QStringLiteral("%#?&\"'<>\\");
    QString address;
    for (const QChar unit : path) {
        if (unit < QLatin1Char(' ') || special.contains(unit)) {
            address += QStringLiteral("%%1").arg(unit.unicode(), 2, 16, QLatin1Char('0')).toUpper();
        } else {
            address += unit;
        }
    }
    return address;
}

bool FileExists(const QString& path)
{
    return QFileInfo::exists(path);
}

bool FolderExists(const QString& path)
{
    return QFileInfo(path).isDir();
}

std::vector<DirectoryEntry> ListDirectory(const QString& folder)
{
    const QFileInfoList found =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    std::vector<DirectoryEntry> entries;
    for (const QFileInfo& info : found) {
        if (LeadsBackUp(info)) {
            continue;
        }
        entries.push_back({.name = info.fileName(),
                           .isDirectory = info.isDir(),
                           .isHidden = info.fileName().startsWith(QLatin1Char('.')),
                           .isReadOnly = !info.permission(QFileDevice::WriteOwner)});
    }
    std::sort(entries.begin(), entries.end(), ComesBefore);
    return entries;
}

void MakeDirectoryPath(const QString& path, DirectoryAccess access)
{
    if (FolderExists(path)) {
        return;
    }
    const QString parent = ParentOf(path);
    if (!parent.isEmpty() && parent != path) {
        MakeDirectoryPath(parent, access);
    }
    const mode_t mode = access == DirectoryAccess::OwnerOnly ? 0700 : 0777;
    if (::mkdir(QFile::encodeName(path).constData(), mode) != 0) {
        const int error = errno;
        // Another worker may have made it in the meantime.
        if (!FolderExists(path)) {
            throw CWin32Exception(error, Text(StringId::DirectoryNotCreated, path));
        }
    }
}

void CopyDirectoryTree(const QString& source, const QString& destination)
{
    MakeDirectoryPath(destination);
    CopyEntries(source, destination, QFileInfo(destination).canonicalFilePath());
}

int ReplaceFile(const QString& path, const QByteArray& bytes, Durability durability)
{
    return ReplaceByTemporary(
        {QFile::encodeName(path), TemporaryBeside(path), durability == Durability::Synced},
        [&bytes](CDescriptor& file) {
            return file.WriteAll(bytes.constData(), static_cast<size_t>(bytes.size()));
        });
}

bool IsFileOf(const QString& path, const QByteArray& bytes)
{
    const QByteArray name = QFile::encodeName(path);
    if (OrdinarySize(name) != bytes.size()) {
        return false;
    }
    const CDescriptor file(::open(name.constData(), O_RDONLY | O_CLOEXEC));
    QByteArray found(bytes.size(), Qt::Uninitialized);
    return ReadUpTo(file, found.data(), static_cast<size_t>(found.size())) ==
               static_cast<size_t>(found.size()) &&
           found == bytes;
}

void RemoveAbandonedTemporaries(const QString& folder)
{
    const QDateTime anHourAgo = QDateTime::currentDateTime().addSecs(-3600);
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        const pid_t process = ProcessOfTemporary(entry.name);
        if (process == 0 || IsRunning(process)) {
            continue;
        }
        // On a shared disk the process may be another computer's.
        const QFileInfo file(JoinPath(folder, entry.name));
        if (file.isFile() && !file.isSymLink() && file.ownerId() == ::geteuid() &&
            file.lastModified() < anHourAgo) {
            QFile::remove(file.filePath());
        }
    }
}

void WriteFileAtomically(const QString& path, const QByteArray& bytes)
{
    const int error = ReplaceFile(path, bytes, Durability::Synced);
    if (error != 0) {
        throw CWin32Exception(error, Text(StringId::FileNotWritten, path));
    }
}

QByteArray ReadWholeFile(const QString& path)
{
    const std::optional<QByteArray> bytes = ReadBytes(QFile::encodeName(path));
    if (!bytes) {
        throw CWin32Exception(errno, Text(StringId::FileNotRead, path));
    }
    return *bytes;
}
