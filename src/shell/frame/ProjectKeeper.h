#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include "document/project/ProjectBackups.h"
#include "shell/frame/ProjectLock.h"

class CExceptionBase;
class CGalleryProject;

// Keeps the file of the project that is open: reads and writes it, holds its lock, and saves it by itself a
// short while after a change, so that a program that ends without notice loses no more than that. The state
// that the file had when it was opened goes to the earlier versions once another one is written. Owned by the
// frame, but knows no window. Screen's thread, with an event loop.
class CProjectKeeper final : public QObject {
public:
    // Longest time that a change is only in memory.
    static constexpr std::chrono::milliseconds SaveDelay{2000};

    // What saving by itself tells of. Of failures that follow each other only the first is told.
    struct Reports {
        std::function<void(const CExceptionBase&)> failed;
        std::function<void()> succeededAgain;
    };
    struct Options {
        QString backupsFolder = {}; // empty: no earlier versions are kept
        std::chrono::milliseconds delay = SaveDelay;
    };
    // project: borrowed.
    CProjectKeeper(CGalleryProject& project, Reports reports, const Options& options);

    // Reads the project, or makes a new one if there is no such file. From then on its file is kept here, and
    // the former one's no more; one whose lock says that it is open elsewhere is never written. Throws what
    // CGalleryProject::Open throws, with the former file kept on.
    void Open(const QString& path, CProjectLock lock);
    // Keeps a file for the project as it is in memory.
    void Adopt(const QString& path, CProjectLock lock);

    // Something in the project may have changed.
    void MarkChanged();
    // Nothing happens to a project that is read-only. Throws what CGalleryProject::Save throws.
    void Save();
    // Writes the project as another file and keeps that one. Throws likewise, with the former file kept on.
    void SaveAs(const QString& path, CProjectLock lock);

    // The states of the file before it was changed, of a project that need not be open.
    const CProjectBackups& GetBackups() const { return backups; }
    // Puts an earlier state into the place of the file and reads it; the present state becomes an earlier
    // one. Throws what Save and CGalleryProject::Open throw, and CWin32Exception if a file can't be read or
    // written: the file is the present one then, or whole in its earlier state.
    void ReturnTo(const QString& state);

    // Nothing is saved from now on: what is in memory may be half a change.
    void GiveUp() { ++pauses; }

    // While it lives nothing is saved by itself: another thread reads the project.
    class CPause {
    public:
        explicit CPause(CProjectKeeper& keeper) : keeper(keeper) { ++keeper.pauses; }
        ~CPause();
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;

    private:
        CProjectKeeper& keeper;
    };

    // Empty before the first project.
    const QString& GetPath() const { return path; }
    // The file is open elsewhere, or is one that the project can't be saved to.
    bool IsReadOnly() const { return IsOpenElsewhere() || !GetReadOnlyReason().isNull(); }
    bool IsOpenElsewhere() const { return lock.GetState() == CProjectLock::State::OpenElsewhere; }
    // As CGalleryProject tells it.
    const QString& GetReadOnlyReason() const;
    bool HasUnsavedChanges() const { return changed; }

private:
    void SaveByItself();
    void NoteOpened();
    void KeepOpened();

    // A file as it was opened.
    struct Opened {
        QByteArray bytes;
        QDateTime changed;
    };

    CGalleryProject& project;
    const Reports reports;
    const CProjectBackups backups;
    std::optional<Opened> opened; // until it is among the earlier versions
    QString path;
    CProjectLock lock;
    QTimer timer;
    int pauses = 0;
    bool changed = false;
    bool failing = false;
};
