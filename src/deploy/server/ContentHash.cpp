#include "deploy/server/ContentHash.h"

#include <new>
#include <xxhash.h>

CContentHash::CContentHash() : state(XXH3_createState())
{
    if (!state) {
        throw std::bad_alloc();
    }
    XXH3_128bits_reset(state.get());
}

void CContentHash::FreeState::operator()(XXH3_state_s* state) const
{
    XXH3_freeState(state);
}

void CContentHash::Add(const char* bytes, std::size_t count)
{
    XXH3_128bits_update(state.get(), bytes, count);
}

QByteArray CContentHash::Get() const
{
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(state.get()));
    return QByteArray(reinterpret_cast<const char*>(canonical.digest), size);
}

QByteArray CContentHash::Of(const QByteArray& bytes)
{
    CContentHash hash;
    hash.Add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return hash.Get();
}
