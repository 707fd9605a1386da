#include "shell/ftpdialogs/FTPEngineResLibDlgTaskResult.h"

#include <QLabel>
#include <QPlainTextEdit>

#include "ftpengine/messages/FTPMessages.h"
#include "shell_support/DialogTools.h"

namespace {

CTaskResult Refused()
{
    CTaskResult result;
    result.reply = {530, QStringLiteral("530 No\r\n")};
    result.transcript = {
        QStringLiteral("220 ready\r\n"),    QStringLiteral("USER anna"), QString(),
        QStringLiteral("331 password\r\n"), QStringLiteral("PASS ****"), QStringLiteral("530 No\r\n")};
    return result;
}

CTaskResult TimedOut()
{
    CTaskResult result;
    result.transcript = {QStringLiteral("220 ready\r\n")};
    result.status = 10060;
    return result;
}

} // namespace

TEST(TaskResultText, OfASuccessIsOneLine)
{
    CTaskResult result;
    result.transcript = {QStringLiteral("220 ready\r\n")};
    EXPECT_EQ(DescribeTaskResult(result), QStringLiteral("Connection succeed.\r\n\r\n"));
}

TEST(TaskResultText, OfARefusalHoldsTheWholeConversation)
{
    EXPECT_EQ(DescribeTaskResult(Refused()),
              QStringLiteral("Connection failed. See below\r\n\r\n"
                             "220 ready\r\nUSER anna\r\n331 password\r\nPASS ****\r\n530 No\r\n"));
}

TEST(TaskResultText, OfANetworkFailureEndsWithItsTitleAndDescription)
{
    EXPECT_EQ(
        DescribeTaskResult(TimedOut()),
        QStringLiteral("Connection failed. See below\r\n\r\n"
                       "220 ready\r\n"
                       "0x0000274c Connection timed out\r\n"
                       "A connection attempt failed because the connected party did not properly respond "
                       "after a period of time, or the established connection failed because the "
                       "connected host has failed to respond."));
}

TEST(TaskResult, ShowsTheIconOfItsKind)
{
    const CFTPEngineResLibDlgTaskResult good(CTaskResult{}, nullptr);
    EXPECT_EQ(good.windowTitle(), QStringLiteral("FTP Task"));
    EXPECT_NE(good.findChild<QLabel*>(QStringLiteral("information")), nullptr);
    EXPECT_EQ(good.findChild<QLabel*>(QStringLiteral("error")), nullptr);

    const CFTPEngineResLibDlgTaskResult bad(Refused(), nullptr);
    EXPECT_EQ(bad.findChild<QLabel*>(QStringLiteral("information")), nullptr);
    EXPECT_FALSE(Find<QLabel>(bad, "error").pixmap(Qt::ReturnByValue).isNull());
    EXPECT_TRUE(Find<QPlainTextEdit>(bad, "text").toPlainText().endsWith(QStringLiteral("530 No\n")));
    EXPECT_TRUE(Find<QPlainTextEdit>(bad, "text").isReadOnly());
}

TEST(TaskResult, ShowsWhatAHostileServerSaysAsText)
{
    CTaskResult result;
    result.reply.code = 500;
    result.transcript = {QStringLiteral("500 <b>bold</b>\a\u202e") + QString(100000, QLatin1Char('x'))};
    const CFTPEngineResLibDlgTaskResult dialog(result, nullptr);
    EXPECT_TRUE(Find<QPlainTextEdit>(dialog, "text").toPlainText().contains(QStringLiteral("<b>bold</b>")));
}

TEST(TaskResult, IsUsable)
{
    CFTPEngineResLibDlgTaskResult good(CTaskResult{}, nullptr);
    ExpectUsable(good, QStringLiteral("task-result-success"));
    CFTPEngineResLibDlgTaskResult bad(TimedOut(), nullptr);
    ExpectUsable(bad, QStringLiteral("task-result-failure"));
}
