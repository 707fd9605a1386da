#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// All files below the folder, hidden ones too, as sorted relative paths; with patterns ("*.html") those that
// match one.
QStringList FilesBelow(const QString& folder, const QStringList& patterns = {});

// A folder of one test, removed at its end.
class CScratchFolder {
public:
    CScratchFolder();

    // The full path of a name in the folder; name may hold "/". The folder itself with its separator for "".
    QString Path(const QString& name = QString()) const;

    // Writes a file, its folders included, and returns its full path.
    QString Write(const QString& name, const QByteArray& bytes) const;
    QByteArray Read(const QString& name) const;

    // FilesBelow.
    QStringList ListFiles() const;

private:
    QTemporaryDir directory;
};

// For its lifetime the calling thread may do with files what any user may, and no more; without effect for a
// user who is no administrator. Scratch folders that are to be looked into are opened to all first.
class COrdinaryRights {
public:
    explicit COrdinaryRights(const CScratchFolder& folder);
    ~COrdinaryRights();
    COrdinaryRights(const COrdinaryRights&) = delete;
    COrdinaryRights& operator=(const COrdinaryRights&) = delete;

private:
    int formerUser;
};
