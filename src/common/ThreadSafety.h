#pragma once

#include <condition_variable>
#include <mutex>

// Locks whose use clang checks (-Wthread-safety): a field says which mutex guards it, a function which one
// its caller has to hold, and the compiler refuses what keeps to neither. Other compilers see plain locks.

#ifdef __clang__
#define VISTORAMA_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define VISTORAMA_THREAD_ATTRIBUTE(attribute)
#endif

// After the name of a field: is read and written with that mutex held only.
#define VISTORAMA_GUARDED_BY(mutex) VISTORAMA_THREAD_ATTRIBUTE(guarded_by(mutex))
// After the parameters of a function: its caller holds the mutex.
#define VISTORAMA_REQUIRES(mutex) VISTORAMA_THREAD_ATTRIBUTE(requires_capability(mutex))
// For the locks themselves.
#define VISTORAMA_CAPABILITY(name) VISTORAMA_THREAD_ATTRIBUTE(capability(name))
#define VISTORAMA_SCOPED_CAPABILITY VISTORAMA_THREAD_ATTRIBUTE(scoped_lockable)
#define VISTORAMA_ACQUIRE(...) VISTORAMA_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define VISTORAMA_RELEASE(...) VISTORAMA_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))

// A mutex, not recursive. Taken by a CMutexLock.
class VISTORAMA_CAPABILITY("mutex") CMutex final {
public:
    CMutex() = default;
    CMutex(const CMutex&) = delete;
    CMutex& operator=(const CMutex&) = delete;

    void Lock() VISTORAMA_ACQUIRE() { mutex.lock(); }
    void Unlock() VISTORAMA_RELEASE() { mutex.unlock(); }

private:
    friend class CCondition;

    std::mutex mutex;
};

// Holds a mutex for as long as it lives, but for the time between Unlock and Lock.
class VISTORAMA_SCOPED_CAPABILITY CMutexLock final {
public:
    explicit CMutexLock(CMutex& mutex) VISTORAMA_ACQUIRE(mutex) : mutex(mutex) { mutex.Lock(); }
    ~CMutexLock() VISTORAMA_RELEASE()
    {
        if (isHeld) {
            mutex.Unlock();
        }
    }
    CMutexLock(const CMutexLock&) = delete;
    CMutexLock& operator=(const CMutexLock&) = delete;

    void Unlock() VISTORAMA_RELEASE()
    {
        isHeld = false;
        mutex.Unlock();
    }
    void Lock() VISTORAMA_ACQUIRE()
    {
        mutex.Lock();
        isHeld = true;
    }

private:
    CMutex& mutex;
    bool isHeld = true;
};

// What the threads that share a mutex wait on for a change of what it guards: "while (!ready) Wait(mutex)".
class CCondition final {
public:
    // Lets go of the mutex while it waits. Returns with each notice, and sometimes without one.
    void Wait(CMutex& held) VISTORAMA_REQUIRES(held)
    {
        std::unique_lock lock(held.mutex, std::adopt_lock);
        changed.wait(lock);
        lock.release();
    }

    void NotifyOne() { changed.notify_one(); }
    void NotifyAll() { changed.notify_all(); }

private:
    std::condition_variable changed;
};
