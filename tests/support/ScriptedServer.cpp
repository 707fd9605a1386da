#include "support/ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
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

SocketAddress LoopbackAddress(uint16_t port, int family)
{
    if (family == AF_INET) {
        return LoopbackAddress(port);
    }
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    address.sin6_port = htons(port);
    return {reinterpret_cast<const sockaddr*>(&address), sizeof address};
}

CListener::CListener(int backlog, int family)
{
    EXPECT_EQ(socket.Create(family), 0);
    SocketAddress address = LoopbackAddress(0, family);
    if (::bind(socket.GetDescriptor(), address.Get(), address.size) != 0) {
        EXPECT_EQ(family, AF_INET6);
        socket.Close();
        return;
    }
    EXPECT_EQ(::listen(socket.GetDescriptor(), backlog), 0);
    socklen_t size = sizeof address.storage;
    EXPECT_EQ(::getsockname(socket.GetDescriptor(), reinterpret_cast<sockaddr*>(&address.storage), &size), 0);
    port = address.GetPort();
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

CServerSession::CServerSession(CSocket control, const CEvent& stop) : control(std::move(control)), stop(stop)
{}

bool CServerSession::Protect(CTlsServer& tls)
{
    received.clear();
    return control.Protect(tls, stop);
}

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
    while (control.ReadMore(ignored, stop)) {
    }
    control.Close(stop);
}

void CServerSession::Close()
{
    control.Close(stop);
}

void CServerSession::Reset()
{
    control.Reset();
}

std::string CServerSession::ListenForDataExtended()
{
    const auto peer = control.GetSocket().GetPeer();
    dataListener = std::make_unique<CListener>(16, peer ? peer->GetFamily() : AF_INET);
    return "229 Entering Extended Passive Mode (|||" + std::to_string(dataListener->GetPort()) + "|)\r\n";
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
    data = CServerChannel(dataListener->Accept(stop));
    return data.IsOpen() && (dataTls == nullptr || data.Protect(*dataTls, stop));
}

void CServerSession::TakeSomeData()
{
    std::string taken;
    data.ReadMore(taken, stop);
}

std::string CServerSession::ReadData()
{
    std::string text;
    while (data.ReadMore(text, stop)) {
    }
    dataWereComplete = data.HasNotice();
    data.Close(stop);
    return text;
}

int CServerSession::AwaitDataFailure()
{
    char bytes[65536];
    for (;;) {
        const SocketResult result = data.GetSocket().Receive(bytes, sizeof bytes);
        if (result.error != 0 || (result.bytes == 0 && !result.wouldBlock)) {
            return result.error;
        }
        if (result.wouldBlock &&
            WaitForFirst({UntilSet(stop), {data.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            return 0;
        }
    }
}

void CServerSession::SipData(std::chrono::milliseconds pause)
{
    std::string taken;
    while (!stop.Wait(pause) && data.ReadMore(taken, stop)) {
    }
    data.Close(stop);
}

void CServerSession::ResetData()
{
    data.Reset();
}

bool CServerSession::ReadLine(std::string& line)
{
    std::size_t end = received.find("\r\n");
    while (end == std::string::npos) {
        if (!control.ReadMore(received, stop)) {
            return false;
        }
        end = received.find("\r\n");
    }
    line = received.substr(0, end);
    received.erase(0, end + 2);
    return true;
}

CScriptedServer::CScriptedServer(int family) : family(family), listener(16, family)
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
    AddHandlersOfSessions();
}

// What tasks don't say and sessions do.
void CScriptedServer::AddHandlersOfSessions()
{
    const auto replying = [](const char* bytes) {
        return [bytes](CServerSession& session, const std::string&) {
            session.Send(bytes);
        };
    };
    properHandlers["OPTS"] = replying("200 so be it\r\n");
    properHandlers["PWD"] = replying("257 \"/home\" is where you are\r\n");
    properHandlers["NOOP"] = replying("200 still here\r\n");
    properHandlers["RMD"] = replying("250 gone\r\n");
    properHandlers["FEAT"] = [this](CServerSession& session, const std::string&) {
        session.Send("211-Features:\r\n" + features + "211 End\r\n");
    };
    properHandlers["EPSV"] = [](CServerSession& session, const std::string&) {
        session.Send(session.ListenForDataExtended());
    };
    properHandlers["MLSD"] = properHandlers["LIST"];
    properHandlers["SIZE"] = [this](CServerSession& session, const std::string& name) {
        const auto stored = GetFiles();
        const auto found = stored.find(name);
        session.Send(found == stored.end() ? "550 none\r\n"
                                           : "213 " + std::to_string(found->second.size()) + "\r\n");
    };
    properHandlers["DELE"] = [this](CServerSession& session, const std::string& name) {
        const std::lock_guard guard(lock);
        session.Send(files.erase(name) == 1 ? "250 gone\r\n" : "550 none\r\n");
    };
    properHandlers["RETR"] = [this](CServerSession& session, const std::string& name) {
        const auto stored = GetFiles();
        const auto found = stored.find(name);
        if (found == stored.end()) {
            session.Send("550 none\r\n");
            return;
        }
        session.Send("150 here it comes\r\n");
        if (session.AcceptData()) {
            session.SendData(found->second);
            session.CloseData();
            session.Send("226 done\r\n");
        }
    };
}

void CScriptedServer::UseTls(const std::shared_ptr<CTlsServer>& tls, bool implicit)
{
    if (implicit) {
        properHandlers["GREETING"] = [tls](CServerSession& session, const std::string&) {
            if (session.Protect(*tls)) {
                session.Send("220 ready\r\n");
            }
        };
    } else {
        properHandlers["AUTH"] = [tls](CServerSession& session, const std::string&) {
            session.Send("234 go on\r\n");
            session.Protect(*tls);
        };
    }
    properHandlers["PBSZ"] = [](CServerSession& session, const std::string&) {
        session.Send("200 PBSZ=0\r\n");
    };
    properHandlers["PROT"] = [tls](CServerSession& session, const std::string& level) {
        session.ProtectData(level == "P" ? tls.get() : nullptr);
        session.Send("200 done\r\n");
    };
}

void CScriptedServer::Start()
{
    handlers.insert(properHandlers.begin(), properHandlers.end());
    thread = std::thread([this] { Run(); });
}

void CScriptedServer::Run()
{
    std::thread serving;
    for (CSocket client = listener.Accept(stop); client.IsOpen(); client = listener.Accept(stop)) {
        if (refusesOthers && isBusy) {
            SendAll(client, "421 Somebody else is here\r\n", stop);
            continue;
        }
        if (serving.joinable()) {
            serving.join();
        }
        isBusy = true;
        serving = std::thread([this, served = std::make_shared<CSocket>(std::move(client))] {
            Serve(std::move(*served));
            isBusy = false;
        });
        if (!refusesOthers) {
            serving.join();
        }
    }
    if (serving.joinable()) {
        serving.join();
    }
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
        // It has gone before it hears the reply.
        isBusy = isBusy && line != "QUIT";
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
            .server = family == AF_INET ? QStringLiteral("127.0.0.1") : QStringLiteral("::1"),
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

void CScriptedServer::PutFile(const std::string& name, const std::string& bytes)
{
    const std::lock_guard guard(lock);
    files[name] = bytes;
}
