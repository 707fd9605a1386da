#include "shell/dialogs/StampValues.h"

#include <cstdlib>

#include <QFontDatabase>
#include <QStringList>

namespace {

enum StyleBit { Bold = 1, Italic = 2, Underline = 4, StrikeOut = 8 };

constexpr int32_t NormalWeight = 400;
constexpr int32_t BoldWeight = 700;
constexpr qsizetype MaxFaceName = 32;

// Of every screen, so that the same choice gives the same number on each.
constexpr double PixelsPerPoint = 96.0 / 72.0;

bool IsSlanted(const QString& family, const QString& style)
{
    return QFontDatabase::italic(family, style) || style.contains(QStringLiteral("Oblique"));
}

// The family's own name for a style ("Book", "Oblique"). Without it the font dialog would begin
// with any style.
QString FindStyleName(const LogFont& font)
{
    const int weight = font.weight > NormalWeight ? BoldWeight : NormalWeight;
    for (const QString& style : QFontDatabase::styles(font.faceName)) {
        if (QFontDatabase::weight(font.faceName, style) == weight &&
            IsSlanted(font.faceName, style) == font.italic && !style.contains(QStringLiteral("Condensed"))) {
            return style;
        }
    }
    return {};
}

} // namespace

QColor ToQColor(uint32_t colour)
{
    return QColor(static_cast<int>(colour & 0xff), static_cast<int>(colour >> 8 & 0xff),
                  static_cast<int>(colour >> 16 & 0xff));
}

uint32_t FromQColor(const QColor& colour)
{
    return static_cast<uint32_t>(colour.red()) | static_cast<uint32_t>(colour.green()) << 8 |
           static_cast<uint32_t>(colour.blue()) << 16;
}

LogFont LogFontOf(const CTextStampParams& params)
{
    return {.height = -params.font_size,
            .weight = params.font_style & Bold ? BoldWeight : NormalWeight,
            .italic = (params.font_style & Italic) != 0,
            .underline = (params.font_style & Underline) != 0,
            .strikeOut = (params.font_style & StrikeOut) != 0,
            .faceName = params.font.left(MaxFaceName)};
}

void StoreLogFont(const LogFont& font, CTextStampParams& params)
{
    params.font = font.faceName;
    params.font_size = std::abs(font.height);
    params.font_style = (font.weight > NormalWeight ? Bold : 0) | (font.italic ? Italic : 0) |
                        (font.underline ? Underline : 0) | (font.strikeOut ? StrikeOut : 0);
}

QFont ToQFont(const LogFont& font)
{
    QFont shown(font.faceName);
    shown.setPointSizeF(qMax(1.0, std::abs(font.height) / PixelsPerPoint));
    shown.setWeight(font.weight > NormalWeight ? QFont::Bold : QFont::Normal);
    shown.setItalic(font.italic);
    shown.setStyleName(FindStyleName(font));
    shown.setUnderline(font.underline);
    shown.setStrikeOut(font.strikeOut);
    return shown;
}

LogFont FromQFont(const QFont& font)
{
    const int height = font.pixelSize() > 0 ? font.pixelSize() : qRound(font.pointSizeF() * PixelsPerPoint);
    return {.height = -height,
            .weight = font.weight(),
            .italic = font.italic(),
            .underline = font.underline(),
            .strikeOut = font.strikeOut(),
            .faceName = font.family().left(MaxFaceName)};
}
