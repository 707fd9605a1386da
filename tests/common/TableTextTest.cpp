#include "common/TableText.h"

#include <gtest/gtest.h>

namespace {

// "[a|b][c]"
std::string Shown(const QList<QStringList>& rows)
{
    QString shown;
    for (const QStringList& row : rows) {
        shown += QLatin1Char('[') + row.join(QLatin1Char('|')) + QLatin1Char(']');
    }
    return shown.replace(QLatin1Char('\n'), QStringLiteral("\\n")).toStdString();
}

} // namespace

TEST(TableText, IsReadAsTableProgramsWriteIt)
{
    const struct {
        const char* text;
        const char* rows;
    } rows[] = {
        {"", ""},
        {"a", "[a]"},
        {"a\tb", "[a|b]"},
        {"a\tb\nc\td", "[a|b][c|d]"},
        {"a\tb\nc\td\n", "[a|b][c|d]"},
        {"a\r\nb\r\n", "[a][b]"},
        {"a\rb\r", "[a][b]"},
        {"a\n\nb", "[a][][b]"},
        {"a\n\n", "[a][]"},
        {"\n", "[]"},
        {"\t", "[|]"},
        {"\ta\t", "[|a|]"},
        {"a\tb\nc", "[a|b][c]"},
        // Quoted cells.
        {"\"a\"", "[a]"},
        {"\"\"", "[]"},
        {"\"a\nb\"\tc", "[a\\nb|c]"},
        {"\"a\r\nb\"\r\nc", "[a\\nb][c]"},
        {"\"a\tb\"\tc", "[a\tb|c]"},
        {"\"say \"\"hi\"\"\"", "[say \"hi\"]"},
        {"\"\"\"\"", "[\"]"},
        {"x\t\"a\n\nb\"\ny", "[x|a\\n\\nb][y]"},
        {"\"a\"\n\"b\"\n", "[a][b]"},
        // Quotation marks of plain text.
        {"a \"b\" c", "[a \"b\" c]"},
        {"\"a\" b", "[\"a\" b]"},
        {"\"a\nb", "[\"a][b]"},
        {"\"a\" b\n\"c\"", "[\"a\" b][c]"},
        {"\"", "[\"]"},
        {"a\"", "[a\"]"},
        {"12\"\tb", "[12\"|b]"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Shown(ReadTable(QString::fromLatin1(row.text))), row.rows) << row.text;
    }
}

TEST(TableText, IsWrittenAsTableProgramsReadIt)
{
    const struct {
        QList<QStringList> rows;
        const char* text;
    } rows[] = {
        {{}, ""},
        {{{"a"}}, "a"},
        {{{"a", "b"}, {"", "d"}}, "a\tb\n\td"},
        {{{"a\nb", "c"}}, "\"a\nb\"\tc"},
        {{{"say \"hi\""}}, "\"say \"\"hi\"\"\""},
        {{{"a\tb"}}, "\"a\tb\""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WriteTable(row.rows).toStdString(), row.text);
    }
}

TEST(TableText, WhatIsWrittenIsReadAgain)
{
    const QList<QStringList> rows = {
        {"plain", "two\nlines", "a \"word\""}, {"\"", "\"\"", "\t"}, {"", "", ""}, {"\n", " ", "ü"}};
    EXPECT_EQ(ReadTable(WriteTable(rows)), rows);
}
