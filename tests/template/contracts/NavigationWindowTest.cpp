#include "template/contracts/NavigationWindow.h"

#include <cstdint>

namespace {

constexpr uint32_t Negative = static_cast<uint32_t>(-1);
constexpr uint32_t Smallest = 0x80000000u;

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
