#include "ftpengine/messages/FTPReply.h"

TEST(FTPReply, TheLastLineDecides)
{
    const struct {
        const char* chunk;
        int code;
        const char* text;
    } rows[] = {
        {"230 OK\r\n", 230, "230 OK\r\n"},
        {"230-Hello\r\n230 OK\r\n", 230, "230 OK\r\n"},
        {"150 Opening\r\n226 Done\r\n", 226, "226 Done\r\n"},
        {"230-Hello\r\n", 230, "230-Hello\r\n"}, // that others follow is not looked at
        {"150 Opening\r\n226 Done", 226, "226 Done"},
        {"230-Hello\r\n 230 text\r\n", 23, " 230 text\r\n"}, // a blank counts among the three bytes
        {"Hello\r\n", 0, "Hello\r\n"},
        {"", 0, ""},
        {"2", 2, "2"},
        {"22\r\n", 22, "22\r\n"},
        {"2a0 x\r\n", 2, "2a0 x\r\n"},
        {"-12 x\r\n", -12, "-12 x\r\n"},
        {"\r\n", 0, "\r\n"},
        {"\r\n\r\n", 0, "\r\n"},
        {"220 a\n230 b\n", 220, "220 a\n230 b\n"}, // a line ends in both characters
        {"220 a\r\n\xff\xfe", 0, "\xef\xbf\xbd\xef\xbf\xbd"},
        {"2345 x\r\n", 234, "2345 x\r\n"},
    };
    for (const auto& row : rows) {
        const FTPReply reply = ReadReply(row.chunk);
        EXPECT_EQ(reply.code, row.code) << row.chunk;
        EXPECT_EQ(reply.text, QString::fromUtf8(row.text)) << row.chunk;
    }
}

TEST(FTPReply, AGreetingIsReadAsAWhole)
{
    const FTPReply reply = ReadGreeting("220-Hello\r\n230 there\r\n");
    EXPECT_EQ(reply.code, 220);
    EXPECT_EQ(reply.text, QStringLiteral("220-Hello\r\n230 there\r\n"));
    EXPECT_EQ(ReadGreeting("").code, 0);
}

TEST(FTPReply, AFreshOneIsGood)
{
    EXPECT_EQ(FTPReply().code, 200);
    EXPECT_EQ(FTPReply().text, QString());
    EXPECT_EQ((FTPReply{.code = 599, .text = {}}).GetGroup(), 5);
}

TEST(ReplyLines, KnowWhereAReplyEnds)
{
    const struct {
        const char* bytes;
        bool atEnd;
    } rows[] = {
        {"", false},
        {"220 ready", false},
        {"220 ready\r", false},
        {"220 ready\r\n", true},
        {"220 ready\n", true},
        {"\r\n", true},
        {"\n", true},
        {"hello\r\n", true},
        {"220-ready\r\n", false},
        {"220-ready\r\n220 now\r\n", true},
        {"220-ready\r\n220-more\r\n", false},
        {"220-ready\r\n text\r\n", false}, // any line may stand between (RFC 959, 4.2)
        {"220-ready\r\n230 x\r\n", false}, // of another code
        {"220-ready\r\n230 x\r\n220 y\r\n", true},
        {"220-ready\r\n220\r\n", true},
        {"150 opening\r\n226-done\r\n", false},
        {"150 opening\r\n226 done\r\n", true},
        {"150 opening\r\n226", false},
        {"abc-x\r\n", true}, // no code
        {"22-x\r\n", true},
        {"220 a-b\r\n", true},
    };
    for (const auto& row : rows) {
        CReplyLines whole;
        whole.Feed(row.bytes);
        EXPECT_EQ(whole.IsAtEnd(), row.atEnd) << row.bytes;
        CReplyLines byByte;
        for (const char byte : std::string_view(row.bytes)) {
            byByte.Feed({&byte, 1});
        }
        EXPECT_EQ(byByte.IsAtEnd(), row.atEnd) << row.bytes;
    }
}
