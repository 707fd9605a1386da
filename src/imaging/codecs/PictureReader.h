#pragma once

#include <array>
#include <cstdint>

#include <QString>
#include <vips/vips8>

#include "common/Descriptor.h"
#include "resources/StringTable.h"

// Forgets libvips's own words for a failure. Throws CNoPixelsException.
[[noreturn]] void ThrowNoPixels(StringId reason);

// A picture file that is open: pixels are read through it once, from the top. Lives on the stack of the
// thread that decodes.
class CPictureReader {
public:
    // By the first bytes, never by the name.
    enum class Kind { Jpeg, Png, Gif, Tiff, WebP, Magick };

    // Throws CNoPixelsException.
    explicit CPictureReader(const QString& path);

    Kind GetKind() const { return kind; }
    int GetDescriptor() const { return file.Get(); }

    // Throws vips::VError, and CWin32Exception for a file that can't be read as a whole.
    vips::VImage Open(VipsFailOn failOn) const;

private:
    using Signature = std::array<uint8_t, 26>; // up to the sizes in the headers of BMP and PCX

    static Signature ReadSignature(int descriptor);
    static bool BeginsWith(const Signature& signature, const char* bytes, size_t count);
    static Kind KindOf(const Signature& signature);

    vips::VImage Load(vips::VOption* options) const;
    vips::VImage LoadBytes(const QByteArray& bytes, VipsFailOn failOn) const;
    vips::VImage OpenByMagick(VipsFailOn failOn) const;
    qsizetype ClaimedBytes() const;
    bool IsWorthLengthening(const QByteArray& bytes) const;

    const QString path;
    const CDescriptor file;
    const Signature signature;
    const Kind kind;
};
