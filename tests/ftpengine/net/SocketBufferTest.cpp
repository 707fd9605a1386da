#include "ftpengine/net/SocketBuffer.h"

#include <algorithm>

#include "ftpengine/messages/FTPReply.h"

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
