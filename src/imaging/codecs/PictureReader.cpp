#include "imaging/codecs/PictureReader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "imaging/pixels/Pixels.h"

using vips::VError;
using vips::VImage;

namespace {

// Not blocking, so that a pipe that is named like a picture can't hold up a run.
int OpenFile(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        throw CNoPixelsException{SystemErrorText(errno)};
    }
    return descriptor;
}

const char* LoaderOf(CPictureReader::Kind kind)
{
    switch (kind) {
    case CPictureReader::Kind::Jpeg:
        return "jpegload_source";
    case CPictureReader::Kind::Png:
        return "pngload_source";
    case CPictureReader::Kind::Gif:
        return "gifload_source";
    case CPictureReader::Kind::Tiff:
        return "tiffload_source";
    case CPictureReader::Kind::WebP:
        return "webpload_source";
    case CPictureReader::Kind::Magick:
        return "magickload_buffer";
    }
    return "";
}

vips::VOption* Options(VipsFailOn failOn)
{
    return VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", failOn);
}

} // namespace

void ThrowNoPixels(StringId reason)
{
    vips_error_clear();
    throw CNoPixelsException{Text(reason)};
}

CPictureReader::CPictureReader(const QString& path)
    : path(path), file(OpenFile(path)), signature(ReadSignature(file.Get())), kind(KindOf(signature))
{}

VImage CPictureReader::Open(VipsFailOn failOn) const
{
    if (kind == Kind::Magick) {
        return OpenByMagick(failOn);
    }
    ::lseek(file.Get(), 0, SEEK_SET);
    return Load(Options(failOn)->set("source", vips::VSource::new_from_descriptor(file.Get())));
}

CPictureReader::Signature CPictureReader::ReadSignature(int descriptor)
{
    struct stat status;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ThrowNoPixels(StringId::ImageNotAFile);
    }
    if (status.st_size == 0) {
        ThrowNoPixels(StringId::ImageEmpty);
    }
    Signature signature{};
    if (::pread(descriptor, signature.data(), signature.size(), 0) < 0) {
        throw CNoPixelsException{SystemErrorText(errno)};
    }
    return signature;
}

bool CPictureReader::BeginsWith(const Signature& signature, const char* bytes, size_t count)
{
    return std::memcmp(signature.data(), bytes, count) == 0;
}

// The loader is named here and never looked for by libvips: ImageMagick and others open far more kinds of
// file than pictures, and a gallery's folder may hold anything.
CPictureReader::Kind CPictureReader::KindOf(const Signature& signature)
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

VImage CPictureReader::Load(vips::VOption* options) const
{
    VImage image;
    VImage::call(LoaderOf(kind), options->set("out", &image));
    return image;
}

VImage CPictureReader::LoadBytes(const QByteArray& bytes, VipsFailOn failOn) const
{
    VipsBlob* blob = vips_blob_copy(bytes.constData(), static_cast<size_t>(bytes.size()));
    vips::VOption* options = Options(failOn)->set("buffer", blob);
    vips_area_unref(VIPS_AREA(blob));
    return Load(options);
}

// ImageMagick gives nothing of a file that ends too early, so one that does is lengthened by zeros.
VImage CPictureReader::OpenByMagick(VipsFailOn failOn) const
{
    QByteArray bytes = ReadWholeFile(path);
    try {
        return LoadBytes(bytes, failOn);
    } catch (const VError&) {
        if (failOn != VIPS_FAIL_ON_NONE || !IsWorthLengthening(bytes)) {
            throw;
        }
    }
    vips_error_clear();
    bytes.append(ClaimedBytes(), '\0');
    return LoadBytes(bytes, failOn);
}

// A few bytes that claim a large picture hold nothing to be seen, and the zeros would fill the memory. No
// whole file claims more: run lengths make at most 504 pixels of 2 bytes (PCX of one bit).
bool CPictureReader::IsWorthLengthening(const QByteArray& bytes) const
{
    constexpr qsizetype mostPerByte = 1024;
    const qsizetype claimed = ClaimedBytes();
    return claimed > 0 && claimed / mostPerByte <= bytes.size();
}

// What BMP or PCX say of their size, as bytes of pixels: 0 for an absurd one.
qsizetype CPictureReader::ClaimedBytes() const
{
    const auto number = [this](size_t place, int bytes) {
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
