#include "ftpengine/net/Connection.h"

#include <arpa/inet.h>
#include <thread>

#include "FTPEngineFixture.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/HostLookup.h"
#include "support/NoThreads.h"
#include "support/TraceRecorder.h"

namespace {

using std::chrono::milliseconds;

class Connection : public testing::Test {
protected:
    const CResourceGuard guard;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();

    int OpenError(const QString& server, uint16_t port)
    {
        return Error([&] {
            CSocketStream stream(PatientTimeouts());
            FTPDestinationConnection destination;
            destination.server = server;
            destination.port = port;
            OpenConnection(destination, abort, stream);
        });
    }

    template <class Function>
    static int Error(const Function& function)
    {
        try {
            function();
            return 0;
        } catch (int error) {
            return error;
        }
    }

    static SocketAddress ClosedPort()
    {
        CListener listener;
        return LoopbackAddress(listener.GetPort());
    }
};

// The system takes a connection or two for it, lets nobody else in, and answers nothing.
struct FullListener {
    FullListener()
    {
        for (CSocket& other : others) {
            other.Create();
            other.Connect(LoopbackAddress(listener.GetPort()), milliseconds(50));
        }
    }

    CListener listener{0};
    std::vector<CSocket> others = std::vector<CSocket>(3);
};

} // namespace

TEST_F(Connection, OpensToAListener)
{
    CListener listener;
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), listener.GetPort()), 0);
    EXPECT_EQ(OpenError(QStringLiteral("localhost"), listener.GetPort()), 0);
}

TEST_F(Connection, OpensByIPv6)
{
    CListener listener(16, AF_INET6);
    if (!listener.IsOpen()) {
        GTEST_SKIP() << "This machine has no IPv6.";
    }
    EXPECT_EQ(OpenError(QStringLiteral("::1"), listener.GetPort()), 0);
}

TEST_F(Connection, AClosedPortIsARefusal)
{
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), ClosedPort().GetPort()), 10061);
}

TEST_F(Connection, AHostThatIsNoneIsNotFound)
{
    for (const char* host : {"", "no such host", "256.1.1.1.", "a\r\nb"}) {
        EXPECT_EQ(OpenError(QString::fromLatin1(host), 21), 11001) << host;
    }
    EXPECT_EQ(OpenError(QString(300, QLatin1Char('x')), 21), 11001);
}

TEST_F(Connection, WithoutAThreadNoNameIsLookedUp)
{
    CListener listener;
    const CNoThreads none;
    EXPECT_EQ(OpenError(QStringLiteral("localhost"), listener.GetPort()), EngineStatus::NoBufferSpace);
    // An address in figures is none.
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), listener.GetPort()), 0);
}

TEST_F(Connection, AnAbortEndsItBeforeItBegins)
{
    CListener listener;
    abort->Set();
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), listener.GetPort()), 995);
    EXPECT_EQ(OpenError(QStringLiteral("localhost"), listener.GetPort()), 995);
}

TEST_F(Connection, AnAbortEndsAConnectThatIsNotAnswered)
{
    const FullListener full;
    std::thread aborter([this] { abort->Set(); });
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), full.listener.GetPort()), 995);
    aborter.join();
}

TEST_F(Connection, EachAddressIsTried)
{
    CListener listener;
    const SocketAddress closed = ClosedPort();
    const SocketAddress open = LoopbackAddress(listener.GetPort());
    EXPECT_EQ(Error([&] { ConnectToFirst({closed, open}, milliseconds(20000), *abort); }), 0);
    EXPECT_EQ(Error([&] { ConnectToFirst({closed, closed}, milliseconds(20000), *abort); }), 10061);
}

TEST_F(Connection, AnAddressThatIsSilentIsGivenUpForTheNext)
{
    const FullListener full;
    CListener listener;
    const SocketAddress silent = LoopbackAddress(full.listener.GetPort());
    const SocketAddress open = LoopbackAddress(listener.GetPort());
    EXPECT_EQ(Error([&] { ConnectToFirst({silent, open}, milliseconds(50), *abort); }), 0);
    EXPECT_EQ(Error([&] { ConnectToFirst({silent}, milliseconds(50), *abort); }), 10060);
}

TEST_F(Connection, FindsAddressesWithTheirPort)
{
    const auto addresses = LookUpHost(QStringLiteral("192.168.1.2"), 2121, milliseconds(20000), *abort);
    ASSERT_EQ(addresses.size(), 1u);
    EXPECT_EQ(addresses[0].GetFamily(), AF_INET);
    EXPECT_EQ(addresses[0].GetPort(), 2121);
    EXPECT_EQ(reinterpret_cast<const sockaddr_in*>(addresses[0].Get())->sin_addr.s_addr,
              ::inet_addr("192.168.1.2"));
    const auto six = LookUpHost(QStringLiteral("::1"), 21, milliseconds(20000), *abort);
    ASSERT_EQ(six.size(), 1u);
    EXPECT_EQ(six[0].GetFamily(), AF_INET6);
    EXPECT_EQ(six[0].GetPort(), 21);
    EXPECT_FALSE(LookUpHost(QStringLiteral("localhost"), 21, milliseconds(20000), *abort).empty());
}

TEST_F(Connection, ItsFailuresAreTraced)
{
    CTraceRecorder traces;
    EXPECT_EQ(OpenError(QStringLiteral("127.0.0.1"), ClosedPort().GetPort()), 10061);
    EXPECT_TRUE(traces.Has("\"OpenConnection, WSAConnect throws: \"10061"));
    EXPECT_EQ(OpenError(QStringLiteral("no such host"), 21), 11001);
    EXPECT_TRUE(traces.Has("\"GetAddr, getaddrinfo throws: \"11001"));
}
