#include <gtest/gtest.h>

#include "SiteHistory.h"

// Whatever happens to a site on its way to a server and there: visitors always find it whole, and the next
// run goes on. VISTORAMA_SITE_HISTORIES=100000 tells so many, VISTORAMA_SITE_HISTORY=SEED one of them again.

namespace {

void TellAll(size_t sessions, int usualCount)
{
    constexpr int steps = 14;
    const int wanted = qEnvironmentVariableIntValue("VISTORAMA_SITE_HISTORIES");
    const int one = qEnvironmentVariableIntValue("VISTORAMA_SITE_HISTORY");
    const int first = one > 0 ? one : 1;
    const int last = one > 0 ? one : wanted > 0 ? wanted : usualCount;
    int failed = 0;
    for (int seed = first; seed <= last && failed < 5; ++seed) {
        const std::string wrong =
            CSiteHistory({.seed = static_cast<uint32_t>(seed), .sessions = sessions, .isTold = one > 0})
                .Tell(steps);
        EXPECT_EQ(wrong, "") << "seed " << seed;
        failed += wrong.empty() ? 0 : 1;
    }
}

} // namespace

TEST(SiteHistories, LeaveTheSiteWholeAndSendNothingTwice)
{
    TellAll(1, 600);
}

// The order of what happens is another one each time.
TEST(SiteHistories, DoSoOverSeveralSessions)
{
    TellAll(4, 150);
}
