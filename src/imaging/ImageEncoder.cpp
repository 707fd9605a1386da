#include "imaging/ImageEncoder.h"

#include <vips/vips8>

#include "imaging/ImageNode.h"
#include "imaging/JpegEncoder.h"
#include "imaging/VipsLibrary.h"
#include "resources/StringTable.h"

namespace {

// The bytes stay with pixels.
vips::VImage Borrow(const CPixels& pixels)
{
    vips::VImage image = vips::VImage::new_from_memory(
        const_cast<uint8_t*>(pixels.bytes->data()), pixels.bytes->size(), pixels.size.width(),
        pixels.size.height(), pixels.channels, VIPS_FORMAT_UCHAR);
    return image.copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

void AppendLittleEndian(QByteArray& bytes, uint32_t value, int count)
{
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xff);
    }
}

// The headers of a bitmap with alpha: BITMAPFILEHEADER and BITMAPV4HEADER with the masks of blue, green, red
// and alpha, uncompressed. libvips writes bitmaps only through other libraries, and without alpha.
QByteArray BitmapHeaders(QSize size)
{
    constexpr uint32_t fileHeaderSize = 14;
    constexpr uint32_t infoHeaderSize = 108;
    const uint32_t pixelBytes =
        4u * static_cast<uint32_t>(size.width()) * static_cast<uint32_t>(size.height());
    QByteArray headers("BM");
    AppendLittleEndian(headers, fileHeaderSize + infoHeaderSize + pixelBytes, 4);
    AppendLittleEndian(headers, 0, 4); // reserved
    AppendLittleEndian(headers, fileHeaderSize + infoHeaderSize, 4);
    AppendLittleEndian(headers, infoHeaderSize, 4);
    AppendLittleEndian(headers, static_cast<uint32_t>(size.width()), 4);
    AppendLittleEndian(headers, static_cast<uint32_t>(-size.height()), 4); // rows from the top
    AppendLittleEndian(headers, 1, 2);                                     // planes
    AppendLittleEndian(headers, 32, 2);                                    // bits of a pixel
    AppendLittleEndian(headers, 3, 4);                                     // BI_BITFIELDS
    AppendLittleEndian(headers, pixelBytes, 4);
    headers += QByteArray(16, '\0'); // no density, no palette
    for (const uint32_t mask : {0x00ff0000u, 0x0000ff00u, 0x000000ffu, 0xff000000u}) {
        AppendLittleEndian(headers, mask, 4);
    }
    AppendLittleEndian(headers, 0x73524742, 4); // LCS_sRGB
    headers += QByteArray(48, '\0');            // end points and gamma, which sRGB has already
    return headers;
}

QByteArray EncodeBitmap(const CPixels& picture)
{
    const CPixels pixels = WithAlpha(picture);
    QByteArray bytes = BitmapHeaders(pixels.size);
    const std::vector<uint8_t>& rgba = *pixels.bytes;
    bytes.reserve(bytes.size() + static_cast<qsizetype>(rgba.size()));
    for (size_t i = 0; i + 3 < rgba.size(); i += 4) {
        for (const size_t channel : {2, 1, 0, 3}) {
            bytes += static_cast<char>(rgba[i + channel]);
        }
    }
    return bytes;
}

} // namespace

QByteArray EncodeImage(const CPixels& pixels, const ImageEncoding& encoding)
{
    if (encoding.format == ImageEncoding::Format::Jpeg) {
        return EncodeJpeg(Flattened(pixels, 255), encoding.quality);
    }
    if (encoding.format == ImageEncoding::Format::Bmp) {
        return EncodeBitmap(pixels);
    }
    StartVips();
    VipsBlob* blob = nullptr;
    try {
        blob = Borrow(pixels).pngsave_buffer(vips::VImage::option()->set("strip", true));
    } catch (const vips::VError&) {
        vips_error_clear();
        throw CNoPixelsException{
            Text(StringId::ImageNotEncodable, pixels.size.width(), pixels.size.height())};
    }
    size_t length = 0;
    const void* data = vips_blob_get(blob, &length);
    const QByteArray bytes(static_cast<const char*>(data), static_cast<qsizetype>(length));
    vips_area_unref(VIPS_AREA(blob));
    return bytes;
}
