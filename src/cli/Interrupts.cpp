#include "cli/Interrupts.h"

#include <atomic>
#include <csignal>
#include <sys/eventfd.h>

namespace {

std::atomic<int> signalled = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void OnSignal(int)
{
    const int formerError = errno;
    const uint64_t one = 1;
    // It can't fail but for a count that nobody can reach.
    [[maybe_unused]] const ssize_t written = ::write(signalled.load(), &one, sizeof one);
    errno = formerError;
}

} // namespace

CInterrupts::CInterrupts(Handler onInterrupt)
    : onInterrupt(std::move(onInterrupt)),
      event(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      notifier(event.Get(), QSocketNotifier::Read)
{
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] { OnReadable(); });
    signalled = event.Get();
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

CInterrupts::~CInterrupts()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    signalled = -1;
}

void CInterrupts::OnReadable()
{
    uint64_t arrived = 0;
    if (::read(event.Get(), &arrived, sizeof arrived) != sizeof arrived) {
        return;
    }
    for (; arrived > 0; --arrived) {
        onInterrupt(++count);
    }
}
