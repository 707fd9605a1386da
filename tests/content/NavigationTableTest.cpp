#include <sstream>

#include "PlainGenerator.h"
#include "common/Text.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "support/ProjectFixture.h"

namespace {

// A gallery of one-picture pages and its navigation table on one of them.
class NavigationTable : public testing::Test {
protected:
    NavigationTable()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"page.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("page.html"), "");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
    }

    void AddPictures(int count)
    {
        for (int i = 0; i < count; ++i) {
            fixture.GetRoot().AddPicture(fixture.scratch.Write(QStringLiteral("photos/%1.jpg").arg(i), "x"));
        }
    }

    std::string Table(int max, int current)
    {
        CGalleryIterator iterator;
        iterator.Init(fixture.GetRoot());
        iterator.Reset();
        iterator.BindPicture(QStringLiteral("photo"));
        iterator.SetPageIndex(current);
        std::ostringstream out;
        CPlainGenerator generator;
        generator.GenerateNavigationTable(iterator,
                                          {.maxPagesCount = max,
                                           .previousImage = "prev",
                                           .nextImage = "next",
                                           .pageImage = "page",
                                           .pageImageSelected = "here",
                                           .firstImage = "first",
                                           .lastImage = "last",
                                           .previousPageAlt = "P%number%",
                                           .nextPageAlt = "N%number%",
                                           .pageAlt = "%title%-%number%-%number%",
                                           .firstPageAlt = "F",
                                           .lastPageAlt = "L"},
                                          out);
        return out.str();
    }

    // The page cells alone, as their page numbers from 0, the current one in brackets.
    std::string Row(int max, int current)
    {
        const QString html = Widen(Table(max, current));
        QStringList row;
        for (const QString& cell : html.split(QStringLiteral("<td>"))) {
            if (cell.contains(QStringLiteral("src=\"here\""))) {
                row += QStringLiteral("[]");
            } else if (cell.contains(QStringLiteral("src=\"page\""))) {
                const QString name = cell.section(QLatin1Char('"'), 1, 1);
                row += QString::number(name.mid(4, name.size() - 9).toInt());
            }
        }
        return Narrow(row.join(QLatin1Char(' ')));
    }

    CProjectFixture fixture;
};

} // namespace

TEST_F(NavigationTable, WritesFirstPreviousRowNextLast)
{
    AddPictures(3);
    fixture.GetRoot().SetPageVariable(QStringLiteral("page"), 2, QStringLiteral("title"),
                                      QStringLiteral("End"));
    EXPECT_EQ(Table(10, 1), "<table cellpadding=\"0\" cellspacing=\"0\" border=\"0\"><tr>\n"
                            "<td><a href=\"page.html\" ><img src=\"first\" alt=\"F\" /></a></td>\n"
                            "<td><a href=\"page.html\" ><img src=\"prev\" alt=\"P1\" /></a></td>\n"
                            "<td><a href=\"page.html\" ><img src=\"page\" alt=\"-1-1\" /></a></td>\n"
                            "<td><img src=\"here\" /></td>\n"
                            "<td><a href=\"page2.html\" ><img src=\"page\" alt=\"End-3-3\" /></a></td>\n"
                            "<td><a href=\"page2.html\" ><img src=\"next\" alt=\"N3\" /></a></td>\n"
                            "<td><a href=\"page2.html\" ><img src=\"last\" alt=\"L\" /></a></td>\n"
                            "</tr></table>\n");
}

TEST_F(NavigationTable, OnOnePageAllButTheRowIsDisabled)
{
    AddPictures(1);
    EXPECT_EQ(Table(5, 0), "<table cellpadding=\"0\" cellspacing=\"0\" border=\"0\"><tr>\n"
                           "<td><img src=\"first\" /></td>\n"
                           "<td><img src=\"prev\" /></td>\n"
                           "<td><img src=\"here\" /></td>\n"
                           "<td><img src=\"next\" /></td>\n"
                           "<td><img src=\"last\" /></td>\n"
                           "</tr></table>\n");
}

TEST_F(NavigationTable, WithoutPagesTheRowIsEmpty)
{
    EXPECT_EQ(Table(5, 0), "<table cellpadding=\"0\" cellspacing=\"0\" border=\"0\"><tr>\n"
                           "<td><img src=\"first\" /></td>\n"
                           "<td><img src=\"prev\" /></td>\n"
                           "<td><img src=\"next\" /></td>\n"
                           "<td><img src=\"last\" /></td>\n"
                           "</tr></table>\n");
}

TEST_F(NavigationTable, WithoutCellsThereIsNoTable)
{
    AddPictures(3);
    EXPECT_EQ(Table(0, 1), "");
}

TEST_F(NavigationTable, TheRowFollowsTheCurrentPage)
{
    AddPictures(20);
    const struct {
        int max;
        int current;
        const char* expected;
    } rows[] = {
        {5, 0, "[] 1 2 3 4"},
        {5, 1, "0 [] 2 3 4"},
        {5, 10, "8 9 [] 11 12"},
        {5, 18, "15 16 17 [] 19"},
        {5, 19, "15 16 17 18 []"},
        {20, 3, "0 1 2 [] 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19"},
        {50, 0, "[] 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19"},
        {-1, 1, "0 [] 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Row(row.max, row.current), row.expected) << row.max << " at " << row.current;
    }
}

TEST_F(NavigationTable, VeryShortRowsKeepTheirOddPlaces)
{
    AddPictures(5);
    // Layouts rely on it: a row of one page shows the neighbour on the left, not the current page.
    EXPECT_EQ(Row(1, 3), "2");
    EXPECT_EQ(Row(2, 3), "[] 4");
}

TEST_F(NavigationTable, ATitleMayBeANumberOrNameTheNumber)
{
    AddPictures(3);
    CGallery& root = fixture.GetRoot();
    root.SetPageVariable(QStringLiteral("page"), 0, QStringLiteral("title"), CVariant(7));
    // The title is put in first, so the number is found in it as well.
    root.SetPageVariable(QStringLiteral("page"), 2, QStringLiteral("title"),
                         CVariant(QStringLiteral("No. %number%")));
    const std::string table = Table(10, 1);
    EXPECT_NE(table.find("alt=\"7-1-1\""), std::string::npos) << table;
    EXPECT_NE(table.find("alt=\"No. 3-3-3\""), std::string::npos) << table;
}
