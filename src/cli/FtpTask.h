#pragma once

#include <functional>

#include <QEventLoop>

#include "cli/Interrupts.h"
#include "common/MessageTarget.h"
#include "ftpengine/FTPEngine.h"

// Runs one task of the FTP engine to its end, on the event loop of the program's first thread. The first
// interrupt cancels the task, whose result says so; the second ends the program at once. Finished: the type
// of the task's last message.
template <class Finished>
Finished RunFtpTask(const std::function<void(CFTPEngine& engine, const CFTPEngine::Target& target)>& start)
{
    CFTPEngine engine;
    QEventLoop loop;
    Finished last;
    const CInterrupts interrupts([&engine](uint64_t count) {
        if (count > 1) {
            std::_Exit(130);
        }
        engine.Cancel();
    });
    const auto target = CEventLoopTarget<FTPMessage>::Create([&](const FTPMessage& message) {
        if (const auto* const finished = std::get_if<Finished>(&message)) {
            last = *finished;
            loop.quit();
        }
    });
    start(engine, target);
    loop.exec();
    return last;
}
