#include "imaging/JpegEncoder.h"

#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>
#include <vector>

#include "imaging/ImageNode.h"
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

} // namespace

QByteArray EncodeJpeg(const CPixels& pixels, int quality)
{
    CJpegWriting writing(pixels);
    if (!writing.Run(quality)) {
        throw CNoPixelsException{
            Text(StringId::ImageNotEncodable, pixels.size.width(), pixels.size.height())};
    }
    return writing.GetBytes();
}
