#include "imaging/ImageDecoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include <QFile>
#include <vips/vips8>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "imaging/ColourConversion.h"
#include "imaging/ImageNode.h"
#include "imaging/VipsLibrary.h"
#include "resources/StringTable.h"

using vips::VError;
using vips::VImage;

namespace {

constexpr uint8_t missingGrey = 128; // what libjpeg shows for blocks that it can't decode
constexpr int stripHeight = 8;       // rows that libjpeg's wrapper makes at a time

[[noreturn]] void ThrowNoPixels(StringId reason)
{
    vips_error_clear();
    throw CNoPixelsException{Text(reason)};
}

// An open file that is closed on every road.
class CFile {
public:
    // Not blocking, so that a pipe that is named like a picture can't hold up a run.
    explicit CFile(const QString& path)
        : descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
        if (descriptor < 0) {
            throw CNoPixelsException{Widen(std::generic_category().message(errno))};
        }
    }
    ~CFile() { ::close(descriptor); }
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    int Get() const { return descriptor; }

private:
    int descriptor;
};

using Signature = std::array<uint8_t, 12>;

Signature ReadSignature(const CFile& file)
{
    struct stat status;
    if (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        ThrowNoPixels(StringId::ImageNotAFile);
    }
    if (status.st_size == 0) {
        ThrowNoPixels(StringId::ImageEmpty);
    }
    Signature signature{};
    if (::pread(file.Get(), signature.data(), signature.size(), 0) < 0) {
        throw CNoPixelsException{Widen(std::generic_category().message(errno))};
    }
    return signature;
}

enum class Kind { Jpeg, Png, Gif, Tiff, WebP, Magick };

bool BeginsWith(const Signature& signature, const char* bytes, size_t count)
{
    return std::memcmp(signature.data(), bytes, count) == 0;
}

// The loader is named here and never looked for by libvips: ImageMagick and others open far more kinds of
// file than pictures, and a gallery's folder may hold anything.
Kind KindOf(const Signature& signature)
{
    if (BeginsWith(signature, "\xff\xd8\xff", 3)) {
        return Kind::Jpeg;
    }
    if (BeginsWith(signature, "\x89PNG\r\n\x1a\n", 8)) {
        return Kind::Png;
    }
    if (BeginsWith(signature, "GIF8", 4)) {
        return Kind::Gif;
    }
    if (BeginsWith(signature, "II*\0", 4) || BeginsWith(signature, "MM\0*", 4)) {
        return Kind::Tiff;
    }
    if (BeginsWith(signature, "RIFF", 4) && std::memcmp(&signature[8], "WEBP", 4) == 0) {
        return Kind::WebP;
    }
    const bool isPcx = signature[0] == 10 && signature[1] <= 5 && signature[2] == 1;
    if (BeginsWith(signature, "BM", 2) || isPcx) {
        return Kind::Magick;
    }
    ThrowNoPixels(StringId::ImageFormatUnknown);
}

const char* LoaderOf(Kind kind)
{
    switch (kind) {
    case Kind::Jpeg:
        return "jpegload_source";
    case Kind::Png:
        return "pngload_source";
    case Kind::Gif:
        return "gifload_source";
    case Kind::Tiff:
        return "tiffload_source";
    case Kind::WebP:
        return "webpload_source";
    case Kind::Magick:
        return "magickload_buffer";
    }
    return "";
}

// A picture that is open: pixels are read through it once, from the top.
class CPictureReader {
public:
    explicit CPictureReader(const QString& path) : path(path), file(path), kind(KindOf(ReadSignature(file)))
    {}

    Kind GetKind() const { return kind; }

    // Throws VError.
    VImage Open(int shrink, VipsFailOn failOn)
    {
        VImage image;
        vips::VOption* options = VImage::option()
                                     ->set("out", &image)
                                     ->set("access", VIPS_ACCESS_SEQUENTIAL)
                                     ->set("fail_on", failOn);
        if (shrink > 1) {
            options->set("shrink", shrink);
        }
        if (kind == Kind::Magick) {
            const QByteArray bytes = ReadWholeFile(path);
            VipsBlob* blob = vips_blob_copy(bytes.constData(), static_cast<size_t>(bytes.size()));
            options->set("buffer", blob);
            vips_area_unref(VIPS_AREA(blob));
        } else {
            ::lseek(file.Get(), 0, SEEK_SET);
            options->set("source", vips::VSource::new_from_descriptor(file.Get()));
        }
        VImage::call(LoaderOf(kind), options);
        return image;
    }

private:
    const QString path;
    const CFile file;
    const Kind kind;
};

// libjpeg tells every irregularity by a warning; only these mean that pixels are lost. Others, such as
// "extraneous bytes before marker 0xd9", come up in good files of many cameras. Before a restart marker
// (0xd0 to 0xd7) such bytes are what a damaged interval has left over.
bool TellsOfDamage(const std::string& warning)
{
    for (const char* text :
         {"remature end of", "bad Huffman code", "bad arithmetic code", "instead of RST",
          "before marker 0xd0", "before marker 0xd1", "before marker 0xd2", "before marker 0xd3",
          "before marker 0xd4", "before marker 0xd5", "before marker 0xd6", "before marker 0xd7"}) {
        if (warning.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

bool HasDamage(const CVipsWarnings& warnings)
{
    return std::any_of(warnings.Get().begin(), warnings.Get().end(), TellsOfDamage);
}

struct Rows {
    std::vector<uint8_t> bytes;
    int firstDamaged = -1; // first row of the strip in which damage showed; -1: none
    bool isCutOff = false; // nothing came behind that strip
};

// Read strip by strip on this thread, so that libvips starts no threads and its warnings arrive here.
Rows ReadRows(const VImage& image, const CVipsWarnings& warnings)
{
    const size_t rowBytes = static_cast<size_t>(image.width()) * static_cast<size_t>(image.bands());
    Rows rows;
    rows.bytes.assign(rowBytes * static_cast<size_t>(image.height()), missingGrey);
    const std::unique_ptr<VipsRegion, decltype(&g_object_unref)> region(vips_region_new(image.get_image()),
                                                                        &g_object_unref);
    for (int top = 0; top < image.height() && !rows.isCutOff; top += stripHeight) {
        const VipsRect area{0, top, image.width(), std::min(stripHeight, image.height() - top)};
        rows.isCutOff = vips_region_prepare(region.get(), &area) != 0;
        for (int y = top; y < top + area.height && !rows.isCutOff; ++y) {
            std::memcpy(&rows.bytes[rowBytes * static_cast<size_t>(y)], VIPS_REGION_ADDR(region.get(), 0, y),
                        rowBytes);
        }
        if (rows.firstDamaged < 0 && (rows.isCutOff || HasDamage(warnings))) {
            rows.firstDamaged = top;
        }
    }
    vips_error_clear();
    return rows;
}

bool IsOneColour(const Rows& rows, size_t channels)
{
    return std::equal(rows.bytes.begin() + static_cast<ptrdiff_t>(channels), rows.bytes.end(),
                      rows.bytes.begin());
}

// A picture that was damaged from its first rows on and shows nothing.
bool HoldsNothing(const Rows& rows, int channels)
{
    return rows.firstDamaged == 0 && (rows.isCutOff || IsOneColour(rows, static_cast<size_t>(channels)));
}

DecodedImage Decode(CPictureReader& reader, int shrink, VipsFailOn failOn)
{
    const CVipsWarnings warnings;
    const VImage image = ToSrgb(reader.Open(shrink, failOn));
    if (!IsComputable(QSize(image.width(), image.height()))) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    }
    Rows rows = ReadRows(image, warnings);
    if (HoldsNothing(rows, image.bands())) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    }
    DecodedImage decoded;
    if (rows.firstDamaged >= 0) {
        decoded.condition = {ImageCondition::State::InPart, Text(StringId::ImageDataIncomplete)};
    }
    decoded.pixels = MakePixels(QSize(image.width(), image.height()), image.bands(), std::move(rows.bytes));
    return decoded;
}

// Loaders other than JPEG's pass over damage in silence unless they are told to stop at it. So they are told,
// and only a damaged file is read once more.
DecodedImage DecodeStrictlyFirst(CPictureReader& reader)
{
    try {
        DecodedImage decoded = Decode(reader, 1, VIPS_FAIL_ON_ERROR);
        if (decoded.condition.state == ImageCondition::State::Whole) {
            return decoded;
        }
    } catch (const VError&) {
        vips_error_clear();
    } catch (const CNoPixelsException&) {
        vips_error_clear();
    }
    DecodedImage decoded = Decode(reader, 1, VIPS_FAIL_ON_NONE);
    decoded.condition = {ImageCondition::State::InPart, Text(StringId::ImageDataIncomplete)};
    return decoded;
}

} // namespace

ImageHeader ReadImageHeader(const QString& path)
{
    StartVips();
    try {
        CPictureReader reader(path);
        const VImage image = reader.Open(1, VIPS_FAIL_ON_NONE);
        const ImageHeader header{QSize(image.width(), image.height()),
                                 vips_image_get_orientation(image.get_image()),
                                 reader.GetKind() == Kind::Jpeg};
        if (!IsComputable(header.size)) {
            throw CNoPixelsException{Text(StringId::ImageTooLarge, image.width(), image.height())};
        }
        return header;
    } catch (const VError&) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    } catch (const CGenericException& failure) {
        throw CNoPixelsException{failure.GetDescription()};
    }
}

DecodedImage DecodeImage(const QString& path, const ImageHeader& header, int shrink)
{
    try {
        CPictureReader reader(path);
        DecodedImage decoded = reader.GetKind() == Kind::Jpeg ? Decode(reader, shrink, VIPS_FAIL_ON_NONE)
                                                              : DecodeStrictlyFirst(reader);
        // The picture ends within the last pixel of a size that doesn't divide by the shrink.
        decoded.pixels.window = QRectF(QPointF(0, 0), QSizeF(header.size) / shrink);
        decoded.pixels = Upright(decoded.pixels, header.orientation);
        return decoded;
    } catch (const VError&) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    } catch (const std::bad_alloc&) {
        throw CNoPixelsException{Text(StringId::ImageTooLarge, header.size.width(), header.size.height())};
    } catch (const CGenericException& failure) {
        throw CNoPixelsException{failure.GetDescription()};
    }
}
