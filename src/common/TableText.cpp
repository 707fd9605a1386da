#include "common/TableText.h"

namespace {

constexpr QChar Tab = u'\t';
constexpr QChar LineEnd = u'\n';
constexpr QChar Quote = u'"';

bool EndsCell(const QString& text, qsizetype place)
{
    return place >= text.size() || text.at(place) == Tab || text.at(place) == LineEnd;
}

// Where the cell that a quotation mark opens is closed; -1 if it isn't, or if more of the cell comes after
// it.
qsizetype FindClosingQuote(const QString& text, qsizetype opening)
{
    for (qsizetype place = opening + 1; (place = text.indexOf(Quote, place)) >= 0; place += 2) {
        const bool isDoubled = place + 1 < text.size() && text.at(place + 1) == Quote;
        if (!isDoubled) {
            return EndsCell(text, place + 1) ? place : -1;
        }
    }
    return -1;
}

// Moves the place to the end of the cell that begins there.
QString TakeCell(const QString& text, qsizetype& place)
{
    const qsizetype begin = place;
    const qsizetype closing =
        begin < text.size() && text.at(begin) == Quote ? FindClosingQuote(text, begin) : -1;
    if (closing >= 0) {
        place = closing + 1;
        return text.mid(begin + 1, closing - begin - 1).replace(QStringLiteral("\"\""), QString(Quote));
    }
    while (!EndsCell(text, place)) {
        ++place;
    }
    return text.mid(begin, place - begin);
}

QString WithPlainLineEnds(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), LineEnd);
}

QString WriteCell(const QString& cell)
{
    if (!cell.contains(Tab) && !cell.contains(LineEnd) && !cell.contains(Quote)) {
        return cell;
    }
    return Quote + QString(cell).replace(Quote, QStringLiteral("\"\"")) + Quote;
}

} // namespace

QList<QStringList> ReadTable(const QString& text)
{
    const QString plain = WithPlainLineEnds(text);
    QList<QStringList> rows;
    qsizetype place = 0;
    while (place < plain.size()) {
        QStringList row = {TakeCell(plain, place)};
        while (place < plain.size() && plain.at(place) == Tab) {
            row += TakeCell(plain, ++place);
        }
        rows += row;
        ++place; // the line end
    }
    return rows;
}

QString WriteTable(const QList<QStringList>& rows)
{
    QStringList lines;
    for (const QStringList& row : rows) {
        QStringList cells;
        for (const QString& cell : row) {
            cells += WriteCell(cell);
        }
        lines += cells.join(Tab);
    }
    return lines.join(LineEnd);
}
