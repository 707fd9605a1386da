#include "ftpengine/net/SocketStream.h"

#include <netdb.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>

#include "FTPEngineFixture.h"
#include "ftpengine/net/Event.h"
#include "support/TraceRecorder.h"

namespace {

using std::chrono::milliseconds;

// A stream whose other end is in the test's hand.
class SocketStream : public testing::Test {
protected:
    const CResourceGuard guard;
    CTraceRecorder traces;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    const CEvent never;
    CSocket server;
    int client = -1;
    std::unique_ptr<CSocketStream> stream;

    void Open(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        SocketPair pair;
        server = std::move(pair.server);
        client = pair.client.GetDescriptor();
        stream = std::make_unique<CSocketStream>(timeouts);
        stream->Open(std::move(pair.client), abort);
    }

    void Send(std::string_view bytes) { SendAll(server, bytes, never); }

    // Returns when the stream has taken the bytes out of the system's buffer, on another thread.
    void SendAndWait(std::string_view bytes)
    {
        Send(bytes);
        int waiting = 1;
        for (int outgoing = 1; waiting > 0 || outgoing > 0; std::this_thread::yield()) {
            ASSERT_EQ(::ioctl(server.GetDescriptor(), TIOCOUTQ, &outgoing), 0);
            ASSERT_EQ(::ioctl(client, FIONREAD, &waiting), 0);
        }
    }

    // Returns when so many bytes can be read at the stream's end.
    void AwaitArrival(int count) const
    {
        for (int waiting = 0; waiting < count; std::this_thread::yield()) {
            ASSERT_EQ(::ioctl(client, FIONREAD, &waiting), 0);
        }
    }

    std::string Receive(milliseconds timeout = milliseconds(20000)) { return stream->Receive(timeout); }

    static bool WaitForBytes(const CSocket& socket)
    {
        return WaitForFirst({{socket.GetDescriptor()}}, milliseconds(20000)) == WaitResult::First;
    }

    // The number that a receive throws, 0 if it throws none.
    int ReceiveError(milliseconds timeout = milliseconds(20000))
    {
        try {
            Receive(timeout);
            return 0;
        } catch (int error) {
            return error;
        }
    }

    int SendError(milliseconds timeout, std::string_view bytes)
    {
        try {
            stream->Send(timeout, bytes);
            return 0;
        } catch (int error) {
            return error;
        }
    }
};

std::string Line(std::size_t size)
{
    return "220 " + std::string(size - 6, 'x') + "\r\n";
}

} // namespace

TEST_F(SocketStream, AReplyIsOneWhateverItsLength)
{
    Open();
    for (const std::size_t size : {6u, 127u, 128u, 129u, 255u, 256u, 257u, 1000u, 4096u, 4097u}) {
        Send(Line(size));
        EXPECT_EQ(Receive(), Line(size)) << size;
    }
}

TEST_F(SocketStream, AReplyOf64KiBIsOne)
{
    Open();
    std::thread sender([this] { Send(Line(65536)); });
    EXPECT_EQ(Receive(), Line(65536));
    sender.join();
}

TEST_F(SocketStream, AReplyInSeveralSegmentsIsOne)
{
    Open();
    std::thread sender([this] {
        for (const char* segment : {"2", "30-Hello\r", "\n", "230-you\r\n text\r\n23", "0 in\r\n"}) {
            SendAndWait(segment);
        }
    });
    EXPECT_EQ(Receive(), "230-Hello\r\n230-you\r\n text\r\n230 in\r\n");
    sender.join();
}

TEST_F(SocketStream, SeveralRepliesInOneSegmentAreSeveral)
{
    Open();
    Send("150 opening\r\n226-done\r\n226 now\r\n1\r\n");
    EXPECT_EQ(Receive(), "150 opening\r\n");
    EXPECT_EQ(Receive(), "226-done\r\n226 now\r\n");
    EXPECT_EQ(Receive(), "1\r\n");
}

TEST_F(SocketStream, ALineWithoutItsEndIsAReplyWhenNothingFollows)
{
    Open();
    Send("220 ready");
    EXPECT_EQ(Receive(milliseconds(50)), "220 ready");
    Send("220-more to come\r\n");
    EXPECT_EQ(ReceiveError(milliseconds(50)), 10060); // more is announced
    Send("220 ready\r\n");
    EXPECT_EQ(Receive(), "220-more to come\r\n220 ready\r\n");
}

TEST_F(SocketStream, EachByteStartsTheTimeOutAnew)
{
    Open();
    std::thread sender([this] {
        for (const char byte : std::string("220 a\r\n")) {
            EXPECT_FALSE(never.Wait(milliseconds(300)));
            Send({&byte, 1});
        }
    });
    EXPECT_EQ(Receive(milliseconds(1500)), "220 a\r\n"); // less than the bytes take together
    sender.join();
}

TEST_F(SocketStream, ThePeersCloseIsOneEmptyReplyAndThenAReset)
{
    Open();
    Send("221 bye\r\n");
    server.Close();
    EXPECT_EQ(Receive(), "221 bye\r\n");
    EXPECT_EQ(Receive(), "");
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_EQ(ReceiveError(), 10054);
}

TEST_F(SocketStream, WhatHasComeBeforeTheCloseIsAReply)
{
    Open();
    Send("421-too many\r\n");
    server.Close();
    EXPECT_EQ(Receive(), "421-too many\r\n");
    EXPECT_EQ(Receive(), "");
    EXPECT_EQ(ReceiveError(), 10054);
}

TEST_F(SocketStream, WhatHasComeBeforeABreakIsAReply)
{
    Open();
    Send("220 delivered\r\n220 ha");
    AwaitArrival(21);
    server.Reset();
    EXPECT_EQ(Receive(), "220 delivered\r\n");
    EXPECT_EQ(Receive(), "220 ha");
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_TRUE(traces.Has("\"ReceiveCycle, WSARecv throws: \"10054"));
    EXPECT_TRUE(traces.Has("Receive throws m_iStatus: 10054"));
}

TEST_F(SocketStream, ZeroBytesEndTheTextOfAReply)
{
    Open();
    Send(std::string_view("220\0 x\r\n", 8));
    EXPECT_EQ(Receive(), "220");
    Send(std::string_view("\0"
                          "220 x\r\n",
                          8));
    EXPECT_EQ(Receive(), "");
    Send("230 y\r\n");
    EXPECT_EQ(Receive(), "230 y\r\n");
}

TEST_F(SocketStream, SilenceIsATimeOut)
{
    Open();
    EXPECT_EQ(ReceiveError(milliseconds(1)), 10060);
    EXPECT_EQ(ReceiveError(milliseconds(0)), 10060);
}

TEST_F(SocketStream, AnAbortBreaksAWaitingReceive)
{
    Open();
    std::thread aborter([this] { abort->Set(); });
    EXPECT_EQ(ReceiveError(), 995);
    aborter.join();
}

TEST_F(SocketStream, AWaitingReplyGoesBeforeAnAbort)
{
    Open();
    Send("220 a\r\n220 b\r\n");
    AwaitArrival(14);
    abort->Set();
    EXPECT_EQ(Receive(), "220 a\r\n");
    EXPECT_EQ(Receive(), "220 b\r\n");
    EXPECT_EQ(ReceiveError(), 995);
}

TEST_F(SocketStream, AReplyWithoutEndIsAFailure)
{
    Open();
    std::thread sender([this] { Send(std::string(2 << 20, 'x')); });
    EXPECT_EQ(ReceiveError(), 10040);
    EXPECT_EQ(ReceiveError(), 10040);
    stream.reset();
    sender.join();
}

TEST_F(SocketStream, AFloodOfRepliesDoesNotFillTheMemoryNorTakeTheTimeOfACommand)
{
    Open();
    std::thread sender([this] {
        for (int i = 0; i < 200000 && server.IsOpen(); ++i) {
            Send("220 again\r\n");
        }
    });
    EXPECT_EQ(Receive(), "220 again\r\n");
    int error = 0;
    for (int i = 0; i < 1000 && error == 0; ++i) {
        error = SendError(milliseconds(20000), "NOOP\r\n");
    }
    EXPECT_TRUE(error == 0 || error == 10040) << error; // 10040 if the server is faster than this side
    stream.reset();
    sender.join();
}

TEST_F(SocketStream, RepliesThatCameBeforeASendBelongToWhatWasSaidBefore)
{
    Open();
    Send("220 ready\r\n220 once more\r\n220 and");
    AwaitArrival(33);
    EXPECT_EQ(Receive(), "220 ready\r\n");
    stream->Send(milliseconds(20000), "NOOP\r\n");
    Send(" again\r\n200 done\r\n");
    EXPECT_EQ(Receive(), "200 done\r\n"); // the one that had begun isn't the reply either
}

TEST_F(SocketStream, AnUnaskedFarewellIsTheReplyIfNoOtherComes)
{
    Open();
    Send("421 idle for too long\r\n");
    server.EndSending();
    AwaitArrival(23);
    stream->Send(milliseconds(20000), "NOOP\r\n");
    EXPECT_EQ(Receive(), "421 idle for too long\r\n");
    EXPECT_EQ(Receive(), "");
}

TEST_F(SocketStream, SendsEverything)
{
    Open();
    stream->Send(milliseconds(20000), "USER anna\r\n");
    stream->Send(milliseconds(20000), "");
    char bytes[64] = {};
    ASSERT_TRUE(WaitForBytes(server));
    EXPECT_EQ(server.Receive(bytes, sizeof bytes).bytes, 11u);
    EXPECT_STREQ(bytes, "USER anna\r\n");
}

TEST_F(SocketStream, ASendThatIsNotTakenTimesOut)
{
    Open();
    EXPECT_EQ(SendError(milliseconds(50), std::string(64 << 20, 'x')), 10060);
}

TEST_F(SocketStream, AnAbortBreaksAWaitingSend)
{
    Open();
    abort->Set();
    EXPECT_EQ(SendError(milliseconds(20000), std::string(64 << 20, 'x')), 995);
    EXPECT_EQ(SendError(milliseconds(0), ""), 0); // what need not wait is not broken
}

TEST_F(SocketStream, ASendToABrokenConnectionFailsWithoutASignal)
{
    Open();
    server.Reset();
    ASSERT_EQ(WaitForFirst({{client}}, milliseconds(20000)), WaitResult::First);
    EXPECT_EQ(SendError(milliseconds(1000), "QUIT\r\n"), 10054);
    EXPECT_TRUE(traces.Has("\"Send, WSASend throws: \"10054"));
}

TEST_F(SocketStream, ItsDestructionClosesTheConnection)
{
    Open();
    stream.reset();
    char byte;
    ASSERT_TRUE(WaitForBytes(server));
    const SocketResult result = server.Receive(&byte, 1);
    EXPECT_EQ(result.bytes, 0u);
    EXPECT_FALSE(result.wouldBlock);
}

TEST_F(SocketStream, TracesWhatItReceivesAndWhyItFails)
{
    Open();
    Send("220 a\r\n");
    EXPECT_EQ(Receive(), "220 a\r\n");
    EXPECT_TRUE(traces.Has("Bytes received: 7"));
    abort->Set();
    EXPECT_EQ(ReceiveError(), 995);
    EXPECT_TRUE(traces.Has("_T(\"Receive, WaitForMultipleObjects aborted\")"));
    const std::string tooMuch(64 << 20, 'x');
    EXPECT_EQ(SendError(milliseconds(20000), tooMuch), 995);
    EXPECT_TRUE(traces.Has("_T(\"Send, WSAWaitForMultipleEvents aborted\")"));
    abort->Reset();
    EXPECT_EQ(SendError(milliseconds(50), tooMuch), 10060);
    EXPECT_TRUE(traces.Has("_T(\"Send, WSAWaitForMultipleEvents timed out\")"));
}
