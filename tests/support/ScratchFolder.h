#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A folder of one test, removed at its end.
class CScratchFolder {
public:
    CScratchFolder();

    // The full path of a name in the folder; name may hold "/". The folder itself with its separator for "".
    QString Path(const QString& name = QString()) const;

    // Writes a file, its folders included, and returns its full path.
    QString Write(const QString& name, const QByteArray& bytes) const;
    QByteArray Read(const QString& name) const;

    // All files below the folder, as sorted relative paths.
    QStringList ListFiles() const;

private:
    QTemporaryDir directory;
};
