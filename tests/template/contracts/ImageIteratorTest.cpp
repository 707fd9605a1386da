#include "template/contracts/ImageIterator.h"

TEST(SizeClass, FollowsTheLongerSide)
{
    const struct {
        int32_t width, height;
        int expected;
    } rows[] = {
        {199, 199, 0}, {199, 200, 1}, {200, 199, 1}, {199, 599, 1}, {599, 599, 1},
        {199, 700, 2}, {600, 1, 2},   {0, 0, 0},     {-5, -5, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetSizeClass(row.width, row.height), row.expected) << row.width << ' ' << row.height;
    }
}
