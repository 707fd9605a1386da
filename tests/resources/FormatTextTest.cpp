#include "resources/FormatText.h"

TEST(FormatText, FillsPlaceholdersInOrder)
{
    const struct {
        const char* format;
        QString expected;
    } rows[] = {
        {"Could not copy file %s to %s.", QStringLiteral("Could not copy file a to b%s.")},
        {"%d%%", QStringLiteral("a%")},
        {"<%%=object.%hs%%>", QStringLiteral("<%=object.a%>")},
        {"'%hc' and %q", QStringLiteral("'a' and %q")},
        {"%s %s %s", QStringLiteral("a b%s %s")},
        {"ends in %", QStringLiteral("ends in %")},
    };
    for (const auto& row : rows) {
        // A placeholder inside an argument is no placeholder.
        EXPECT_EQ(FormatText(QString::fromLatin1(row.format), {"a", "b%s"}), row.expected) << row.format;
    }
}

TEST(FormatText, NamedArgumentsStandInAnyOrder)
{
    const struct {
        const char* format;
        QString expected;
    } rows[] = {
        {"%2$s in %1$s", QStringLiteral("two in one")},
        {"%1$hs, %1$hs", QStringLiteral("one, one")},
        {"%3$s", QStringLiteral("%3$s")},
        {"%2$q", QStringLiteral("%2$q")},
        {"%0$s", QStringLiteral("%0$s")},
        {"%2$", QStringLiteral("%2$")},
        {"%2$s, then %s", QStringLiteral("two, then one")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FormatText(QString::fromLatin1(row.format), {"one", "two"}), row.expected) << row.format;
    }
}

TEST(FormatText, OnlyNumbersAreKnownAsNumbers)
{
    EXPECT_EQ(CFormatArgument(7).GetNumber(), 7);
    EXPECT_EQ(CFormatArgument("7").GetNumber(), std::nullopt);
}

TEST(FormatText, ATranslationFitsIfItShowsTheSameThings)
{
    const struct {
        const char* original;
        const char* translation;
        bool fits;
    } rows[] = {
        {"Delete", "Fort damit: 100%", true},
        {"Delete", "%s", false},
        {"No file %s.", "Die Datei %s fehlt.", true},
        {"No file %s.", "Die Datei fehlt.", false},
        {"No file %s.", "Die Dateien %s und %s fehlen.", false},
        {"No file %s.", "Die Datei %d fehlt.", false},
        {"No file %s.", "Die Datei %1$s fehlt, %1$s!", true},
        {"No file %s.", "Die Datei %%s fehlt.", false},
        {"%s to %s", "nach %2$s von %1$s", true},
        {"%s to %s", "nach %2$s", false},
        {"%d pictures", "ein Bild", true},
        {"%d pictures", "%s Bilder", false},
        {"%d pictures in %s", "ein Bild in %2$s", true},
        {"%d pictures in %s", "ein Bild in %s", false},
        {"'%hc' in %hs", "%2$hs: '%1$hc'", true},
        {"code %x", "Kennzahl", false},
        {"%s", "%1$s, %1$d", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FitsPlaceholders(QString::fromLatin1(row.translation), QString::fromLatin1(row.original)),
                  row.fits)
            << row.original << " / " << row.translation;
    }
}
