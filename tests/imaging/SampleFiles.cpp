#include "SampleFiles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QtEndian>
#include <vips/vips8>

namespace {

int ToByte(double value)
{
    return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
}

template <class Number>
void AppendBig(QByteArray& bytes, Number number)
{
    const Number big = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char*>(&big), sizeof(big));
}

template <class Number>
void AppendLittle(QByteArray& bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof(little));
}

double ToLinear(double gamma, double value)
{
    if (gamma > 0) {
        return std::pow(value, gamma);
    }
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double FromLinear(double value)
{
    value = std::clamp(value, 0.0, 1.0);
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
}

// s15Fixed16Number
void AppendFixed(QByteArray& bytes, double value)
{
    AppendBig<int32_t>(bytes, static_cast<int32_t>(std::lround(value * 65536)));
}

QByteArray XyzTag(double x, double y, double z)
{
    QByteArray tag("XYZ \0\0\0\0", 8);
    AppendFixed(tag, x);
    AppendFixed(tag, y);
    AppendFixed(tag, z);
    return tag;
}

QByteArray CurveTag(double gamma)
{
    QByteArray tag("curv\0\0\0\0", 8);
    if (gamma > 0) {
        AppendBig<uint32_t>(tag, 1);
        AppendBig<uint16_t>(tag, static_cast<uint16_t>(std::lround(gamma * 256)));
    } else {
        AppendBig<uint32_t>(tag, 1024);
        for (int i = 0; i < 1024; ++i) {
            AppendBig<uint16_t>(tag, static_cast<uint16_t>(std::lround(ToLinear(0, i / 1023.0) * 65535)));
        }
    }
    while (tag.size() % 4 != 0) {
        tag.append('\0');
    }
    return tag;
}

QByteArray TextTags(const char* type)
{
    QByteArray tag(type, 4);
    tag.append(4, '\0');
    if (QByteArray(type) == "desc") {
        AppendBig<uint32_t>(tag, 5);
        tag.append("Test\0", 5);
        tag.append(4 + 4 + 2 + 1 + 67, '\0');
    } else {
        tag.append("None", 5);
    }
    while (tag.size() % 4 != 0) {
        tag.append('\0');
    }
    return tag;
}

// Solves matrix * result = vector by Cramer's rule.
std::array<double, 3> Solve(const double (&m)[3][3], const std::array<double, 3>& v)
{
    const auto determinant = [](const double(&a)[3][3]) {
        return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
               a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
               a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
    };
    std::array<double, 3> result{};
    for (int column = 0; column < 3; ++column) {
        double replaced[3][3];
        for (int row = 0; row < 3; ++row) {
            for (int c = 0; c < 3; ++c) {
                replaced[row][c] = c == column ? v[row] : m[row][c];
            }
        }
        result[column] = determinant(replaced) / determinant(m);
    }
    return result;
}

} // namespace

const ColourSpace displayP3 = {
    {{0.51512, 0.29198, 0.15710}, {0.24120, 0.69225, 0.06657}, {-0.00105, 0.04189, 0.78407}}, 0};
const ColourSpace adobeRgb = {
    {{0.60974, 0.20528, 0.14919}, {0.31111, 0.62567, 0.06322}, {0.01947, 0.06087, 0.74457}}, 2.19921875};
const ColourSpace standardRgb = {
    {{0.43607, 0.38515, 0.14307}, {0.22249, 0.71687, 0.06061}, {0.01392, 0.09708, 0.71410}}, 0};

QByteArray Paint(QSize size, const Painter& painter)
{
    QByteArray rgba;
    rgba.reserve(size.width() * size.height() * 4);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            for (const int value : painter(x, y)) {
                rgba.append(static_cast<char>(value));
            }
        }
    }
    return rgba;
}

Colour PixelOf(const QByteArray& rgba, QSize size, QPoint place)
{
    Colour colour{};
    for (int c = 0; c < 4; ++c) {
        colour[c] = static_cast<uint8_t>(rgba.at((place.y() * size.width() + place.x()) * 4 + c));
    }
    return colour;
}

double MeanError(const QByteArray& a, const QByteArray& b)
{
    if (a.size() != b.size() || a.isEmpty()) {
        return 255;
    }
    double sum = 0;
    for (qsizetype i = 0; i < a.size(); ++i) {
        sum += std::abs(static_cast<uint8_t>(a[i]) - static_cast<uint8_t>(b[i]));
    }
    return sum / (static_cast<double>(a.size()) * 3 / 4);
}

double Psnr(const QByteArray& a, const QByteArray& b)
{
    if (a.size() != b.size() || a.isEmpty()) {
        return 0;
    }
    double squares = 0;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const double difference = static_cast<uint8_t>(a[i]) - static_cast<uint8_t>(b[i]);
        squares += difference * difference;
    }
    return squares == 0 ? 100
                        : 10 * std::log10(255.0 * 255 * (static_cast<double>(a.size()) * 3 / 4) / squares);
}

Colour Waves(int x, int y)
{
    return {ToByte(128 + 90 * std::sin(x / 17.0)), ToByte(128 + 90 * std::cos(y / 23.0)),
            ToByte(128 + 90 * std::sin((x + y) / 31.0)), 255};
}

Colour Detail(int x, int y)
{
    double value = 0;
    for (int octave = 0; octave < 8; ++octave) {
        const double period = 3.0 * std::pow(1.9, octave);
        const double angle = octave * 0.7;
        value += 9 * std::sin((x * std::cos(angle) + y * std::sin(angle)) * 2 * std::numbers::pi / period);
    }
    const bool isInDisc = std::hypot(x % 200 - 100, y % 200 - 100) < 60;
    value += isInDisc ? 170 : 90;
    return {ToByte(value), ToByte(value * 0.9 + (x / 40 % 2) * 20), ToByte(255 - value), 255};
}

Colour Grain(int x, int y)
{
    uint32_t hash = static_cast<uint32_t>(x) * 73856093u ^ static_cast<uint32_t>(y) * 19349663u;
    hash = (hash ^ hash >> 13) * 0x5bd1e995u;
    hash ^= hash >> 15;
    const int noise = static_cast<int>(hash & 0xff) * 120 / 255 - 60;
    Colour colour = Detail(x, y);
    for (int c = 0; c < 3; ++c) {
        colour[c] = std::clamp(colour[c] + noise, 0, 255);
    }
    return colour;
}

QByteArray JpegOf(QSize size, const Painter& painter, const JpegOptions& options)
{
    const CScratchFolder folder;
    const CImage image = CImage::FromRgba(size, Paint(size, painter));
    const QString path = folder.Path(QStringLiteral("plain.png"));
    EXPECT_EQ(image.Save(path, {.format = ImageEncoding::Format::Png}).status,
              ImageSaveResult::Status::Saved);
    const vips::VImage picture = vips::VImage::new_from_file(qPrintable(path)).flatten();
    VipsBlob* blob =
        picture.jpegsave_buffer(vips::VImage::option()
                                    ->set("Q", options.quality)
                                    ->set("strip", true)
                                    ->set("interlace", options.progressive)
                                    ->set("subsample_mode", options.subsampled ? VIPS_FOREIGN_SUBSAMPLE_ON
                                                                               : VIPS_FOREIGN_SUBSAMPLE_OFF));
    size_t length = 0;
    const void* data = vips_blob_get(blob, &length);
    const QByteArray bytes(static_cast<const char*>(data), static_cast<qsizetype>(length));
    vips_area_unref(VIPS_AREA(blob));
    return bytes;
}

QByteArray WithSegment(const QByteArray& jpeg, uint8_t marker, const QByteArray& payload)
{
    QByteArray segment("\xff");
    segment.append(static_cast<char>(marker));
    AppendBig<uint16_t>(segment, static_cast<uint16_t>(payload.size() + 2));
    return jpeg.left(2) + segment + payload + jpeg.mid(2);
}

QByteArray ExifOrientation(int orientation, bool bigEndian)
{
    QByteArray exif("Exif\0\0", 6);
    const auto append16 = [&](uint16_t number) {
        bigEndian ? AppendBig(exif, number) : AppendLittle(exif, number);
    };
    const auto append32 = [&](uint32_t number) {
        bigEndian ? AppendBig(exif, number) : AppendLittle(exif, number);
    };
    exif.append(bigEndian ? "MM" : "II");
    append16(42);
    append32(8); // offset of the directory
    append16(1); // entries
    append16(0x0112);
    append16(3); // SHORT
    append32(1);
    append16(static_cast<uint16_t>(orientation));
    append16(0);
    append32(0); // no further directory
    return exif;
}

QByteArray WithProfile(const QByteArray& jpeg, const QByteArray& profile)
{
    return WithSegment(jpeg, 0xe2, QByteArray("ICC_PROFILE\0\1\1", 14) + profile);
}

QByteArray IccProfileOf(const ColourSpace& space)
{
    const auto& m = space.matrix;
    const std::pair<const char*, QByteArray> tags[] = {
        {"desc", TextTags("desc")},
        {"cprt", TextTags("text")},
        {"wtpt", XyzTag(0.9642, 1, 0.8249)},
        {"rXYZ", XyzTag(m[0][0], m[1][0], m[2][0])},
        {"gXYZ", XyzTag(m[0][1], m[1][1], m[2][1])},
        {"bXYZ", XyzTag(m[0][2], m[1][2], m[2][2])},
        {"rTRC", CurveTag(space.gamma)},
        {"gTRC", CurveTag(space.gamma)},
        {"bTRC", CurveTag(space.gamma)},
    };
    QByteArray table;
    QByteArray data;
    const uint32_t dataStart = 128 + 4 + 12 * static_cast<uint32_t>(std::size(tags));
    AppendBig<uint32_t>(table, static_cast<uint32_t>(std::size(tags)));
    for (const auto& [name, content] : tags) {
        table.append(name, 4);
        AppendBig<uint32_t>(table, dataStart + static_cast<uint32_t>(data.size()));
        AppendBig<uint32_t>(table, static_cast<uint32_t>(content.size()));
        data += content;
    }
    QByteArray header;
    AppendBig<uint32_t>(header, dataStart + static_cast<uint32_t>(data.size()));
    header.append(4, '\0');
    AppendBig<uint32_t>(header, 0x02100000);
    header.append("mntrRGB XYZ ");
    for (const uint16_t part : {2020, 1, 1, 0, 0, 0}) {
        AppendBig<uint16_t>(header, part);
    }
    header.append("acsp");
    header.append(28, '\0');
    AppendFixed(header, 0.9642);
    AppendFixed(header, 1);
    AppendFixed(header, 0.8249);
    header.append(128 - header.size(), '\0');
    return header + table + data;
}

Colour ToStandardRgb(const ColourSpace& space, const Colour& colour)
{
    std::array<double, 3> xyz{};
    for (int row = 0; row < 3; ++row) {
        for (int c = 0; c < 3; ++c) {
            xyz[row] += space.matrix[row][c] * ToLinear(space.gamma, colour[c] / 255.0);
        }
    }
    const std::array<double, 3> linear = Solve(standardRgb.matrix, xyz);
    return {ToByte(255 * FromLinear(linear[0])), ToByte(255 * FromLinear(linear[1])),
            ToByte(255 * FromLinear(linear[2])), colour[3]};
}

QByteArray BmpOf(QSize size, const Painter& painter)
{
    const int rowBytes = (size.width() * 3 + 3) / 4 * 4;
    QByteArray bytes("BM");
    AppendLittle<uint32_t>(bytes, static_cast<uint32_t>(54 + rowBytes * size.height()));
    AppendLittle<uint32_t>(bytes, 0);
    AppendLittle<uint32_t>(bytes, 54);
    AppendLittle<uint32_t>(bytes, 40);
    AppendLittle<int32_t>(bytes, size.width());
    AppendLittle<int32_t>(bytes, size.height());
    AppendLittle<uint16_t>(bytes, 1);
    AppendLittle<uint16_t>(bytes, 24);
    bytes.append(24, '\0');
    for (int y = size.height() - 1; y >= 0; --y) {
        QByteArray row;
        for (int x = 0; x < size.width(); ++x) {
            const Colour colour = painter(x, y);
            for (const int c : {2, 1, 0}) {
                row.append(static_cast<char>(colour[c]));
            }
        }
        bytes += row.leftJustified(rowBytes, '\0');
    }
    return bytes;
}

QByteArray PcxOf(QSize size, const Painter& painter)
{
    const int rowBytes = size.width() + size.width() % 2;
    QByteArray bytes("\x0a\x05\x01\x08", 4);
    for (const int number : {0, 0, size.width() - 1, size.height() - 1, 72, 72}) {
        AppendLittle<uint16_t>(bytes, static_cast<uint16_t>(number));
    }
    bytes.append(48 + 1, '\0');
    bytes.append('\x03');
    AppendLittle<uint16_t>(bytes, static_cast<uint16_t>(rowBytes));
    AppendLittle<uint16_t>(bytes, 1);
    bytes.append(128 - bytes.size(), '\0');
    for (int y = 0; y < size.height(); ++y) {
        for (int plane = 0; plane < 3; ++plane) {
            for (int x = 0; x < rowBytes; ++x) {
                const int value = painter(std::min(x, size.width() - 1), y)[plane];
                if (value >= 0xc0) {
                    bytes.append('\xc1'); // a run of one
                }
                bytes.append(static_cast<char>(value));
            }
        }
    }
    return bytes;
}

CImage Opened(const CScratchFolder& folder, const QByteArray& bytes, const QString& name)
{
    return CImage::FromFile(folder.Write(name, bytes));
}
