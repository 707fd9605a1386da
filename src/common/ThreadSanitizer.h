#pragma once

// Tells the thread sanitizer what it can't see: that something goes from one thread to another through a
// library that was not built for it, such as Qt's event loop. Nothing in a usual build.

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

// Stands last in what is handed over, such as the captures of a function that is called by another thread's
// event loop: when it has been copied or moved there, all before it is in its place; when it goes, whichever
// thread lets go of it last, the other one is through with them.
class CHandOver {
public:
    CHandOver() = default;
    CHandOver(const CHandOver&) noexcept { Release(); }
    CHandOver(CHandOver&&) noexcept { Release(); }
    CHandOver& operator=(const CHandOver&) = delete;
    ~CHandOver() { Acquire(); }

    // On the thread that takes over, as long as it looks at anything of it.
    class CTaken {
    public:
        CTaken() { Acquire(); }
        CTaken(const CTaken&) = delete;
        CTaken& operator=(const CTaken&) = delete;
        ~CTaken() { Release(); }
    };

private:
    static void Release()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_release(&place);
#endif
    }

    static void Acquire()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_acquire(&place);
#endif
    }

    static inline char place = 0; // nothing but an address
};
