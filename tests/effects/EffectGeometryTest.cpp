#include "effects/EffectGeometry.h"

#include <limits>
#include <ostream>

namespace {

constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

} // namespace

TEST(EffectGeometry, FitsKeepingProportionsAndTruncating)
{
    const struct {
        QSize picture, box, expected;
    } rows[] = {
        {{1600, 1200}, {800, 600}, {800, 600}}, {{1000, 700}, {640, 480}, {640, 448}},
        {{700, 1000}, {640, 480}, {336, 480}},  {{333, 500}, {200, 150}, {99, 150}}, // 99.9 is 99
        {{700, 300}, {640, 480}, {640, 274}},   {{100, 100}, {640, 480}, {480, 480}},
        {{1000, 1000}, {100, 75}, {75, 75}},    {{10000, 1}, {100, 100}, {100, 0}},
        {{1, 10000}, {100, 100}, {0, 100}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FittedSize(row.picture, row.box), row.expected)
            << row.picture.width() << " " << row.box.width();
    }
}

TEST(EffectGeometry, FillsKeepingProportionsAndTruncating)
{
    const struct {
        QSize picture, box, expected;
    } rows[] = {
        {{1600, 1200}, {800, 600}, {800, 600}}, {{1000, 700}, {640, 480}, {685, 480}},
        {{3000, 2000}, {394, 600}, {900, 600}}, {{700, 1000}, {640, 480}, {640, 914}},
        {{100, 100}, {640, 480}, {640, 640}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FilledSize(row.picture, row.box), row.expected)
            << row.picture.width() << " " << row.box.width();
    }
}

TEST(EffectGeometry, DegenerateSizesGiveANumber)
{
    const struct {
        QSize picture, box, fitted, filled;
    } rows[] = {
        {{0, 0}, {640, 480}, {0, 480}, {640, largest}},
        {{5, 0}, {640, 480}, {0, 480}, {640, largest}},
        {{0, 5}, {640, 480}, {0, 480}, {640, largest}},
        {{100, 50}, {0, 0}, {0, 0}, {0, 0}},
        {{100, 50}, {640, 0}, {640, 320}, {0, 0}},
        {{100, 50}, {0, 480}, {0, 0}, {960, 480}},
        {{100, 50}, {-10, 20}, {-10, -5}, {40, 20}},
        {{100, 50}, {-20, -5}, {-10, -5}, {-20, -10}},
        {{0, 0}, {0, 0}, {0, 0}, {0, 0}},
        {{0, 0}, {-4, 3}, {-4, smallest}, {0, 3}},
        {{largest, 1}, {largest, largest}, {largest, 1}, {largest, largest}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FittedSize(row.picture, row.box), row.fitted)
            << row.picture.width() << " " << row.box.width();
        EXPECT_EQ(FilledSize(row.picture, row.box), row.filled)
            << row.picture.width() << " " << row.box.width();
    }
}

TEST(EffectGeometry, FitsIntoComparesBothDirections)
{
    EXPECT_TRUE(FitsInto({640, 480}, {640, 480}));
    EXPECT_TRUE(FitsInto({0, 0}, {640, 480}));
    EXPECT_FALSE(FitsInto({641, 480}, {640, 480}));
    EXPECT_FALSE(FitsInto({640, 481}, {640, 480}));
    EXPECT_FALSE(FitsInto({0, 0}, {-1, 5}));
}
