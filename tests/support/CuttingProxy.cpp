#include "support/CuttingProxy.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <sys/socket.h>

#include <gtest/gtest.h>

namespace {

void Reset(CSocket& socket)
{
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket.GetDescriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.Close();
}

// All of them, or as many as the peer takes before it closes or stop is signalled.
void Carry(CSocket& to, std::string_view bytes, const CEvent& stop)
{
    while (!bytes.empty()) {
        const SocketResult result = to.Send(bytes.data(), bytes.size());
        if (result.error != 0) {
            return;
        }
        bytes.remove_prefix(result.bytes);
        if (result.wouldBlock &&
            WaitForFirst({UntilSet(stop), {to.GetDescriptor(), true}}, NoLimit) == WaitResult::First) {
            return;
        }
    }
}

} // namespace

CCuttingProxy::CCuttingProxy(uint16_t server) : server(server)
{
    thread = std::thread([this] {
        for (CSocket client = listener.Accept(stop); client.IsOpen(); client = listener.Accept(stop)) {
            Serve(std::move(client));
        }
    });
}

CCuttingProxy::~CCuttingProxy()
{
    stop.Set();
    thread.join();
}

void CCuttingProxy::Serve(CSocket client)
{
    CSocket other;
    EXPECT_EQ(other.Create(), 0);
    EXPECT_EQ(other.Connect(LoopbackAddress(server), NoLimit), 0);
    const int64_t most = bytesToCut;
    bytesCarried = 0;
    std::array<char, 65536> block;
    for (;;) {
        const WaitResult ready =
            WaitForFirst({UntilSet(stop), {client.GetDescriptor()}, {other.GetDescriptor()}}, NoLimit);
        if (ready == WaitResult::First) {
            return;
        }
        const bool isFromServer = ready == WaitResult::Third;
        CSocket& from = isFromServer ? other : client;
        CSocket& to = isFromServer ? client : other;
        const SocketResult result = from.Receive(block.data(), block.size());
        if (result.error != 0 || (result.bytes == 0 && !result.wouldBlock)) {
            return;
        }
        auto count = static_cast<int64_t>(result.bytes);
        if (isFromServer) {
            count = std::min(count, most - bytesCarried);
            bytesCarried += count;
        }
        if (!isSilent) {
            Carry(to, {block.data(), static_cast<std::size_t>(count)}, stop);
        }
        if (bytesCarried >= most) {
            Reset(client);
            return;
        }
    }
}
