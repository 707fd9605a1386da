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

} // namespace

QByteArray EncodeImage(const CPixels& pixels, const ImageEncoding& encoding)
{
    if (encoding.format == ImageEncoding::Format::Jpeg) {
        return EncodeJpeg(Flattened(pixels, 255), encoding.quality);
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
