#pragma once

#include <cstdint>
#include <functional>

#include <QSocketNotifier>

#include "common/Descriptor.h"

// While it lives, an interrupt (SIGINT, SIGTERM) does not end the program: the event loop of this thread
// calls onInterrupt, with 1 for the first, 2 for the second and so on. One at a time in a program.
class CInterrupts {
public:
    using Handler = std::function<void(uint64_t count)>;

    explicit CInterrupts(Handler onInterrupt);
    ~CInterrupts();
    CInterrupts(const CInterrupts&) = delete;
    CInterrupts& operator=(const CInterrupts&) = delete;

private:
    void OnReadable();

    const Handler onInterrupt;
    const CDescriptor event;
    QSocketNotifier notifier;
    uint64_t count = 0;
};
