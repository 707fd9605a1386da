#include "ftpengine/net/Connection.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/HostLookup.h"

namespace {

int ConnectTo(CSocket& socket, const SocketAddress& address, std::chrono::milliseconds timeout,
              const CEvent& abortEvent)
{
    if (const int error = socket.Create(address.GetFamily())) {
        TraceNumber("OpenConnection, WSASocket throws: ", error);
        return error;
    }
    const int error = socket.Connect(address, timeout, &abortEvent);
    if (error != 0) {
        TraceNumber("OpenConnection, WSAConnect throws: ", error);
    }
    return error;
}

} // namespace

CSocket ConnectToServer(const FTPDestinationConnection& destination, const FTPTimeouts& timeouts,
                        const CEvent& abortEvent)
{
    const auto addresses = LookUpHost(destination.server, destination.port, timeouts.lookUp, abortEvent);
    CSocket socket = ConnectToFirst(addresses, timeouts.connect, abortEvent);
    socket.KeepAlive();
    return socket;
}

void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream)
{
    stream.Open(ConnectToServer(destination, stream.GetTimeouts(), *abortEvent), abortEvent);
}

CSocket ConnectToFirst(const std::vector<SocketAddress>& addresses, std::chrono::milliseconds timeout,
                       const CEvent& abortEvent)
{
    CSocket socket;
    int error = 0;
    for (const SocketAddress& address : addresses) {
        if (abortEvent.IsSet()) {
            throw EngineStatus::Aborted;
        }
        error = ConnectTo(socket, address, timeout, abortEvent);
        if (error == 0) {
            return socket;
        }
        if (error == EngineStatus::Aborted) {
            break;
        }
    }
    throw error;
}
