#include "shell/dialogs/DlgAbout.h"

#include <QLabel>
#include <gtest/gtest.h>

#include "common/ProgramIdentity.h"
#include "shell_support/DialogTools.h"

TEST(About, NamesTheProgramAndItsVersion)
{
    CDlgAbout dialog(nullptr);
    EXPECT_EQ(Find<QLabel>(dialog, "name").text(), QStringLiteral("Vistorama"));
    EXPECT_EQ(Find<QLabel>(dialog, "version").text(), QStringLiteral("Version ") + GetProgramVersion());
    ExpectUsable(dialog, QStringLiteral("about"));
}
