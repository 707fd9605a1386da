#include "support/NoThreads.h"

#include <pthread.h>

namespace {

constexpr std::size_t impossibleSize = std::size_t{1} << 62;

std::size_t GetStackSize()
{
    pthread_attr_t attributes;
    std::size_t size = 0;
    pthread_getattr_default_np(&attributes);
    pthread_attr_getstacksize(&attributes, &size);
    pthread_attr_destroy(&attributes);
    return size;
}

void SetStackSize(std::size_t size)
{
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, size);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
}

} // namespace

CNoThreads::CNoThreads() : usualSize(GetStackSize())
{
    SetStackSize(impossibleSize);
}

CNoThreads::~CNoThreads()
{
    SetStackSize(usualSize);
}
