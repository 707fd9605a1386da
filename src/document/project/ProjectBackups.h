#pragma once

#include <vector>

#include <QByteArray>
#include <QDateTime>
#include <QString>

// Earlier states of project files, below one folder of the user's data: the last five of each project, one
// for each time that it was opened and changed. A project is known by the id in its file, and by its path as
// well, so that one that was moved finds its states, and one that is damaged too. Owned by whoever keeps the
// project's file. One thread at a time.
class CProjectBackups {
public:
    static constexpr size_t KeptStates = 5;

    // folder: made when the first state is kept; empty: none is.
    explicit CProjectBackups(const QString& folder);

    // Keeps the bytes that the project's file had before it was changed, with the time of its last change.
    // Bytes that are those of the latest state already are not kept again; beyond five states the oldest
    // goes. Throws CWin32Exception.
    void Keep(const QString& projectPath, const QByteArray& bytes, const QDateTime& changed) const;

    struct State {
        QString path; // of a whole project file
        QDateTime changed;
        int32_t galleries = 0;
        int32_t pictures = 0; // in all galleries
    };
    // The latest first. States that can't be read as XML are left out.
    std::vector<State> List(const QString& projectPath) const;

private:
    QString FindFolder(const QString& projectPath) const;
    QString FolderByPath(const QString& projectPath) const;

    const QString folder;
};
