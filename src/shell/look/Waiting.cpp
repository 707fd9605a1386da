#include "shell/look/Waiting.h"

#include <atomic>
#include <exception>
#include <thread>

#include <QProgressDialog>
#include <QTimer>

#include "common/StopSignal.h"
#include "resources/StringTable.h"

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 50ms;

} // namespace

void WorkWhileWaiting(const QString& text, const std::function<void(const CStopSignal& stop)>& work,
                      QWidget* parent)
{
    QProgressDialog waiting(text, Text(StringId::StopSearch), 0, 0, parent);
    waiting.setObjectName(QStringLiteral("Waiting"));
    waiting.setWindowTitle(Text(StringId::ProgramName));
    waiting.setWindowModality(Qt::WindowModal);
    CStopSignal stop;
    std::atomic<bool> isDone = false;
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            work(stop);
        } catch (...) {
            failure = std::current_exception();
        }
        isDone = true;
    });
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &waiting, [&] {
        if (isDone) {
            waiting.accept();
        }
    });
    look.start(lookInterval);
    waiting.exec();
    stop.Set();
    worker.join();
    if (failure) {
        std::rethrow_exception(failure);
    }
}
