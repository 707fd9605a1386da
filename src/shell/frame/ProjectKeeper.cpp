#include "shell/frame/ProjectKeeper.h"

#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"

CProjectKeeper::CProjectKeeper(CGalleryProject& project, Reports reports, const Options& options)
    : project(project), reports(std::move(reports)), backups(options.backupsFolder)
{
    timer.setSingleShot(true);
    timer.setInterval(options.delay);
    connect(&timer, &QTimer::timeout, this, [this] { SaveByItself(); });
}

void CProjectKeeper::Open(const QString& newPath, CProjectLock newLock)
{
    project.Open(newPath);
    Adopt(newPath, std::move(newLock));
    NoteOpened();
}

void CProjectKeeper::Adopt(const QString& newPath, CProjectLock newLock)
{
    path = newPath;
    // The former lock goes last: at no time is neither held.
    std::swap(lock, newLock);
    lock.Retry(); // a new project's folder may not have been there
    timer.stop();
    changed = false;
    failing = false;
    opened.reset();
    if (lock.GetState() == CProjectLock::State::Held) {
        RemoveAbandonedTemporaries(ExtractFolder(path));
    }
}

const QString& CProjectKeeper::GetReadOnlyReason() const
{
    return project.GetReadOnlyReason();
}

// The timer is not started again by each change: somebody who works on without a break is saved, too.
void CProjectKeeper::MarkChanged()
{
    changed = true;
    if (!IsReadOnly() && !path.isEmpty() && !timer.isActive()) {
        timer.start();
    }
}

void CProjectKeeper::Save()
{
    if (IsReadOnly() || path.isEmpty()) {
        return;
    }
    project.Save(path);
    KeepOpened();
    timer.stop();
    changed = false;
    if (failing) {
        failing = false;
        reports.succeededAgain();
    }
}

void CProjectKeeper::SaveAs(const QString& newPath, CProjectLock newLock)
{
    project.Save(newPath);
    Adopt(newPath, std::move(newLock));
}

// A file that can't be read any more has nothing to keep.
void CProjectKeeper::NoteOpened()
{
    if (IsReadOnly()) {
        return;
    }
    try {
        const QDateTime time = QFileInfo(path).lastModified();
        opened = Opened{ReadWholeFile(path), time};
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
    }
}

// Once for each time that the project is opened, and only if the file is another one by now. What hinders it
// is tried again at the next save, and hinders no save.
void CProjectKeeper::KeepOpened()
{
    if (!opened || IsFileOf(path, opened->bytes)) {
        return;
    }
    try {
        backups.Keep(path, opened->bytes, opened->changed);
        opened.reset();
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
    }
}

void CProjectKeeper::ReturnTo(const QString& state)
{
    const QByteArray earlier = ReadWholeFile(state);
    Save();
    if (FileExists(path)) {
        backups.Keep(path, ReadWholeFile(path), QFileInfo(path).lastModified());
    }
    WriteFileAtomically(path, earlier);
    project.Open(path);
    changed = false;
    timer.stop();
    NoteOpened();
}

void CProjectKeeper::SaveByItself()
{
    if (pauses > 0) {
        return; // the end of the pause starts the timer
    }
    try {
        Save();
    } catch (const CExceptionBase& failure) {
        // Tried again: a disk may have room again, a folder its rights.
        timer.start();
        if (!std::exchange(failing, true)) {
            reports.failed(failure);
        }
    }
}

CProjectKeeper::CPause::~CPause()
{
    if (--keeper.pauses == 0 && keeper.changed) {
        keeper.MarkChanged();
    }
}
