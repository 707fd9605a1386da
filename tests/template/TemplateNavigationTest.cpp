#include "PageRun.h"
#include "template/contracts/NavigationWindow.h"
#include "template/sections/TemplateSectionRelativePage.h"

namespace {

constexpr uint32_t Negative = static_cast<uint32_t>(-1);
constexpr uint32_t Smallest = 0x80000000u;

std::string Position(const std::string& keyword, const std::string& position)
{
    return "<%" + keyword + " position=\"" + position + "\"%>";
}

struct PositionRow {
    const char* position;
    int32_t page;
    int32_t pageCount;
    const char* expected;
};

void CheckPosition(const std::string& keyword, const PositionRow& row)
{
    CTestIterator iterator;
    iterator.forcedPageCount = row.pageCount;
    EXPECT_EQ(Generated(Position(keyword, row.position), iterator, row.page), row.expected)
        << row.position << " on " << row.page << " of " << row.pageCount;
}

} // namespace

TEST(NavigationWindow, ListsThePagesAroundTheCurrentOne)
{
    const struct {
        uint32_t max, current, total, first, end;
    } rows[] = {
        {5, 0, 20, 0, 5},
        {5, 1, 20, 0, 5},
        {5, 10, 20, 8, 13},
        {5, 18, 20, 15, 20},
        {5, 19, 20, 15, 20},
        {5, 3, 20, 2, 7},
        {5, 4, 20, 3, 8},
        {5, 17, 20, 14, 19},
        // As many pages as the row takes, or fewer.
        {5, 0, 5, 0, 5},
        {5, 4, 5, 0, 5},
        {6, 4, 5, 0, 5},
        {1, 0, 1, 0, 1},
        {9, 0, 1, 0, 1},
        // One place shows the neighbour, not the page itself.
        {1, 3, 5, 2, 3},
        {1, 1, 5, 0, 1},
        {1, 4, 5, 3, 4},
        {1, 0, 5, 1, 2},
        // Two places.
        {2, 3, 5, 3, 5},
        {2, 0, 5, 0, 2},
        {2, 1, 5, 0, 2},
        {2, 2, 5, 1, 3},
        {2, 4, 5, 3, 5},
        {3, 2, 4, 1, 4},
        // A negative count is a huge one: all pages.
        {Negative, 0, 20, 0, 20},
        {Negative, 19, 20, 0, 20},
        {Smallest, 7, 20, 0, 20},
        // No pages, no row.
        {5, 0, 0, 0, 0},
        {0, 0, 0, 0, 0},
        {5, 3, 0, 0, 0},
        {0, 0, 5, 0, 0},
        {0, 3, 5, 2, 2},
        // A current page outside the gallery.
        {5, 25, 20, 15, 20},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FirstPageOfWindow(row.max, row.current, row.total), row.first)
            << row.max << ' ' << row.current << ' ' << row.total;
        EXPECT_EQ(EndOfWindow(row.max, row.current, row.total), row.end)
            << row.max << ' ' << row.current << ' ' << row.total;
    }
}

TEST(NavigationWindow, IsAlwaysFullAndInsideTheGallery)
{
    for (uint32_t total = 0; total <= 40; ++total) {
        for (uint32_t max = 1; max <= 42; ++max) {
            for (uint32_t current = 0; current < total; ++current) {
                const uint32_t first = FirstPageOfWindow(max, current, total);
                const uint32_t end = EndOfWindow(max, current, total);
                EXPECT_LE(end, total);
                EXPECT_EQ(end - first, std::min(max, total));
                if (max > 1) {
                    EXPECT_TRUE(first <= current && current < end) << max << ' ' << current << ' ' << total;
                }
            }
        }
    }
}

TEST(NavigationWindow, SurvivesEveryCombinationOfExtremes)
{
    const uint32_t values[] = {
        0, 1, 2, 3, 65'535, 65'536, 100'000, Smallest - 1, Smallest, Negative - 1, Negative};
    for (const uint32_t max : values) {
        for (const uint32_t current : values) {
            for (const uint32_t total : values) {
                EXPECT_LE(EndOfWindow(max, current, total), total);
            }
        }
    }
}

TEST(TemplateNavigation, HandsTheCountOverAsANumber)
{
    const struct {
        const char* count;
        const char* expected;
    } rows[] = {
        {"5", "5"}, {"0", "0"}, {"many", "0"}, {"", "0"}, {"-1", "-1"}, {" 7 pages", "7"},
    };
    for (const auto& row : rows) {
        const std::string page =
            "<%navigationtable max_pages_count=\"" + std::string(row.count) +
            R"(" page_image_selected="s" previous_image="p" next_image="n" page_image="i" first_image="f")"
            R"( last_image="l" previous_page_alt="pa" next_page_alt="na" page_alt="%number%" )"
            R"(first_page_alt="fa" last_page_alt="la"%>)";
        EXPECT_EQ(Generated(page),
                  "{navigationtable " + std::string(row.expected) + "|p|n|i|s|f|l|pa|na|%number%|fa|la}");
    }
}

TEST(TemplateNavigation, RelativePageGoesRoundTheRing)
{
    const PositionRow rows[] = {
        {"1", 0, 3, "index1.html"},
        {"-1", 2, 3, "index1.html"},
        {"0", 2, 3, "index2.html"},
        {"1", 2, 3, "index.html"},
        {"-1", 0, 3, "index2.html"},
        {"5", 1, 3, "index.html"}, // no remainder is kept
        {"-5", 1, 3, "index2.html"},
        {"1", 0, 1, "index.html"},
        {"-1", 0, 1, "index.html"},
        {"1", 0, 0, "index.html"},
        {"-1", 0, 0, "index.html"},
        {"0", 0, 0, "index.html"},
        {"abc", 1, 3, "index1.html"},
        {"", 1, 3, "index1.html"},
        {" +1", 0, 3, "index1.html"},
        {"2147483647", 2, 3, "index.html"},
        {"99999999999", 2, 3, "index.html"},
        {"-2147483648", 2, 3, "index2.html"},
        {"-99999999999", 0, 3, "index2.html"},
        {"<%=page.number%>", 0, 3, "index1.html"},
    };
    for (const PositionRow& row : rows) {
        CheckPosition("relative_page", row);
    }
}

TEST(TemplateNavigation, RelativePageBlockGoesInWholeBlocks)
{
    const PositionRow rows[] = {
        {"5", 7, 20, "index10.html"},
        {"-5", 7, 20, "index4.html"},
        {"5", 5, 20, "index10.html"},
        {"-5", 5, 20, "index4.html"},
        {"5", 9, 20, "index10.html"},
        {"-5", 9, 20, "index4.html"},
        {"5", 17, 20, "index.html"},
        {"-5", 3, 20, "index19.html"},
        {"1", 7, 20, "index8.html"},
        {"-1", 7, 20, "index6.html"},
        {"0", 7, 20, "index7.html"}, // the current page
        {"x", 7, 20, "index7.html"},
        {"0", 0, 0, "index.html"},
        {"5", 0, 0, "index.html"},
        {"-5", 0, 0, "index.html"},
        {"2147483647", 7, 20, "index.html"},
        {"-2147483647", 7, 20, "index19.html"},
        {"-2147483648", 7, 20, "index19.html"},
    };
    for (const PositionRow& row : rows) {
        CheckPosition("relative_page_block", row);
    }
}

TEST(TemplateNavigation, RelativePagesWorkInAttributes)
{
    CTestIterator iterator;
    iterator.forcedPageCount = 3;
    EXPECT_EQ(Generated(R"(<a href="<%relative_page position="1"%>">)", iterator),
              R"(<a href="index1.html">)");
    EXPECT_EQ(Generated(R"(<%advertisement name="<%relative_page position="-1"%>"%>)", iterator),
              "{advertisement index2.html}");
}

TEST(RelativePage, ArithmeticHoldsAtTheEdges)
{
    constexpr int64_t smallest = INT32_MIN;
    constexpr int64_t largest = INT32_MAX;
    EXPECT_EQ(ToRing(largest + largest, INT32_MAX), 0);
    EXPECT_EQ(ToRing(smallest + smallest, INT32_MAX), INT32_MAX - 1);
    EXPECT_EQ(ToRing(-1, 0), 0);
    EXPECT_EQ(ToRing(0, 0), 0);
    EXPECT_EQ(ToRing(0, -1), 0);
    EXPECT_EQ(ToRing(2, 3), 2);
    EXPECT_EQ(ToRing(3, 3), 0);
    EXPECT_EQ(StepByBlock(7, 0), 7);
    EXPECT_EQ(StepByBlock(largest, largest), largest + largest);
    EXPECT_EQ(StepByBlock(0, smallest), -1);
    EXPECT_EQ(StepByBlock(largest, smallest), -1);
}
