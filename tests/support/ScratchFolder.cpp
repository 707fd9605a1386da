#include "support/ScratchFolder.h"

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

QStringList FilesBelow(const QString& folder, const QStringList& patterns)
{
    QStringList files;
    QDirIterator entries(folder, patterns, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files += QDir(folder).relativeFilePath(entries.next());
    }
    files.sort();
    return files;
}

CScratchFolder::CScratchFolder()
{
    EXPECT_TRUE(directory.isValid());
}

QString CScratchFolder::Path(const QString& name) const
{
    return directory.path() + QLatin1Char('/') + name;
}

QString CScratchFolder::Write(const QString& name, const QByteArray& bytes) const
{
    const QString path = Path(name);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path;
}

QByteArray CScratchFolder::Read(const QString& name) const
{
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    return file.readAll();
}

QStringList CScratchFolder::ListFiles() const
{
    return FilesBelow(directory.path());
}

namespace {

// To be looked into, by whoever has no other rights there. A folder that a test has closed even to its owner
// stays so.
void OpenToAll(const QString& folder)
{
    const QByteArray name = QFile::encodeName(folder);
    struct stat status;
    EXPECT_EQ(::stat(name.constData(), &status), 0);
    if ((status.st_mode & S_IRWXU) != 0) {
        EXPECT_EQ(::chmod(name.constData(), (status.st_mode & 07777) | 0555), 0);
    }
}

} // namespace

COrdinaryRights::COrdinaryRights(const CScratchFolder& folder)
{
    OpenToAll(folder.Path());
    QDirIterator walk(folder.Path(), QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        OpenToAll(walk.next());
    }
    constexpr uid_t nobody = 65534;
    // With it go the rights over files that others own.
    formerUser = ::setfsuid(::geteuid() == 0 ? nobody : ::geteuid());
}

COrdinaryRights::~COrdinaryRights()
{
    ::setfsuid(static_cast<uid_t>(formerUser));
}
