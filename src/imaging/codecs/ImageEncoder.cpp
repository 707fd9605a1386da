#include "imaging/codecs/ImageEncoder.h"

#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>
#include <vector>

#include <vips/vips8>

#include "imaging/codecs/VipsLibrary.h"
#include "resources/StringTable.h"

namespace {

constexpr int fineColourQuality = 90;

// One run of libjpeg. It reports fatal errors by a jump, so no function that a jump leaves may have locals
// with destructors: all state is in members. One thread.
class CJpegWriting {
public:
    explicit CJpegWriting(const CPixels& pixels) : pixels(pixels), piece(pieceSize)
    {
        info.err = jpeg_std_error(&errors);
        errors.error_exit = LeaveByJump;
        info.client_data = this;
        destination.init_destination = BeginPiece;
        destination.empty_output_buffer = KeepPiece;
        destination.term_destination = KeepLastPiece;
    }
    ~CJpegWriting() { jpeg_destroy_compress(&info); }
    CJpegWriting(const CJpegWriting&) = delete;
    CJpegWriting& operator=(const CJpegWriting&) = delete;

    // False on a fatal error.
    bool Run(int quality)
    {
        if (setjmp(jump) != 0) {
            return false;
        }
        jpeg_create_compress(&info);
        info.client_data = this;
        info.dest = &destination;
        Configure(quality);
        jpeg_start_compress(&info, TRUE);
        while (info.next_scanline < info.image_height) {
            // libjpeg takes rows that it doesn't change as changeable.
            auto* row = const_cast<JSAMPLE*>(pixels.GetRow(static_cast<int>(info.next_scanline)));
            jpeg_write_scanlines(&info, &row, 1);
        }
        jpeg_finish_compress(&info);
        return true;
    }

    const QByteArray& GetBytes() const { return bytes; }

private:
    static constexpr size_t pieceSize = 65536;

    static CJpegWriting& WritingOf(j_compress_ptr compressor)
    {
        return *static_cast<CJpegWriting*>(compressor->client_data);
    }

    [[noreturn]] static void LeaveByJump(j_common_ptr common)
    {
        std::longjmp(static_cast<CJpegWriting*>(common->client_data)->jump, 1);
    }

    static void BeginPiece(j_compress_ptr compressor)
    {
        CJpegWriting& writing = WritingOf(compressor);
        writing.destination.next_output_byte = writing.piece.data();
        writing.destination.free_in_buffer = pieceSize;
    }

    static boolean KeepPiece(j_compress_ptr compressor)
    {
        CJpegWriting& writing = WritingOf(compressor);
        writing.Keep(pieceSize);
        BeginPiece(compressor);
        return TRUE;
    }

    static void KeepLastPiece(j_compress_ptr compressor)
    {
        CJpegWriting& writing = WritingOf(compressor);
        writing.Keep(pieceSize - writing.destination.free_in_buffer);
    }

    void Keep(size_t count)
    {
        bytes.append(reinterpret_cast<const char*>(piece.data()), static_cast<qsizetype>(count));
    }

    void Configure(int quality)
    {
        info.image_width = static_cast<JDIMENSION>(pixels.size.width());
        info.image_height = static_cast<JDIMENSION>(pixels.size.height());
        info.input_components = 3;
        info.in_color_space = JCS_RGB;
        jpeg_set_defaults(&info);
        jpeg_set_quality(&info, quality, TRUE);
        info.write_JFIF_header = FALSE; // it would tell of a resolution, and there is none
        if (quality >= fineColourQuality) {
            info.comp_info[0].h_samp_factor = 1;
            info.comp_info[0].v_samp_factor = 1;
        }
    }

    const CPixels& pixels;
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_destination_mgr destination{};
    std::jmp_buf jump{};
    std::vector<JOCTET> piece;
    QByteArray bytes;
};

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

// pixels: three channels. Baseline, without metadata; from quality 90 on, colours are as fine as brightness.
// Throws std::bad_alloc, and CNoPixelsException for a size that JPEG can't hold.
QByteArray EncodeJpeg(const CPixels& pixels, int quality)
{
    CJpegWriting writing(pixels);
    if (!writing.Run(quality)) {
        throw CNoPixelsException{
            Text(StringId::ImageNotEncodable, pixels.size.width(), pixels.size.height())};
    }
    return writing.GetBytes();
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
