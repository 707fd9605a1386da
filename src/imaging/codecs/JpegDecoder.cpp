#include "imaging/codecs/JpegDecoder.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <jconfig.h> // what jerror.h numbers depends on it
#include <jerror.h>
#include <jpeglib.h>

#include "imaging/pixels/DecodingStop.h"
#include "imaging/pixels/Pixels.h"
#include "resources/StringTable.h"

namespace {

constexpr uint8_t missingGrey = 128; // what libjpeg itself shows for blocks without data
constexpr int maximumScans = 500;    // of a progressive file; far more only keep the decoder busy
constexpr int maximumRetries = 3;
constexpr size_t pieceSize = 65536; // of a file, in bytes

// Bytes left over after the last block. More of them, unless they are all alike and so the padding of some
// cameras, mean that blocks were lost on the way.
constexpr int leftOverAllowed = 64;

// Fewer bytes of compressed pixels than this hold not even one block of a photograph.
constexpr size_t leastPixelBytes = 8;

// One run of libjpeg over the first bytes of a file. libjpeg reports fatal errors by a jump, so no function
// that a jump leaves may have locals with destructors: all state is in members. One thread.
class CJpegRun {
public:
    // length: how many bytes of the file count.
    CJpegRun(const CFileBytes& file, size_t length) : file(file), length(length), piece(pieceSize)
    {
        source.init_source = [](j_decompress_ptr) {
        };
        source.fill_input_buffer = ReadPiece;
        source.skip_input_data = SkipBytes;
        source.resync_to_restart = jpeg_resync_to_restart;
        source.term_source = [](j_decompress_ptr) {
        };
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
        info.src = &source;
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
        progress.progress_monitor = WatchProgress;
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
    size_t GetPosition() const { return pieceEnd - source.bytes_in_buffer; }
    const std::vector<uint8_t>& GetProfile() const { return profile; }

    // Whether the first scan has any pixels at all.
    bool HasPixelBytes() const
    {
        std::array<uint8_t, leastPixelBytes + 1> bytes{};
        const size_t count = file.Read(scanStart, bytes.data(), std::min(bytes.size(), length - scanStart));
        size_t end = 0;
        while (end + 1 < count && (bytes[end] != 0xff || bytes[end + 1] == 0)) {
            ++end;
        }
        return end >= leastPixelBytes;
    }

private:
    static CJpegRun& RunOf(j_common_ptr info) { return *static_cast<CJpegRun*>(info->client_data); }

    [[noreturn]] static void LeaveByJump(j_common_ptr info) { std::longjmp(RunOf(info).jump, 1); }

    // What comes after the end is taken for the end marker, as libjpeg's own sources do.
    static boolean ReadPiece(j_decompress_ptr decompressor)
    {
        static const JOCTET endMarker[] = {0xff, JPEG_EOI};
        CJpegRun& run = RunOf(reinterpret_cast<j_common_ptr>(decompressor));
        const size_t count =
            run.file.Read(run.pieceEnd, run.piece.data(), std::min(pieceSize, run.length - run.pieceEnd));
        run.pieceEnd += count;
        run.source.next_input_byte = run.piece.data();
        run.source.bytes_in_buffer = count;
        if (count == 0) {
            run.pieceEnd = run.length;
            WARNMS(decompressor, JWRN_JPEG_EOF);
            run.source.next_input_byte = endMarker;
            run.source.bytes_in_buffer = sizeof endMarker;
        }
        return TRUE;
    }

    static void SkipBytes(j_decompress_ptr decompressor, long count)
    {
        jpeg_source_mgr& source = *decompressor->src;
        while (count > static_cast<long>(source.bytes_in_buffer)) {
            count -= static_cast<long>(source.bytes_in_buffer);
            source.fill_input_buffer(decompressor);
        }
        if (count > 0) {
            source.next_input_byte += count;
            source.bytes_in_buffer -= static_cast<size_t>(count);
        }
    }

    static void TakeMessage(j_common_ptr info, int level)
    {
        if (level < 0 && RunOf(info).TellsOfDamage(info->err->msg_code, info->err->msg_parm.i)) {
            RunOf(info).isDamaged = true;
        }
    }

    // Called for each row, and for each row of blocks while the scans of a progressive file are gathered.
    static void WatchProgress(j_common_ptr common)
    {
        if (RunOf(common).info.input_scan_number > maximumScans || CDecodingStop::IsWanted()) {
            LeaveByJump(common);
        }
    }

    // libjpeg warns of every irregularity. Most come up in good files of many cameras; these lose pixels.
    bool TellsOfDamage(int code, const int* parameters)
    {
        switch (code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_ARITH_BAD_CODE:
        case JWRN_MUST_RESYNC:
            return true;
        case JWRN_EXTRANEOUS_DATA: // parameters: count of bytes, marker after them
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
        return pictureEnd == 0 ||
               file.AreAlike(pictureEnd, pictureEnd + std::min(count, length - pictureEnd));
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

    const CFileBytes& file;
    const size_t length;
    std::vector<uint8_t> piece;
    size_t pieceEnd = 0; // where the next piece begins
    jpeg_source_mgr source{};
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf jump{};
    std::vector<uint8_t> profile;
    size_t scanStart = 0;
    size_t pictureEnd = 0; // 0: not yet there
    bool isDamaged = false;
};

// Where the rows go that are decoded: into the picture or to a taker.
class CRowStore {
public:
    CRowStore(const CJpegRun& run, CJpegRowTaker* taker) : isInverted(run.IsInvertedCmyk())
    {
        picture.size = run.GetSize();
        picture.channels = run.GetChannels();
        picture.profile = run.GetProfile();
        rowBytes = static_cast<size_t>(picture.size.width()) * static_cast<size_t>(picture.channels);
        const bool isPlain = picture.channels == 3 && picture.profile.empty();
        this->taker = taker != nullptr && isPlain && taker->Begin(picture.size) ? taker : nullptr;
        if (!this->taker) {
            picture.bytes.resize(rowBytes * static_cast<size_t>(picture.size.height()));
        }
    }

    // Where to put the next row.
    uint8_t* GetPlace()
    {
        return taker ? taker->GetPlace() : &picture.bytes[rowBytes * static_cast<size_t>(count)];
    }

    void TakeRow()
    {
        uint8_t* const row = GetPlace();
        if (isInverted) {
            std::transform(row, row + rowBytes, row,
                           [](uint8_t ink) { return static_cast<uint8_t>(255 - ink); });
        }
        LookAtColours(row);
        if (taker) {
            taker->TakeRow();
        }
        ++count;
    }

    // For those that couldn't be decoded.
    void TakeGreyRows()
    {
        while (!IsFull()) {
            std::fill_n(GetPlace(), rowBytes, missingGrey);
            TakeRow();
        }
    }

    bool IsFull() const { return count == picture.size.height(); }
    bool HasOneColour() const { return hasOneColour; }

    JpegPicture Finish(bool isWhole)
    {
        picture.isWhole = isWhole;
        return std::move(picture);
    }

private:
    void LookAtColours(const uint8_t* row)
    {
        const auto channels = static_cast<size_t>(picture.channels);
        if (count == 0) {
            firstPixel.assign(row, row + channels);
        }
        // Photographs are known by their first pixels.
        for (size_t i = 0; i < rowBytes && hasOneColour; ++i) {
            hasOneColour = row[i] == firstPixel[i % channels];
        }
    }

    JpegPicture picture;
    CJpegRowTaker* taker = nullptr;
    const bool isInverted; // Photoshop's CMYK
    size_t rowBytes = 0;
    int count = 0;
    std::vector<uint8_t> firstPixel;
    bool hasOneColour = true;
};

// Whether all rows were there and undamaged.
bool ReadRows(CJpegRun& run, CRowStore& store)
{
    while (!store.IsFull() && run.ReadRow(store.GetPlace())) {
        store.TakeRow();
    }
    CDecodingStop::ThrowIfWanted();
    const bool isFull = store.IsFull();
    if (isFull) {
        run.Finish();
    }
    store.TakeGreyRows();
    return isFull && !run.IsDamaged();
}

} // namespace

JpegPicture DecodeJpeg(const CFileBytes& file, int shrink, CJpegRowTaker* taker)
{
    size_t length = file.GetLength();
    for (int attempt = 0; attempt <= maximumRetries && length > 0; ++attempt) {
        CJpegRun run(file, length);
        if (!run.ReadHeader()) {
            break;
        }
        if (run.Start(shrink)) {
            CRowStore store(run, taker);
            const bool isWhole = ReadRows(run, store) && attempt == 0;
            if (!isWhole && (!run.HasPixelBytes() || store.HasOneColour())) {
                break;
            }
            return store.Finish(isWhole);
        }
        CDecodingStop::ThrowIfWanted();
        // A progressive file is read to its end before the first row comes. The scans before a fatal error
        // are good: the file is taken to end there, at the marker before it.
        length = file.FindLast(0xff, run.GetPosition()).value_or(0);
    }
    throw CNoPixelsException{Text(StringId::ImageDataDamaged)};
}
