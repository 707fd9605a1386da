#include "imaging/codecs/VipsLibrary.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <mutex>

#include <vips/vips8>

namespace {

void DropMessage(const char*, GLogLevelFlags, const char*, void*) {}

// Each picture needs a few MB of memory that the picture before has just given back. By itself the C library
// returns it to the system in between, and the next picture pays for every page of it.
void KeepFreedMemory()
{
#ifdef __GLIBC__
    constexpr int kept = 32 * 1024 * 1024; // bytes, for each thread at most
    ::mallopt(M_TRIM_THRESHOLD, kept);
    ::mallopt(M_MMAP_THRESHOLD, kept / 2);
#endif
}

void Start()
{
    KeepFreedMemory();
    const auto levels =
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION);
    for (const char* domain : {"VIPS", "GLib", "GLib-GObject"}) {
        g_log_set_handler(domain, levels, DropMessage, nullptr);
    }
    vips_init("vistorama");
    vips_concurrency_set(1);
    vips_cache_set_max(0);
}

} // namespace

void StartVips()
{
    static std::once_flag once;
    std::call_once(once, Start);
}
