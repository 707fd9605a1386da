#include "imaging/VipsLibrary.h"

#include <mutex>

#include <vips/vips8>

namespace {

void DropMessage(const char*, GLogLevelFlags, const char*, void*) {}

void Start()
{
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
