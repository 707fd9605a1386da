#include "ftpengine/net/Connection.h"

#include <arpa/inet.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream)
{
    CSocket socket;
    if (const int error = socket.Create()) {
        ThrowTraced("OpenConnection, WSASocket throws: ", error);
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = GetAddr(destination.server);
    address.sin_port = htons(destination.port);
    if (const int error = socket.Connect(address, NoLimit)) {
        ThrowTraced("OpenConnection, WSAConnect throws: ", error);
    }
    stream.Open(std::move(socket), abortEvent);
}

uint32_t GetAddr(const QString& host)
{
    // The engine speaks IPv4 only (RFC 959, PASV), so it asks for nothing else.
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (const int result = ::getaddrinfo(Narrow(host).c_str(), nullptr, &hints, &list)) {
        ThrowTraced("GetAddr, getaddrinfo throws: ", EngineStatus::FromResolver(result));
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    return FirstAddress(*list);
}

uint32_t FirstAddress(const addrinfo& list)
{
    return reinterpret_cast<const sockaddr_in*>(list.ai_addr)->sin_addr.s_addr;
}
