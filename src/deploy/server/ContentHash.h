#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>

struct XXH3_state_s;

// The hash by which contents of files are known on a server and beside it: XXH3 with 128 bits, in the
// canonical order of its bytes (big-endian). It finds changes, nothing else rests on it: whoever may replace
// a site's files may replace its manifest, too. Much faster than a network or a disk.
class CContentHash final {
public:
    static constexpr qsizetype size = 16; // bytes

    CContentHash();
    CContentHash(const CContentHash&) = delete;
    CContentHash& operator=(const CContentHash&) = delete;

    void Add(const char* bytes, std::size_t count);
    // Of all that was added.
    QByteArray Get() const;

    static QByteArray Of(const QByteArray& bytes);

private:
    struct FreeState {
        void operator()(XXH3_state_s* state) const;
    };
    const std::unique_ptr<XXH3_state_s, FreeState> state;
};
