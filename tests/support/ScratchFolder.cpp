#include "support/ScratchFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

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
    QStringList files;
    QDirIterator entries(directory.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files += QDir(directory.path()).relativeFilePath(entries.next());
    }
    files.sort();
    return files;
}
