#include "shell/ftpdialogs/DlgTroubleshootList.h"

#include <QPlainTextEdit>

#include "shell_support/DialogTools.h"

TEST(TroubleshootList, ShowsTheTextAndEndsByEnter)
{
    CDlgTroubleshootList dialog(QStringLiteral("01-01-24  10:00AM  <DIR>  photos\r\nwhat?\r\n"), nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("LIST command output"));
    EXPECT_EQ(Find<QPlainTextEdit>(dialog, "text").toPlainText(),
              QStringLiteral("01-01-24  10:00AM  <DIR>  photos\nwhat?\n"));
    ExpectUsable(dialog, QStringLiteral("troubleshoot"));
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}
