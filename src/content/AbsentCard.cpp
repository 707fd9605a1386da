#include "content/AbsentCard.h"

#include <algorithm>

#include <QPointF>
#include <QUrl>

#include "resources/StringTable.h"

namespace {

// Pixels. Layouts show many pictures smaller than their slots are, so letters grow with the slot.
constexpr int smallestLetters = 9;
constexpr int largestLetters = 44;
constexpr int margin = 8;
constexpr int smallestWithText = 64; // both sides: below it only the drawing fits

// Of a plain letter in a sans-serif face, as a share of its height; rounded up.
constexpr double letterWidth = 0.62;

int WidthOf(uint character)
{
    return character < 0x1100 ? 1 : 2;
}

// The first units of the text that fit, or the last ones. Never half a pair of surrogates.
QString Fitting(const QString& text, int width, bool fromTheEnd)
{
    QList<uint> characters = text.toUcs4();
    if (fromTheEnd) {
        std::reverse(characters.begin(), characters.end());
    }
    qsizetype count = 0;
    while (count < characters.size() && WidthOf(characters[count]) <= width) {
        width -= WidthOf(characters[count++]);
    }
    characters.resize(count);
    if (fromTheEnd) {
        std::reverse(characters.begin(), characters.end());
    }
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()), characters.size());
}

// A mountain and a sun in a frame, crossed out; 24 by 24 units around the place.
QString Symbol(QPointF place, double scale)
{
    return QStringLiteral(
               "<g transform=\"translate(%1 %2) scale(%3) translate(-12 -12)\" fill=\"none\" "
               "stroke=\"#8a8f98\" stroke-width=\"1.5\" stroke-linecap=\"round\" "
               "stroke-linejoin=\"round\"><rect x=\"3\" y=\"5\" width=\"18\" height=\"14\" rx=\"2\"/>"
               "<circle cx=\"8.5\" cy=\"9.5\" r=\"1.5\"/><path d=\"M4 17l5-4 3 2.5 4-4.5 4 4M3 3l18 18\"/>"
               "</g>")
        .arg(place.x())
        .arg(place.y())
        .arg(scale);
}

QString TextLine(const QString& text, QPointF place, const QString& look)
{
    return QStringLiteral(
               "<text x=\"%1\" y=\"%2\" text-anchor=\"middle\" font-family=\"sans-serif\" %3>%4</text>")
        .arg(place.x())
        .arg(place.y())
        .arg(look, text.toHtmlEscaped());
}

// The symbol, the name and what is the matter, one below the other around the middle.
QString Inside(const QString& fileName, QSize slot)
{
    const QPointF middle(slot.width() / 2.0, slot.height() / 2.0);
    const int side = std::min(slot.width(), slot.height());
    if (side < smallestWithText) {
        return Symbol(middle, std::max(side - 2 * margin, margin) / 24.0);
    }
    const int letters = std::clamp(side / 12, smallestLetters, largestLetters);
    const int width = static_cast<int>((slot.width() - 2 * margin) / (letters * letterWidth));
    const QString size = QStringLiteral("font-size=\"%1\" fill=\"%2\"").arg(letters);
    return Symbol({middle.x(), middle.y() - 1.5 * letters}, letters * 2.4 / 24) +
           TextLine(CutInTheMiddle(fileName, width), {middle.x(), middle.y() + 1.3 * letters},
                    size.arg(QStringLiteral("#3c4149"))) +
           TextLine(CutInTheMiddle(Text(StringId::PictureNotThere), width),
                    {middle.x(), middle.y() + 2.7 * letters}, size.arg(QStringLiteral("#6b717b")));
}

} // namespace

QString CutInTheMiddle(const QString& text, int width)
{
    int wanted = 0;
    for (const uint character : text.toUcs4()) {
        wanted += WidthOf(character);
    }
    if (wanted <= width) {
        return text;
    }
    const int kept = std::max(width - 1, 0);
    // The end of a name has its number and its ending.
    return Fitting(text, kept - kept / 2, false) + QChar(0x2026) + Fitting(text, kept / 2, true);
}

std::string MakeAbsentCard(const QString& fileName, QSize slot)
{
    const QSize size = slot.expandedTo({1, 1});
    const QString drawing =
        QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                       "viewBox=\"0 0 %1 %2\"><rect width=\"%1\" height=\"%2\" fill=\"#eceef1\"/>")
            .arg(size.width())
            .arg(size.height()) +
        Inside(fileName, size) + QStringLiteral("</svg>");
    return "data:image/svg+xml," + QUrl::toPercentEncoding(drawing).toStdString();
}
