#include "imaging/JpegDecoder.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <jconfig.h> // what jerror.h numbers depends on it
#include <jerror.h>
#include <jpeglib.h>

#include "imaging/ImageNode.h"
#include "resources/StringTable.h"

namespace {

constexpr uint8_t missingGrey = 128; // what libjpeg itself shows for blocks without data
constexpr int maximumScans = 500;    // of a progressive file; far more only keep the decoder busy
constexpr int maximumRetries = 3;

// Bytes left over behind the last block. More of them, unless they are all alike and so the padding of some
// cameras, mean that blocks were lost on the way.
constexpr int leftOverAllowed = 64;

// Fewer bytes of compressed pixels than this hold not even one block of a photograph.
constexpr size_t leastPixelBytes = 8;

// One run of libjpeg over bytes in memory. libjpeg reports fatal errors by a jump, so no function that a
// jump leaves may have locals with destructors: all state is in members. One thread.
class CJpegRun {
public:
    CJpegRun(const uint8_t* data, size_t length) : data(data), length(length)
    {
        info.err = jpeg_std_error(&errors);
        errors.error_exit = LeaveByJump;
        errors.emit_message = TakeMessage;
        info.client_data = this;
    }
    ~CJpegRun() { jpeg_destroy_decompress(&info); }
    CJpegRun(const CJpegRun&) = delete;
    CJpegRun& operator=(const CJpegRun&) = delete;

    // All three: false on a fatal error.
    bool ReadHeader()
    {
        if (setjmp(jump) != 0) {
            return false;
        }
        jpeg_create_decompress(&info);
        info.client_data = this;
        jpeg_mem_src(&info, data, length);
        jpeg_save_markers(&info, JPEG_APP0 + 2, 0xffff);
        jpeg_read_header(&info, TRUE);
        JOCTET* found = nullptr;
        unsigned int foundLength = 0;
        if (jpeg_read_icc_profile(&info, &found, &foundLength)) {
            TakeProfile(found, foundLength);
        }
        scanStart = GetPosition();
        return true;
    }

    bool Start(int shrink)
    {
        if (setjmp(jump) != 0) {
            return false;
        }
        info.scale_num = 1;
        info.scale_denom = static_cast<unsigned int>(shrink);
        info.out_color_space = OutputSpace();
        progress.progress_monitor = LimitScans;
        info.progress = &progress;
        jpeg_start_decompress(&info);
        return true;
    }

    bool ReadRow(uint8_t* row)
    {
        if (setjmp(jump) != 0) {
            return false;
        }
        return jpeg_read_scanlines(&info, &row, 1) == 1;
    }

    // Looks at what stands between the picture and its end marker.
    void Finish()
    {
        if (setjmp(jump) == 0) {
            pictureEnd = GetPosition();
            jpeg_finish_decompress(&info);
        }
    }

    QSize GetSize() const
    {
        return {static_cast<int>(info.output_width), static_cast<int>(info.output_height)};
    }
    int GetChannels() const { return info.output_components; }
    // Photoshop stores CMYK inverted, and marks its files.
    bool IsInvertedCmyk() const { return info.out_color_space == JCS_CMYK && info.saw_Adobe_marker; }
    bool IsDamaged() const { return isDamaged; }
    // Where a fatal error was found.
    size_t GetPosition() const { return info.src == nullptr ? 0 : length - info.src->bytes_in_buffer; }
    const std::vector<uint8_t>& GetProfile() const { return profile; }

    // Whether the first scan has any pixels at all.
    bool HasPixelBytes() const
    {
        size_t end = scanStart;
        while (end + 1 < length && (data[end] != 0xff || data[end + 1] == 0)) {
            ++end;
        }
        return end - scanStart >= leastPixelBytes;
    }

private:
    static CJpegRun& RunOf(j_common_ptr info) { return *static_cast<CJpegRun*>(info->client_data); }

    [[noreturn]] static void LeaveByJump(j_common_ptr info) { std::longjmp(RunOf(info).jump, 1); }

    static void TakeMessage(j_common_ptr info, int level)
    {
        if (level < 0 && RunOf(info).TellsOfDamage(info->err->msg_code, info->err->msg_parm.i)) {
            RunOf(info).isDamaged = true;
        }
    }

    static void LimitScans(j_common_ptr common)
    {
        if (RunOf(common).info.input_scan_number > maximumScans) {
            LeaveByJump(common);
        }
    }

    // libjpeg warns of every irregularity. Most come up in good files of many cameras; only these lose
    // pixels.
    bool TellsOfDamage(int code, const int* parameters)
    {
        switch (code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_ARITH_BAD_CODE:
        case JWRN_MUST_RESYNC:
            return true;
        case JWRN_EXTRANEOUS_DATA: // parameters: count of bytes, marker behind them
            return (parameters[1] >= JPEG_RST0 && parameters[1] <= JPEG_RST0 + 7) ||
                   (parameters[0] > leftOverAllowed && !IsPadding(static_cast<size_t>(parameters[0])));
        case JWRN_JPEG_EOF:
            // With one scan only the end marker may be missing; lost blocks are told of by JWRN_HIT_MARKER.
            return jpeg_has_multiple_scans(&info);
        default:
            return false;
        }
    }

    // count: of the bytes between the end of the picture and the next marker.
    bool IsPadding(size_t count) const
    {
        const uint8_t* first = data + pictureEnd;
        const uint8_t* last = first + std::min(count, length - pictureEnd);
        return pictureEnd == 0 || std::adjacent_find(first, last, std::not_equal_to<>()) == last;
    }

    void TakeProfile(JOCTET* found, unsigned int foundLength)
    {
        profile.assign(found, found + foundLength);
        std::free(found);
    }

    J_COLOR_SPACE OutputSpace() const
    {
        switch (info.jpeg_color_space) {
        case JCS_GRAYSCALE:
            return profile.empty() ? JCS_RGB : JCS_GRAYSCALE;
        case JCS_CMYK:
        case JCS_YCCK:
            return JCS_CMYK;
        default:
            return JCS_RGB;
        }
    }

    const uint8_t* const data;
    const size_t length;
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf jump{};
    std::vector<uint8_t> profile;
    size_t scanStart = 0;
    size_t pictureEnd = 0; // 0: not yet there
    bool isDamaged = false;
};

bool IsOneColour(const JpegPicture& picture)
{
    return std::equal(picture.bytes.begin() + picture.channels, picture.bytes.end(), picture.bytes.begin());
}

JpegPicture ReadRows(CJpegRun& run)
{
    JpegPicture picture;
    picture.size = run.GetSize();
    picture.channels = run.GetChannels();
    const size_t rowBytes = static_cast<size_t>(picture.size.width()) * static_cast<size_t>(picture.channels);
    picture.bytes.assign(rowBytes * static_cast<size_t>(picture.size.height()), missingGrey);
    int y = 0;
    while (y < picture.size.height() && run.ReadRow(&picture.bytes[rowBytes * static_cast<size_t>(y)])) {
        ++y;
    }
    if (y == picture.size.height()) {
        run.Finish();
    } else {
        std::fill(picture.bytes.begin() + static_cast<ptrdiff_t>(rowBytes * static_cast<size_t>(y)),
                  picture.bytes.end(), missingGrey);
    }
    picture.isWhole = y == picture.size.height() && !run.IsDamaged();
    if (run.IsInvertedCmyk()) {
        std::transform(picture.bytes.begin(), picture.bytes.end(), picture.bytes.begin(),
                       [](uint8_t ink) { return static_cast<uint8_t>(255 - ink); });
    }
    return picture;
}

// The place of the marker at or before position, to which the file can be cut.
size_t MarkerBefore(const QByteArray& file, size_t position)
{
    const qsizetype marker = file.lastIndexOf('\xff', static_cast<qsizetype>(position) - 1);
    return marker < 0 ? 0 : static_cast<size_t>(marker);
}

} // namespace

JpegPicture DecodeJpeg(const QByteArray& file, int shrink)
{
    size_t length = static_cast<size_t>(file.size());
    for (int attempt = 0; attempt <= maximumRetries && length > 0; ++attempt) {
        CJpegRun run(reinterpret_cast<const uint8_t*>(file.constData()), length);
        if (!run.ReadHeader()) {
            break;
        }
        if (run.Start(shrink)) {
            JpegPicture picture = ReadRows(run);
            picture.profile = run.GetProfile();
            picture.isWhole = picture.isWhole && attempt == 0;
            if (!picture.isWhole && (!run.HasPixelBytes() || IsOneColour(picture))) {
                break;
            }
            return picture;
        }
        // A progressive file is read to its end before the first row comes. The scans before a fatal error
        // are good: the file is taken to end there.
        length = MarkerBefore(file, run.GetPosition());
    }
    throw CNoPixelsException{Text(StringId::ImageDataDamaged)};
}
