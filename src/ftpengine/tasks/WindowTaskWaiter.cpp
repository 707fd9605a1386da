#include "ftpengine/tasks/WindowTaskWaiter.h"

#include <algorithm>
#include <climits>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include "ftpengine/messages/EngineStatus.h"

void CWindowTaskWaiter::Post(FTPMessage message)
{
    if (auto* const created = std::get_if<FTP_CREATE_FINISHED>(&message)) {
        Complete(std::move(created->result));
    } else if (auto* const renamed = std::get_if<FTP_RENAME_FINISHED>(&message)) {
        Complete(std::move(renamed->result));
    }
}

void CWindowTaskWaiter::Complete(CTaskResult taken)
{
    const CMutexLock lock(mutex);
    result = std::move(taken);
    completed.Set();
}

CTaskResult CWindowTaskWaiter::Wait(std::chrono::milliseconds timeout)
{
    const bool hasLoop = QAbstractEventDispatcher::instance() != nullptr;
    if (!(hasLoop ? WaitDispatching(timeout) : completed.Wait(timeout))) {
        CTaskResult late;
        late.status = EngineStatus::TimedOut;
        return late;
    }
    const CMutexLock lock(mutex);
    return result;
}

bool CWindowTaskWaiter::WaitDispatching(std::chrono::milliseconds timeout) const
{
    QSocketNotifier wake(completed.GetDescriptor(), QSocketNotifier::Read);
    QObject::connect(&wake, &QSocketNotifier::activated, &wake, [&wake] { wake.setEnabled(false); });
    QTimer quiet;
    quiet.setSingleShot(true);
    bool tooLong = false;
    QObject::connect(&quiet, &QTimer::timeout, &quiet, [&tooLong] { tooLong = true; });
    for (;;) {
        QCoreApplication::processEvents();
        // A handler's own loop may have taken the one wake-up, so this is asked again before each wait.
        if (completed.IsSet() || tooLong) {
            return completed.IsSet();
        }
        quiet.start(static_cast<int>(std::clamp<int64_t>(timeout.count(), 0, INT_MAX)));
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::WaitForMoreEvents);
        quiet.stop(); // the time that handlers take is no quiet
    }
}
