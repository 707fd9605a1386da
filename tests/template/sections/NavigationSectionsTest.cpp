#include "template/sections/NavigationSections.h"

#include "PageRun.h"

namespace {

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
