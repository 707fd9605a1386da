#include "support/ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

#include "ftpengine/net/Event.h"

sockaddr_in LoopbackAddress(uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

CListener::CListener(int backlog)
{
    EXPECT_EQ(socket.Create(), 0);
    sockaddr_in address = LoopbackAddress(0);
    EXPECT_EQ(::bind(socket.GetDescriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket.GetDescriptor(), backlog), 0);
    socklen_t size = sizeof address;
    EXPECT_EQ(::getsockname(socket.GetDescriptor(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    port = ntohs(address.sin_port);
}

CSocket CListener::Accept(const CEvent& stop)
{
    for (;;) {
        if (WaitForFirst({UntilSet(stop), {socket.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            return {};
        }
        const int descriptor = ::accept(socket.GetDescriptor(), nullptr, nullptr);
        if (descriptor >= 0) {
            const int on = 1;
            ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
            return CSocket(descriptor);
        }
    }
}

SocketPair::SocketPair()
{
    CListener listener;
    const CEvent never;
    EXPECT_EQ(client.Create(), 0);
    EXPECT_EQ(client.Connect(LoopbackAddress(listener.GetPort()), NoLimit), 0);
    server = listener.Accept(never);
}

void SendAll(CSocket& socket, std::string_view bytes, const CEvent& stop)
{
    while (!bytes.empty() && socket.IsOpen()) {
        const SocketResult result = socket.Send(bytes.data(), bytes.size());
        if (result.error != 0) {
            socket.Close();
            return;
        }
        bytes.remove_prefix(result.bytes);
        if (result.wouldBlock &&
            WaitForFirst({UntilSet(stop), {socket.GetDescriptor(), true}}, NoLimit) == WaitResult::First) {
            return;
        }
    }
}

namespace {

// Reads until there is nothing left to read or the text is long enough; false at the end of the connection.
bool ReadMore(CSocket& socket, std::string& text, const CEvent& stop)
{
    for (;;) {
        if (!socket.IsOpen() ||
            WaitForFirst({UntilSet(stop), {socket.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            return false;
        }
        char bytes[4096];
        const SocketResult result = socket.Receive(bytes, sizeof bytes);
        if (result.bytes > 0) {
            text.append(bytes, result.bytes);
            return true;
        }
        if (!result.wouldBlock) {
            return false;
        }
    }
}

void CloseWithReset(CSocket& socket)
{
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket.GetDescriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.Close();
}

} // namespace

CServerSession::CServerSession(CSocket control, const CEvent& stop) : control(std::move(control)), stop(stop)
{}

void CServerSession::SendInPieces(const std::vector<std::string>& pieces, std::chrono::milliseconds pause)
{
    for (const std::string& piece : pieces) {
        Send(piece);
        static_cast<void>(stop.Wait(pause));
    }
}

void CServerSession::Stall()
{
    std::string ignored;
    while (ReadMore(control, ignored, stop)) {
    }
    control.Close();
}

void CServerSession::Close()
{
    control.Close();
}

void CServerSession::Reset()
{
    CloseWithReset(control);
}

std::string CServerSession::ListenForData(int backlog)
{
    dataListener = std::make_unique<CListener>(backlog);
    const uint16_t port = dataListener->GetPort();
    return "227 Entering Passive Mode (127,0,0,1," + std::to_string(port / 256) + "," +
           std::to_string(port % 256) + ").\r\n";
}

bool CServerSession::AcceptData()
{
    if (!dataListener || dataListener->GetDescriptor() < 0 ||
        WaitForFirst({UntilSet(stop), {dataListener->GetDescriptor()}, {control.GetDescriptor()}}, NoLimit) !=
            WaitResult::Second) {
        return false;
    }
    data = dataListener->Accept(stop);
    return data.IsOpen();
}

void CServerSession::TakeSomeData()
{
    std::string taken;
    ReadMore(data, taken, stop);
}

std::string CServerSession::ReadData()
{
    std::string text;
    while (ReadMore(data, text, stop)) {
    }
    data.Close();
    return text;
}

void CServerSession::SipData(std::chrono::milliseconds pause)
{
    std::string taken;
    while (!stop.Wait(pause) && ReadMore(data, taken, stop)) {
    }
    data.Close();
}

void CServerSession::ResetData()
{
    CloseWithReset(data);
}

bool CServerSession::ReadLine(std::string& line)
{
    std::size_t end = received.find("\r\n");
    while (end == std::string::npos) {
        if (!ReadMore(control, received, stop)) {
            return false;
        }
        end = received.find("\r\n");
    }
    line = received.substr(0, end);
    received.erase(0, end + 2);
    return true;
}

CScriptedServer::CScriptedServer()
{
    AddProperHandlers();
}

CScriptedServer::~CScriptedServer()
{
    Stop();
}

void CScriptedServer::Reply(const std::string& verb, const std::string& bytes)
{
    On(verb, [bytes](CServerSession& session, const std::string&) { session.Send(bytes); });
}

void CScriptedServer::Once(const std::string& verb, Handler handler)
{
    auto used = std::make_shared<bool>(false);
    On(verb, [this, verb, used, handler](CServerSession& session, const std::string& argument) {
        const bool first = !std::exchange(*used, true);
        (first ? handler : properHandlers[verb])(session, argument);
    });
}

void CScriptedServer::AddProperHandlers()
{
    const auto replying = [](const char* bytes) {
        return [bytes](CServerSession& session, const std::string&) {
            session.Send(bytes);
        };
    };
    properHandlers = {
        {"GREETING", replying("220 ready\r\n")}, {"USER", replying("331 password\r\n")},
        {"PASS", replying("230 in\r\n")},        {"CWD", replying("250 changed\r\n")},
        {"MKD", replying("257 made\r\n")},       {"RNFR", replying("350 to what\r\n")},
        {"RNTO", replying("250 renamed\r\n")},   {"TYPE", replying("200 type\r\n")},
    };
    properHandlers["QUIT"] = [](CServerSession& session, const std::string&) {
        session.Send("221 bye\r\n");
        session.Stall();
    };
    properHandlers["PASV"] = [](CServerSession& session, const std::string&) {
        session.Send(session.ListenForData());
    };
    properHandlers["LIST"] = [this](CServerSession& session, const std::string&) {
        session.Send("150 here it comes\r\n");
        if (session.AcceptData()) {
            session.SendData(listing);
            session.CloseData();
            session.Send("226 done\r\n");
        }
    };
    properHandlers["NLST"] = properHandlers["LIST"];
    properHandlers["STOR"] = [this](CServerSession& session, const std::string& name) {
        session.Send("150 go on\r\n");
        if (session.AcceptData()) {
            const std::string bytes = session.ReadData();
            {
                const std::lock_guard guard(lock);
                files[name] = bytes;
            }
            session.Send("226 stored\r\n");
        }
    };
}

void CScriptedServer::Start()
{
    handlers.insert(properHandlers.begin(), properHandlers.end());
    thread = std::thread([this] {
        for (CSocket client = listener.Accept(stop); client.IsOpen(); client = listener.Accept(stop)) {
            Serve(std::move(client));
        }
    });
}

void CScriptedServer::Stop()
{
    stop.Set();
    if (thread.joinable()) {
        thread.join();
    }
}

void CScriptedServer::Serve(CSocket client)
{
    CServerSession session(std::move(client), stop);
    handlers["GREETING"](session, {});
    std::string line;
    while (session.ReadLine(line)) {
        {
            const std::lock_guard guard(lock);
            commands.push_back(line);
        }
        Handle(session, line);
    }
}

void CScriptedServer::Handle(CServerSession& session, const std::string& line)
{
    const std::size_t blank = line.find(' ');
    const auto found = handlers.find(line.substr(0, blank));
    if (found == handlers.end()) {
        session.Send("500 what?\r\n");
    } else {
        found->second(session, blank == std::string::npos ? std::string() : line.substr(blank + 1));
    }
}

FTPDestinationConnection CScriptedServer::GetDestination(const QString& directory) const
{
    return {.displayName = {},
            .userName = QStringLiteral("anna"),
            .password = QStringLiteral("s3cret"),
            .server = QStringLiteral("127.0.0.1"),
            .directory = directory,
            .port = GetPort()};
}

std::vector<std::string> CScriptedServer::GetCommands()
{
    const std::lock_guard guard(lock);
    return commands;
}

std::map<std::string, std::string> CScriptedServer::GetFiles()
{
    const std::lock_guard guard(lock);
    return files;
}
