#include <QFileInfo>
#include <gtest/gtest.h>

#include "EditStory.h"

// Every act can be taken back and done anew, exactly. VISTORAMA_EDIT_STORIES=10000 tells so many stories,
// VISTORAMA_EDIT_STORY=SEED one of them again.
TEST(EditStories, EndWhereTheyBeganAndLeadThereAgain)
{
    // Each act is saved three times: on a disk, most of the time would go by waiting for it.
    const QString memory = QStringLiteral("/dev/shm");
    if (QFileInfo(memory).isWritable()) {
        qputenv("TMPDIR", memory.toLatin1());
    }
    constexpr int usualCount = 60;
    constexpr int acts = 140; // more than the history keeps
    const int wanted = qEnvironmentVariableIntValue("VISTORAMA_EDIT_STORIES");
    const int one = qEnvironmentVariableIntValue("VISTORAMA_EDIT_STORY");
    const int first = one > 0 ? one : 1;
    const int last = one > 0 ? one : wanted > 0 ? wanted : usualCount;
    for (int seed = first; seed <= last; ++seed) {
        ASSERT_EQ(CEditStory(static_cast<uint32_t>(seed)).Tell(acts), "") << "seed " << seed;
    }
}
