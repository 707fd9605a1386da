#include <map>

#include <QFile>
#include <QStringList>

#include "resources/StringTable.h"

// The numbers of texts against the list that pins them. Translations know a text by its number alone, so a
// number that moved, or was used again, would show a person another sentence.

namespace {

struct PinnedText {
    int number;
    QString name;
    bool retired; // no text has it any longer, and none gets it again
};

QStringList ReadLines()
{
    QFile file(QStringLiteral(PINNED_NUMBERS));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// "NUMBER NAME" or "NUMBER NAME retired".
std::optional<PinnedText> ParseLine(const QString& line)
{
    const QStringList parts = line.split(QLatin1Char(' '));
    bool isNumber = false;
    const int number = parts[0].toInt(&isNumber);
    const bool retired = parts.size() == 3 && parts[2] == QStringLiteral("retired");
    return isNumber && (parts.size() == 2 || retired)
               ? std::optional(PinnedText{number, parts.value(1), retired})
               : std::nullopt;
}

QString Numbered(const char* text, int number, const QString& name)
{
    return QString::fromLatin1(text).arg(number).arg(name);
}

std::map<int, PinnedText> Pins(const QStringList& lines, QStringList& faults)
{
    std::map<int, PinnedText> pins;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const auto pin = ParseLine(line);
        if (!pin) {
            faults += QStringLiteral("not \"NUMBER NAME\": ") + line;
        } else if (!pins.emplace(pin->number, *pin).second) {
            faults += Numbered("%1 %2: the number has a line already", pin->number, pin->name);
        }
    }
    return pins;
}

// What is wrong between a list and a table; empty if they agree.
QStringList FindFaults(const QStringList& lines, const std::vector<TextRow>& rows)
{
    QStringList faults;
    std::map<int, PinnedText> pins = Pins(lines, faults);
    for (const TextRow& row : rows) {
        const int number = static_cast<int>(row.id);
        const QString name = QString::fromLatin1(row.name);
        const auto pin = pins.find(number);
        if (pin == pins.end()) {
            faults += Numbered("%1 %2: append a line for the new text", number, name);
            continue;
        }
        if (pin->second.retired || pin->second.name != name) {
            faults += Numbered("%1 %2: the number belongs to %3", number, name).arg(pin->second.name);
        }
        pins.erase(pin);
    }
    for (const auto& [number, pin] : pins) {
        if (!pin.retired) {
            faults +=
                Numbered("%1 %2: there is no such text; if it went, its line says retired", number, pin.name);
        }
    }
    return faults;
}

std::vector<TextRow> AllRows()
{
    const auto rows = GetTextRows();
    return {rows.begin(), rows.end()};
}

} // namespace

TEST(TextNumbers, AreThoseOfTheList)
{
    const QStringList lines = ReadLines();
    ASSERT_GT(lines.size(), 400);
    EXPECT_EQ(FindFaults(lines, AllRows()).join(QLatin1Char('\n')), QString());
}

TEST(TextNumbers, AChangedOrRepeatedNumberIsFound)
{
    const StringId one = static_cast<StringId>(1);
    const StringId two = static_cast<StringId>(2);
    const struct {
        QStringList lines;
        std::vector<TextRow> rows;
        const char* fault;
    } cases[] = {
        {{"# words", "1 One", "2 Two"}, {{one, "One", ""}, {two, "Two", ""}}, ""},
        {{"1 One", "2 Two retired"}, {{one, "One", ""}}, ""},
        {{"1 One"}, {{one, "One", ""}, {two, "Two", ""}}, "2 Two: append a line for the new text"},
        {{"1 One", "2 Two"},
         {{one, "Two", ""}, {two, "One", ""}},
         "1 Two: the number belongs to One\n2 One: the number belongs to Two"},
        {{"1 One", "2 Two retired"},
         {{one, "One", ""}, {two, "Two", ""}},
         "2 Two: the number belongs to Two"},
        {{"1 One", "2 Two"},
         {{one, "One", ""}},
         "2 Two: there is no such text; if it went, its line says retired"},
        {{"1 One", "1 Other"}, {{one, "One", ""}}, "1 Other: the number has a line already"},
        {{"1 One", "2 Two gone"}, {{one, "One", ""}}, "not \"NUMBER NAME\": 2 Two gone"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(FindFaults(each.lines, each.rows).join(QLatin1Char('\n')), QString::fromLatin1(each.fault));
    }
}
