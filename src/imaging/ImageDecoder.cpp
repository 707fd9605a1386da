#include "imaging/ImageDecoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include <QFile>
#include <vips/vips8>

#include "common/Descriptor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "imaging/ColourConversion.h"
#include "imaging/DecodingStop.h"
#include "imaging/ImageNode.h"
#include "imaging/JpegDecoder.h"
#include "imaging/Resampler.h"
#include "imaging/VipsLibrary.h"
#include "resources/StringTable.h"

using vips::VError;
using vips::VImage;

namespace {

constexpr int stripHeight = 8; // rows; what the strip with the first damage holds is lost

[[noreturn]] void ThrowNoPixels(StringId reason)
{
    vips_error_clear();
    throw CNoPixelsException{Text(reason)};
}

// Not blocking, so that a pipe that is named like a picture can't hold up a run. Throws CNoPixelsException.
int OpenPicture(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        throw CNoPixelsException{Widen(std::generic_category().message(errno))};
    }
    return descriptor;
}

using Signature = std::array<uint8_t, 26>; // enough for the sizes in BMP and PCX

Signature ReadSignature(const CDescriptor& file)
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

// What BMP or PCX say of their size, as bytes of pixels: 0 for an absurd one.
qsizetype ClaimedBytes(const Signature& signature)
{
    const auto number = [&signature](size_t place, int bytes) {
        int64_t value = 0;
        for (int i = bytes - 1; i >= 0; --i) {
            value = value * 256 + signature[place + static_cast<size_t>(i)];
        }
        return value;
    };
    const bool isBmp = BeginsWith(signature, "BM", 2);
    const int64_t width = isBmp ? number(18, 4) : number(8, 2) - number(4, 2) + 1;
    const int64_t height = isBmp ? number(22, 4) : number(10, 2) - number(6, 2) + 1;
    const bool isSane = width > 0 && height > 0 && width <= maximumPixels / height;
    return isSane ? static_cast<qsizetype>(width * height * 4) : 0;
}

// A picture that is open: pixels are read through it once, from the top.
class CPictureReader {
public:
    explicit CPictureReader(const QString& path)
        : path(path), file(OpenPicture(path)), signature(ReadSignature(file)), kind(KindOf(signature))
    {}

    Kind GetKind() const { return kind; }
    int GetDescriptor() const { return file.Get(); }

    // Throws VError.
    VImage Open(VipsFailOn failOn)
    {
        if (kind == Kind::Magick) {
            return OpenByMagick(failOn);
        }
        ::lseek(file.Get(), 0, SEEK_SET);
        return Load(Options(failOn)->set("source", vips::VSource::new_from_descriptor(file.Get())));
    }

private:
    static vips::VOption* Options(VipsFailOn failOn)
    {
        return VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", failOn);
    }

    VImage Load(vips::VOption* options)
    {
        VImage image;
        VImage::call(LoaderOf(kind), options->set("out", &image));
        return image;
    }

    VImage LoadBytes(const QByteArray& bytes, VipsFailOn failOn)
    {
        VipsBlob* blob = vips_blob_copy(bytes.constData(), static_cast<size_t>(bytes.size()));
        vips::VOption* options = Options(failOn)->set("buffer", blob);
        vips_area_unref(VIPS_AREA(blob));
        return Load(options);
    }

    // ImageMagick gives nothing of a file that ends too early, so one that does is lengthened by zeros.
    VImage OpenByMagick(VipsFailOn failOn)
    {
        QByteArray bytes = ReadWholeFile(path);
        try {
            return LoadBytes(bytes, failOn);
        } catch (const VError&) {
            if (failOn != VIPS_FAIL_ON_NONE || ClaimedBytes(signature) == 0) {
                throw;
            }
        }
        vips_error_clear();
        bytes.append(ClaimedBytes(signature), '\0');
        return LoadBytes(bytes, failOn);
    }

    const QString path;
    const CDescriptor file;
    const Signature signature;
    const Kind kind;
};

struct Rows {
    std::vector<uint8_t> bytes;
    bool isCutOff = false; // by damage that ended the decoding
};

// Read strip by strip on this thread, so that libvips starts no threads of its own.
Rows ReadRows(const VImage& image)
{
    if (!IsComputable(QSize(image.width(), image.height()))) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    }
    const size_t rowBytes = static_cast<size_t>(image.width()) * static_cast<size_t>(image.bands());
    Rows rows;
    rows.bytes.assign(rowBytes * static_cast<size_t>(image.height()), 0);
    const std::unique_ptr<VipsRegion, decltype(&g_object_unref)> region(vips_region_new(image.get_image()),
                                                                        &g_object_unref);
    for (int top = 0; top < image.height() && !rows.isCutOff; top += stripHeight) {
        CDecodingStop::ThrowIfWanted();
        const VipsRect area{0, top, image.width(), std::min(stripHeight, image.height() - top)};
        rows.isCutOff = vips_region_prepare(region.get(), &area) != 0;
        for (int y = top; y < top + area.height && !rows.isCutOff; ++y) {
            std::memcpy(&rows.bytes[rowBytes * static_cast<size_t>(y)], VIPS_REGION_ADDR(region.get(), 0, y),
                        rowBytes);
        }
    }
    vips_error_clear();
    return rows;
}

bool IsOneColour(const Rows& rows, int channels)
{
    return std::equal(rows.bytes.begin() + channels, rows.bytes.end(), rows.bytes.begin());
}

CPixels ToPixels(const VImage& image, Rows rows)
{
    return MakePixels(QSize(image.width(), image.height()), image.bands(), std::move(rows.bytes));
}

// libjpeg's rows as a picture of libvips, which borrows them and knows what their values mean.
VImage Borrow(JpegPicture& jpeg)
{
    const VipsInterpretation meaning = jpeg.channels == 1   ? VIPS_INTERPRETATION_B_W
                                       : jpeg.channels == 4 ? VIPS_INTERPRETATION_CMYK
                                                            : VIPS_INTERPRETATION_sRGB;
    VImage image = VImage::new_from_memory(jpeg.bytes.data(), jpeg.bytes.size(), jpeg.size.width(),
                                           jpeg.size.height(), jpeg.channels, VIPS_FORMAT_UCHAR)
                       .copy(VImage::option()->set("interpretation", meaning));
    if (!jpeg.profile.empty()) {
        image.set(VIPS_META_ICC_NAME, nullptr, jpeg.profile.data(), jpeg.profile.size());
    }
    return image;
}

ImageCondition ConditionOf(const JpegPicture& jpeg)
{
    return jpeg.isWhole ? ImageCondition{}
                        : ImageCondition{ImageCondition::State::InPart, Text(StringId::ImageDataIncomplete)};
}

DecodedImage DecodeJpegFile(const CPictureReader& reader, int shrink)
{
    JpegPicture jpeg = DecodeJpeg(CFileBytes(reader.GetDescriptor()), shrink);
    DecodedImage decoded;
    decoded.condition = ConditionOf(jpeg);
    if (jpeg.channels == 3 && jpeg.profile.empty()) {
        decoded.pixels = MakePixels(jpeg.size, jpeg.channels, std::move(jpeg.bytes));
        return decoded;
    }
    const VImage image = ToSrgb(Borrow(jpeg));
    Rows rows = ReadRows(image);
    if (rows.isCutOff) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    }
    decoded.pixels = ToPixels(image, std::move(rows));
    return decoded;
}

// The loaders pass over damage in silence unless they are told to stop at it. So they are told, and only a
// damaged file is read once more.
std::optional<CPixels> DecodeUndamaged(CPictureReader& reader)
{
    try {
        const VImage image = ToSrgb(reader.Open(VIPS_FAIL_ON_ERROR));
        Rows rows = ReadRows(image);
        if (!rows.isCutOff) {
            return ToPixels(image, std::move(rows));
        }
    } catch (const VError&) {
        vips_error_clear();
    }
    return std::nullopt;
}

DecodedImage DecodeByVips(CPictureReader& reader)
{
    if (const std::optional<CPixels> pixels = DecodeUndamaged(reader)) {
        return {.pixels = *pixels, .condition = {}};
    }
    const VImage image = ToSrgb(reader.Open(VIPS_FAIL_ON_NONE));
    Rows rows = ReadRows(image);
    if (IsOneColour(rows, image.bands())) {
        ThrowNoPixels(StringId::ImageDataDamaged);
    }
    return {.pixels = ToPixels(image, std::move(rows)),
            .condition = {ImageCondition::State::InPart, Text(StringId::ImageDataIncomplete)}};
}

QSize ShrunkSize(const ImageHeader& header, int shrink)
{
    return {(header.size.width() + shrink - 1) / shrink, (header.size.height() + shrink - 1) / shrink};
}

// The picture ends within the last pixel of a size that doesn't divide by the shrink.
QRectF ShrunkWindow(const ImageHeader& header, int shrink)
{
    return QRectF(QPointF(0, 0), QSizeF(header.size) / shrink);
}

// Scales the rows of a picture to all sizes as they come.
class CScalingTaker final : public CJpegRowTaker {
public:
    CScalingTaker(const PixelGrid& grid, const std::vector<Resampling>& resamplings)
        : grid(grid), resamplings(resamplings)
    {}

    bool Begin(QSize size) override
    {
        // Otherwise the file was replaced by another since its header was read.
        hasBegun = size == grid.size;
        if (hasBegun) {
            resampler.emplace(grid, resamplings);
        }
        return hasBegun;
    }

    uint8_t* GetPlace() override { return resampler->GetPlace(); }
    void TakeRow() override { resampler->TakeRow(); }

    bool HasBegun() const { return hasBegun; }
    std::vector<CPixels> Finish() { return resampler->Finish(); }

private:
    const PixelGrid grid;
    const std::vector<Resampling>& resamplings;
    std::optional<CResampler> resampler;
    bool hasBegun = false;
};

bool CanScaleAll(const PixelGrid& grid, const std::vector<Resampling>& resamplings)
{
    return std::none_of(resamplings.begin(), resamplings.end(), [&grid](const Resampling& each) {
        return each.area.isEmpty() || IsUnscaled(grid, each);
    });
}

} // namespace

ImageHeader ReadImageHeader(const QString& path)
{
    StartVips();
    try {
        CPictureReader reader(path);
        const VImage image = reader.Open(VIPS_FAIL_ON_NONE);
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
        const bool isJpeg = reader.GetKind() == Kind::Jpeg;
        DecodedImage decoded = isJpeg ? DecodeJpegFile(reader, shrink) : DecodeByVips(reader);
        // The file may have been replaced by another since its header was read.
        if (decoded.pixels.size != ShrunkSize(header, shrink)) {
            ThrowNoPixels(StringId::ImageChanged);
        }
        decoded.pixels.window = ShrunkWindow(header, shrink);
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

std::optional<DecodedScaledImages> DecodeScaledImages(const QString& path, const ImageHeader& header,
                                                      const ScaledDecoding& wanted)
{
    const PixelGrid grid{ShrunkSize(header, wanted.shrink), 3, ShrunkWindow(header, wanted.shrink)};
    if (header.orientation > 1 || !CanScaleAll(grid, wanted.resamplings)) {
        return std::nullopt;
    }
    try {
        const CPictureReader reader(path);
        if (reader.GetKind() != Kind::Jpeg) {
            return std::nullopt;
        }
        CScalingTaker taker(grid, wanted.resamplings);
        const JpegPicture jpeg = DecodeJpeg(CFileBytes(reader.GetDescriptor()), wanted.shrink, &taker);
        if (!taker.HasBegun()) {
            return std::nullopt;
        }
        return DecodedScaledImages{taker.Finish(), ConditionOf(jpeg)};
    } catch (const std::bad_alloc&) {
        throw CNoPixelsException{Text(StringId::ImageTooLarge, header.size.width(), header.size.height())};
    }
}
