#include "deploy/DeployFailures.h"

#include <gtest/gtest.h>

#include "ftpengine/messages/EngineStatus.h"

namespace {

SendFailure Failure(SendFailure::Kind kind, int status, const char* reply)
{
    return {.kind = kind,
            .path = QStringLiteral("pictures/a.jpg"),
            .status = status,
            .reply = {.code = 552, .text = QString::fromLatin1(reply)},
            .log = {}};
}

} // namespace

TEST(DeployFailures, SayWhatHappenedAndWhatToDo)
{
    using Kind = SendFailure::Kind;
    const struct {
        Kind kind;
        int status;
        const char* reply;
        const char* description;
        const char* advice;
    } rows[] = {
        {Kind::NotOpened, 10061, "",
         "The server could not be reached: Connection refused. No connection could be made because",
         "Please check the name of the server and your connection, and try again."},
        {Kind::NotOpened, 0, "530 Login incorrect.\r\n",
         "The server doesn't let you in: 530 Login incorrect.",
         "Please check FTP site parameters and destination directory."},
        {Kind::Network, 10054, "",
         "The connection broke while pictures/a.jpg was being sent, and new connections broke as well: "
         "Connection reset by peer.",
         "Please publish again. What has arrived stays there"},
        {Kind::Refused, 0, "552 Disk full\r\n", "The server doesn't take pictures/a.jpg: 552 Disk full",
         "Please check on the server that you may write there and that there is space left"},
        {Kind::LocalFile, 0, "", "The file pictures/a.jpg was changed or removed while it was published.",
         "Please publish again."},
    };
    for (const auto& row : rows) {
        const DeployFailure failure = DescribeFailure(Failure(row.kind, row.status, row.reply));
        EXPECT_FALSE(failure.caption.isEmpty());
        EXPECT_TRUE(failure.description.startsWith(QString::fromLatin1(row.description)))
            << qPrintable(failure.description);
        EXPECT_TRUE(failure.advice.startsWith(QString::fromLatin1(row.advice))) << qPrintable(failure.advice);
    }
}

TEST(DeployFailures, QuestionsOfTrustAreNoFailures)
{
    for (const int status :
         {EngineStatus::UntrustedServer, EngineStatus::TlsNotOffered, EngineStatus::TlsDemanded}) {
        EXPECT_TRUE(IsServerDoubt(Failure(SendFailure::Kind::NotOpened, status, ""))) << status;
        EXPECT_FALSE(IsServerDoubt(Failure(SendFailure::Kind::Network, status, ""))) << status;
    }
    EXPECT_FALSE(IsServerDoubt(Failure(SendFailure::Kind::NotOpened, EngineStatus::TlsFailed, "")));
}
