#include "common/FileIdentity.h"

#include <QFile>
#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

using std::chrono::milliseconds;

int64_t Now()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace

TEST(FileIdentity, OfContentTellsContentsAndNothingElse)
{
    const CScratchFolder scratch;
    QByteArray bytes(100'000, 'a');
    const auto one = FileIdentity::OfContent(scratch.Write(QStringLiteral("one"), bytes));
    const auto copy = FileIdentity::OfContent(scratch.Write(QStringLiteral("folder/two"), bytes));
    EXPECT_EQ(one, copy);
    bytes[30'001] = 'b'; // at none of the places that a sample is taken from
    const auto other = FileIdentity::OfContent(scratch.Write(QStringLiteral("one"), bytes));
    EXPECT_NE(one, other);
    EXPECT_NE(FileIdentity::OfContent(scratch.Write(QStringLiteral("empty"), "")), std::nullopt);
    EXPECT_EQ(FileIdentity::OfContent(scratch.Path(QStringLiteral("gone"))), std::nullopt);
    EXPECT_EQ(FileIdentity::OfContent(scratch.Path()), std::nullopt);
}

TEST(FileIdentity, IsAsYoungAsItsLastChangeOfEitherKind)
{
    constexpr int64_t hour = 3'600'000'000'000;
    const struct {
        int64_t modifiedAgo;
        int64_t changedAgo;
        bool isYoung; // than half an hour
    } rows[] = {
        {hour, hour, false}, {0, hour, true}, {hour, 0, true}, {-hour, hour, true}, {hour, -hour, true},
    };
    for (const auto& row : rows) {
        const FileIdentity identity{.modified = Now() - row.modifiedAgo, .changed = Now() - row.changedAgo};
        EXPECT_EQ(identity.IsYoungerThan(milliseconds(1'800'000)), row.isYoung)
            << row.modifiedAgo << " " << row.changedAgo;
    }
    EXPECT_FALSE((FileIdentity{.modified = Now(), .changed = 0}).IsYoungerThan(milliseconds(0)));
    // Known by its content alone.
    EXPECT_FALSE(FileIdentity().IsYoungerThan(milliseconds(3000)));
}
