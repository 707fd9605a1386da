#include "ftpengine/net/SocketBuffer.h"

#include <algorithm>

#include "ftpengine/net/ReplyLines.h"

TEST(SocketBuffer, IsNewWithRoomForOneReceive)
{
    CSocketBuffer buffer;
    EXPECT_EQ(buffer.GetCapacity(), 128u);
    EXPECT_EQ(buffer.GetText(), "");
    EXPECT_TRUE(std::all_of(buffer.GetReceivePosition(), buffer.GetReceivePosition() + 129,
                            [](char c) { return c == '\0'; }));
}

TEST(SocketBuffer, GrowsByOneReceiveAndKeepsWhatItHas)
{
    CSocketBuffer buffer;
    std::fill_n(buffer.GetReceivePosition(), 128, 'a');
    buffer.Grow();
    EXPECT_EQ(buffer.GetCapacity(), 256u);
    EXPECT_EQ(buffer.GetText(), std::string(128, 'a'));
    EXPECT_TRUE(std::all_of(buffer.GetReceivePosition(), buffer.GetReceivePosition() + 129,
                            [](char c) { return c == '\0'; }));
    *buffer.GetReceivePosition() = 'b';
    EXPECT_EQ(buffer.GetText(), std::string(128, 'a') + 'b');
}

TEST(SocketBuffer, ACopyIsItsOwnAndReceivesAtTheSamePlace)
{
    CSocketBuffer buffer;
    std::fill_n(buffer.GetReceivePosition(), 128, 'a');
    buffer.Grow();
    CSocketBuffer copy;
    copy = buffer;
    *copy.GetReceivePosition() = 'b';
    EXPECT_EQ(copy.GetText(), std::string(128, 'a') + 'b');
    EXPECT_EQ(buffer.GetText(), std::string(128, 'a'));
    EXPECT_EQ(copy.GetCapacity(), 256u);
    const CSocketBuffer& same = copy;
    copy = same;
    EXPECT_EQ(copy.GetText(), std::string(128, 'a') + 'b');
}

TEST(SocketBuffer, ItsTextEndsAtAZeroByte)
{
    CSocketBuffer buffer;
    std::copy_n("ab\0cd", 5, buffer.GetReceivePosition());
    EXPECT_EQ(buffer.GetText(), "ab");
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
