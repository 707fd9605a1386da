#include "ftpengine/net/Dial.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>

#include "ResourceGuard.h"
#include "ftpengine/messages/EngineStatus.h"
#include "support/NoThreads.h"
#include "support/ScriptedServer.h"

namespace {

int NumberThrownBy(const QString& host, uint16_t port, const std::shared_ptr<CEvent>& abort)
{
    try {
        Dial(host, port, abort);
    } catch (int number) {
        return number;
    }
    return 0;
}

// Of IPv6's loopback interface; its port is 0 if this machine has none.
class CListenerOfIpv6 {
public:
    CListenerOfIpv6() : socket(::socket(AF_INET6, SOCK_STREAM, 0))
    {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        address.sin6_addr = in6addr_loopback;
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket.GetDescriptor(), generic, size) == 0 && ::listen(socket.GetDescriptor(), 4) == 0 &&
            ::getsockname(socket.GetDescriptor(), generic, &size) == 0) {
            port = ntohs(address.sin6_port);
        }
    }

    CSocket socket;
    uint16_t port = 0;
};

} // namespace

TEST(Dial, ReachesAServerByNameAndByAddress)
{
    const CResourceGuard guard;
    CListener listener;
    const CEvent never;
    for (const char* host : {"127.0.0.1", "localhost"}) {
        const CSocket client =
            Dial(QString::fromLatin1(host), listener.GetPort(), std::make_shared<CEvent>());
        EXPECT_TRUE(client.IsOpen()) << host;
        EXPECT_TRUE(listener.Accept(never).IsOpen());
    }
}

TEST(Dial, ReachesAServerOfIpv6)
{
    const CListenerOfIpv6 listener;
    if (listener.port == 0) {
        GTEST_SKIP() << "This machine has no IPv6.";
    }
    EXPECT_TRUE(Dial(QStringLiteral("::1"), listener.port, std::make_shared<CEvent>()).IsOpen());
}

TEST(Dial, SaysWhyThereIsNoConnection)
{
    const CResourceGuard guard;
    uint16_t closedPort = 0;
    {
        closedPort = CListener().GetPort();
    }
    const auto abort = std::make_shared<CEvent>();
    EXPECT_EQ(NumberThrownBy(QStringLiteral("127.0.0.1"), closedPort, abort), 10061);
    // RFC 2606 keeps the name free of hosts; a machine without a network can't even ask.
    const int number = NumberThrownBy(QStringLiteral("nobody.invalid"), 22, abort);
    EXPECT_TRUE(number == 11001 || number == 11002) << number;
    EXPECT_EQ(NumberThrownBy(QString(300, QLatin1Char('x')), 22, abort), 11001);
}

TEST(Dial, EndsAtOnceWhenItIsAborted)
{
    const CResourceGuard guard;
    const auto abort = std::make_shared<CEvent>();
    abort->Set();
    EXPECT_EQ(NumberThrownBy(QStringLiteral("127.0.0.1"), 22, abort), EngineStatus::Aborted);
    // A listener whose queue is full leaves the others waiting.
    const auto later = std::make_shared<CEvent>();
    CListener full(0);
    std::vector<CSocket> queue(3);
    const sockaddr_in address = LoopbackAddress(full.GetPort());
    for (CSocket& waiting : queue) {
        ASSERT_EQ(waiting.Create(), 0);
        waiting.Connect(address, std::chrono::milliseconds(50));
    }
    std::thread aborting([&later] { later->Set(); });
    EXPECT_EQ(NumberThrownBy(QStringLiteral("127.0.0.1"), full.GetPort(), later), EngineStatus::Aborted);
    aborting.join();
}

TEST(Dial, WithoutAThreadThereIsNoLookUp)
{
    const CNoThreads none;
    EXPECT_EQ(NumberThrownBy(QStringLiteral("127.0.0.1"), 22, std::make_shared<CEvent>()),
              EngineStatus::NoBufferSpace);
}
