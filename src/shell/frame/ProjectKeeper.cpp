#include "shell/frame/ProjectKeeper.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/project/GalleryProject.h"

CProjectKeeper::CProjectKeeper(CGalleryProject& project, Reports reports, std::chrono::milliseconds delay)
    : project(project), reports(std::move(reports))
{
    timer.setSingleShot(true);
    timer.setInterval(delay);
    connect(&timer, &QTimer::timeout, this, [this] { SaveByItself(); });
}

void CProjectKeeper::Open(const QString& newPath, CProjectLock newLock)
{
    project.Open(newPath);
    Adopt(newPath, std::move(newLock));
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
    if (lock.GetState() == CProjectLock::State::Held) {
        RemoveAbandonedTemporaries(ExtractFolder(path));
    }
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
