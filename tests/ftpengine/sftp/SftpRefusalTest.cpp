#include "ftpengine/sftp/SftpRefusal.h"

#include "ftpengine/messages/EngineStatus.h"

TEST(SftpRefusal, AStatusIsTheReplyThatAServerOfFtpWouldSend)
{
    const struct {
        uint32_t code;
        const char* words;
        int32_t reply;
        const char* text;
    } rows[] = {
        {1, "End of file", 550, "550 a/b: End of file\r\n"},
        {2, "No such file", 550, "550 a/b: No such file\r\n"},
        {3, "Permission denied", 550, "550 a/b: Permission denied\r\n"},
        {3, "", 550, "550 a/b: SSH_FX_PERMISSION_DENIED\r\n"},
        {4, "Failure", 550, "550 a/b: Failure\r\n"},
        {4, "write: No space left on device", 552, "552 a/b: write: No space left on device\r\n"},
        {4, "Disk quota exceeded", 552, "552 a/b: Disk quota exceeded\r\n"},
        {4, "ENOSPC", 552, "552 a/b: ENOSPC\r\n"},
        {4, "The disk is full", 552, "552 a/b: The disk is full\r\n"},
        {5, "Bad message", 500, "500 a/b: Bad message\r\n"},
        {8, "Operation unsupported", 502, "502 a/b: Operation unsupported\r\n"},
        {9, "", 451, "451 a/b: SSH_FX_INVALID_HANDLE\r\n"},
        {10, "", 550, "550 a/b: SSH_FX_NO_SUCH_PATH\r\n"},
        {14, "", 552, "552 a/b: SSH_FX_NO_SPACE_ON_FILESYSTEM\r\n"},
        {15, "", 552, "552 a/b: SSH_FX_QUOTA_EXCEEDED\r\n"},
        {4711, "", 550, "550 a/b: 4711\r\n"},
        {4, "two\r\nlines\t", 550, "550 a/b: two lines\r\n"},
    };
    for (const auto& row : rows) {
        const FTPReply reply = TranslateRefusal({.code = row.code, .text = row.words}, QStringLiteral("a/b"));
        EXPECT_EQ(reply.code, row.reply) << row.code << ' ' << row.words;
        EXPECT_EQ(reply.text, QString::fromLatin1(row.text));
    }
}

TEST(SftpRefusal, ALostConnectionIsOne)
{
    for (const uint32_t code : {6u, 7u}) {
        try {
            TranslateRefusal({.code = code, .text = {}}, QStringLiteral("a"));
            ADD_FAILURE() << code;
        } catch (int number) {
            EXPECT_EQ(number, EngineStatus::ConnectionReset);
        }
    }
}
