#include <gtest/gtest.h>

#include "LifeStory.h"

// Nothing that a person has put into a project is ever lost, whatever happens around it.
// VISTORAMA_LIFE_STORIES=10000 tells so many stories, VISTORAMA_LIFE_STORY=SEED one of them again.
TEST(LifeStories, LoseNothing)
{
    CProjectFixture fixture;
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                      "<%picture id=\"a\" width=\"40\" height=\"40\" href=\"\"%>");
    fixture.WriteStyle(QStringLiteral("Plain"));
    constexpr int usualCount = 150;
    constexpr int steps = 40;
    const int wanted = qEnvironmentVariableIntValue("VISTORAMA_LIFE_STORIES");
    const int one = qEnvironmentVariableIntValue("VISTORAMA_LIFE_STORY");
    const int first = one > 0 ? one : 1;
    const int last = one > 0 ? one : wanted > 0 ? wanted : usualCount;
    for (int seed = first; seed <= last; ++seed) {
        const std::string lost = CLifeStory(fixture, static_cast<uint32_t>(seed)).Tell(steps);
        EXPECT_EQ(lost, "") << "seed " << seed;
    }
}
