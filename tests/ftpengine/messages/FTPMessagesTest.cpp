#include "ftpengine/messages/FTPMessages.h"

TEST(TaskResult, ItsStatusGoesBeforeItsReply)
{
    const struct {
        int status;
        int code;
        CTaskResult::Kind kind;
    } rows[] = {
        {0, 200, CTaskResult::Kind::Success},        {0, 299, CTaskResult::Kind::Success},
        {0, 350, CTaskResult::Kind::ServerRefusal},  {0, 530, CTaskResult::Kind::ServerRefusal},
        {0, 0, CTaskResult::Kind::ServerRefusal},    {10060, 200, CTaskResult::Kind::NetworkFailure},
        {6, 530, CTaskResult::Kind::NetworkFailure},
    };
    for (const auto& row : rows) {
        CTaskResult result;
        result.status = row.status;
        result.reply.code = row.code;
        EXPECT_EQ(result.GetKind(), row.kind);
        EXPECT_EQ(result.IsSuccess(), row.kind == CTaskResult::Kind::Success);
    }
    EXPECT_EQ(static_cast<int>(CTaskResult::Kind::NetworkFailure), 1);
    EXPECT_EQ(static_cast<int>(CTaskResult::Kind::ServerRefusal), 2);
}
