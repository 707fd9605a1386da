#include "ftpengine/net/SocketStream.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>

#include "FTPEngineFixture.h"
#include "ftpengine/net/Connection.h"
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

    // Returns when the reader has taken the bytes out of the system's buffer.
    void Send(std::string_view bytes)
    {
        SendAll(server, bytes, never);
        int waiting = 1;
        for (int outgoing = 1; waiting > 0 || outgoing > 0; std::this_thread::yield()) {
            ASSERT_EQ(::ioctl(server.GetDescriptor(), TIOCOUTQ, &outgoing), 0);
            ASSERT_EQ(::ioctl(client, FIONREAD, &waiting), 0);
        }
    }

    std::string Receive(milliseconds timeout = milliseconds(20000))
    {
        CSocketBuffer chunk;
        stream->Receive(timeout, chunk);
        return std::string(chunk.GetText());
    }

    // Returns when the reader has met the broken connection, and has ended.
    void AwaitFailure()
    {
        traces.Await("\"ReceiveCycle, WSARecv throws: \"10054", 1);
        guard.AwaitThreads();
    }

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
};

std::string Line(std::size_t size)
{
    return "220 " + std::string(size - 6, 'x') + "\r\n";
}

} // namespace

TEST_F(SocketStream, AReplyIsOneChunkWhateverItsLength)
{
    Open();
    for (const std::size_t size : {6u, 127u, 128u, 129u, 255u, 256u, 257u, 1000u}) {
        Send(Line(size));
        EXPECT_EQ(Receive(), Line(size)) << size;
    }
}

TEST_F(SocketStream, AReplyOf64KiBIsOneChunk)
{
    Open();
    std::thread sender([this] { SendAll(server, Line(65536), never); });
    EXPECT_EQ(Receive(), Line(65536));
    sender.join();
}

TEST_F(SocketStream, AReplyInSeveralSegmentsIsOneChunk)
{
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.segmentSilence = milliseconds(60000);
    Open(timeouts);
    for (const char* segment : {"2", "30-Hello\r", "\n", "230-you\r\n text\r\n23", "0 in\r\n"}) {
        Send(segment);
    }
    EXPECT_EQ(Receive(), "230-Hello\r\n230-you\r\n text\r\n230 in\r\n");
}

TEST_F(SocketStream, TextWithoutALineEndIsAChunkAfterASilence)
{
    Open();
    Send("220 ready");
    EXPECT_EQ(Receive(), "220 ready");
    Send("220-more to come\r\n");
    EXPECT_EQ(Receive(), "220-more to come\r\n");
}

TEST_F(SocketStream, AFullReceiveWithoutLineEndGoesOn)
{
    Open();
    const std::string head(128, 'a');
    Send(head);
    EXPECT_EQ(ReceiveError(milliseconds(20)), 10060); // not even a silence ends it
    Send("b\r\n");
    EXPECT_EQ(Receive(), head + "b\r\n");
}

TEST_F(SocketStream, AFullReceiveWithACarriageReturnLastButOneIsAChunk)
{
    Open();
    std::string odd(126, 'a');
    odd += "\rb";
    Send(odd);
    EXPECT_EQ(Receive(), odd);
    std::string lineFeed(127, 'a');
    lineFeed += '\n';
    Send(lineFeed);
    EXPECT_EQ(Receive(), lineFeed);
}

TEST_F(SocketStream, ChunksComeInTheirOrder)
{
    Open();
    for (const char* reply : {"1\r\n", "2\r\n", "3\r\n"}) {
        Send(reply);
    }
    EXPECT_EQ(Receive(), "1\r\n");
    EXPECT_EQ(Receive(), "2\r\n");
    EXPECT_EQ(Receive(), "3\r\n");
}

TEST_F(SocketStream, ThePeersCloseIsOneEmptyChunkAndThenAReset)
{
    Open();
    Send("221 bye\r\n");
    server.Close();
    EXPECT_EQ(Receive(), "221 bye\r\n");
    EXPECT_EQ(Receive(), "");
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_EQ(ReceiveError(), 10054);
}

TEST_F(SocketStream, TheCloseBehindFullReceivesIsAnEmptyChunkAsWell)
{
    Open();
    Send(std::string(256, 'a'));
    server.Close();
    EXPECT_EQ(Receive(), std::string(256, 'a'));
    EXPECT_EQ(Receive(), "");
    EXPECT_EQ(ReceiveError(), 10054);
}

TEST_F(SocketStream, ZeroBytesEndTheTextOfAChunk)
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

TEST_F(SocketStream, AWaitingChunkGoesBeforeAnAbort)
{
    Open();
    Send("220 a\r\n");
    Send("220 b\r\n");
    // The reader traces the second one when it has queued the first.
    traces.Await("CA2CT(buf.bufstart)", 2);
    abort->Set();
    EXPECT_EQ(Receive(), "220 a\r\n");
    int error = ReceiveError();
    if (error == 0) { // the second one was in time as well
        error = ReceiveError();
    }
    EXPECT_EQ(error, 995);
}

TEST_F(SocketStream, AFailureGoesBeforeWaitingChunks)
{
    Open();
    Send("220 never delivered\r\n");
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(server.GetDescriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    server.Close();
    AwaitFailure();
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_EQ(ReceiveError(), 10054);
}

TEST_F(SocketStream, AReplyWithoutEndIsAFailure)
{
    Open();
    std::thread sender([this] { SendAll(server, std::string(1 << 20, 'x'), never); });
    EXPECT_EQ(ReceiveError(), 10040);
    stream.reset();
    sender.join();
}

TEST_F(SocketStream, AFloodOfRepliesDoesNotFillTheMemory)
{
    Open();
    const std::string reply = Line(128);
    bool blocked = false;
    for (std::size_t sent = 0; sent < 256 << 20 && !blocked;) {
        const SocketResult result = server.Send(reply.data(), reply.size());
        ASSERT_EQ(result.error, 0);
        sent += result.bytes;
        blocked = result.wouldBlock &&
                  WaitForFirst({{server.GetDescriptor(), true}}, milliseconds(300)) == WaitResult::TimedOut;
    }
    EXPECT_TRUE(blocked); // the reader waits until somebody takes a chunk
    EXPECT_EQ(Receive(), reply);
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
    try {
        stream->Send(milliseconds(50), std::string(64 << 20, 'x'));
        FAIL();
    } catch (int error) {
        EXPECT_EQ(error, 10060);
    }
}

TEST_F(SocketStream, AnAbortBreaksAWaitingSend)
{
    Open();
    abort->Set();
    try {
        stream->Send(milliseconds(20000), std::string(64 << 20, 'x'));
        FAIL();
    } catch (int error) {
        EXPECT_EQ(error, 995);
    }
    stream->Send(milliseconds(0), ""); // what need not wait is not broken
}

TEST_F(SocketStream, ASendToABrokenConnectionFailsWithoutASignal)
{
    Open();
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(server.GetDescriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    server.Close();
    AwaitFailure();
    try {
        stream->Send(milliseconds(1000), "QUIT\r\n");
        FAIL();
    } catch (int error) {
        EXPECT_EQ(error, 10054);
    }
}

TEST_F(SocketStream, ItsDestructionDoesNotWaitForAQuietPeer)
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
    EXPECT_THROW(stream->Send(milliseconds(20000), tooMuch), int);
    EXPECT_TRUE(traces.Has("_T(\"Send, WSAWaitForMultipleEvents aborted\")"));
    abort->Reset();
    EXPECT_THROW(stream->Send(milliseconds(50), tooMuch), int);
    EXPECT_TRUE(traces.Has("_T(\"Send, WSAWaitForMultipleEvents timed out\")"));
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(server.GetDescriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    server.Close();
    AwaitFailure();
    EXPECT_EQ(ReceiveError(), 10054);
    EXPECT_TRUE(traces.Has("Receive throws m_iStatus: 10054"));
    EXPECT_THROW(stream->Send(milliseconds(1000), "QUIT\r\n"), int);
    EXPECT_TRUE(traces.Has("\"Send, WSASend throws: \"10054"));
}

namespace {

class Connection : public testing::Test {
protected:
    const CResourceGuard guard;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();

    int OpenError(const QString& server, uint16_t port)
    {
        try {
            CSocketStream stream(PatientTimeouts());
            FTPDestinationConnection destination;
            destination.server = server;
            destination.port = port;
            OpenConnection(destination, abort, stream);
            return 0;
        } catch (int error) {
            return error;
        }
    }
};

} // namespace

TEST_F(Connection, OpensToAListener)
{
    CListener listener;
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), listener.GetPort()), 0);
}

TEST_F(Connection, DoesNotLookAtTheAbortEvent)
{
    CListener listener;
    abort->Set();
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), listener.GetPort()), 0);
}

TEST_F(Connection, AClosedPortIsARefusal)
{
    CListener listener;
    const uint16_t port = listener.GetPort();
    listener.Close();
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), port), 10061);
}

TEST_F(Connection, AHostThatIsNoneIsNotFound)
{
    for (const char* host : {"", "no such host", "256.1.1.1.", "a\r\nb"}) {
        EXPECT_EQ(OpenError(QString::fromLatin1(host), 21), 11001) << host;
    }
}

TEST_F(Connection, ResolvesADottedAddressAndTheLocalHost)
{
    EXPECT_EQ(GetAddr(QStringLiteral("192.168.1.2")), ::inet_addr("192.168.1.2"));
    EXPECT_EQ(GetAddr(QStringLiteral("localhost")), htonl(INADDR_LOOPBACK));
}

TEST_F(Connection, OfSeveralAddressesTheFirstCounts)
{
    sockaddr_in firstAddress = LoopbackAddress(0);
    sockaddr_in secondAddress = LoopbackAddress(0);
    secondAddress.sin_addr.s_addr = ::inet_addr("192.168.1.2");
    addrinfo second{};
    second.ai_addr = reinterpret_cast<sockaddr*>(&secondAddress);
    addrinfo first{};
    first.ai_addr = reinterpret_cast<sockaddr*>(&firstAddress);
    first.ai_next = &second;
    EXPECT_EQ(FirstAddress(first), htonl(INADDR_LOOPBACK));
}

TEST_F(Connection, ItsFailuresAreTraced)
{
    CTraceRecorder traces;
    CListener listener;
    const uint16_t port = listener.GetPort();
    listener.Close();
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), port), 10061);
    EXPECT_TRUE(traces.Has("\"OpenConnection, WSAConnect throws: \"10061"));
    EXPECT_EQ(OpenError(QStringLiteral("no such host"), 21), 11001);
    EXPECT_TRUE(traces.Has("\"GetAddr, getaddrinfo throws: \"11001"));
}
