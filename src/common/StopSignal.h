#pragma once

#include <atomic>

// Tells a run to stop at its next test. Set by any thread and by signal handlers.
class CStopSignal {
public:
    CStopSignal() = default;
    // A signal for a part of a run, not a copy: it counts as set, too, when that of the whole run is.
    // Borrowed.
    explicit CStopSignal(const CStopSignal* whole) : whole(whole) {}
    CStopSignal(const CStopSignal&) = delete;
    CStopSignal& operator=(const CStopSignal&) = delete;

    void Set() { set.store(true); }
    void Reset() { set.store(false); }
    bool IsSet() const { return set.load() || (whole != nullptr && whole->IsSet()); }

private:
    std::atomic<bool> set = false;
    const CStopSignal* const whole = nullptr;
    static_assert(std::atomic<bool>::is_always_lock_free);
};
