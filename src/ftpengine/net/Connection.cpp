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

void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream)
{
    stream.Open(ConnectToServer(destination.server, destination.port, stream.GetTimeouts(), *abortEvent),
                abortEvent);
}

CSocket ConnectToServer(const QString& server, uint16_t port, const FTPTimeouts& timeouts,
                        const CEvent& abortEvent)
{
    CSocket socket =
        ConnectToFirst(LookUpHost(server, port, timeouts.lookUp, abortEvent), timeouts.connect, abortEvent);
    socket.KeepAlive();
    return socket;
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
