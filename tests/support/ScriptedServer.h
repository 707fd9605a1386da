#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"
#include "support/TlsServer.h"

// A socket that listens on a free port of the loopback interface. Without IPv6 on this machine it isn't open.
class CListener {
public:
    // family: AF_INET or AF_INET6.
    explicit CListener(int backlog = 16, int family = AF_INET);

    uint16_t GetPort() const { return port; }
    // None if stop was signalled first.
    CSocket Accept(const CEvent& stop);
    int GetDescriptor() const { return socket.GetDescriptor(); }
    bool IsOpen() const { return socket.IsOpen(); }
    void Close() { socket.Close(); }

private:
    CSocket socket;
    uint16_t port = 0;
};

sockaddr_in LoopbackAddress(uint16_t port);
SocketAddress LoopbackAddress(uint16_t port, int family);

// Two ends of one connection.
struct SocketPair {
    SocketPair();
    CSocket client;
    CSocket server;
};

// One client's visit to a scripted server. On the server's thread; all waits end when the server is stopped.
class CServerSession {
public:
    CServerSession(CSocket control, const CEvent& stop);

    void Send(std::string_view bytes) { control.Send(bytes, stop); }
    // From here on by TLS; false if the two sides don't agree. For the data connections that follow: none in
    // clear.
    bool Protect(CTlsServer& tls);
    void ProtectData(CTlsServer* tls) { dataTls = tls; }
    // Each piece is sent when the client has had time to read the one before.
    void SendInPieces(const std::vector<std::string>& pieces, std::chrono::milliseconds pause);
    // Says nothing until the client hangs up.
    void Stall();
    void Close();
    // Closes in such a way that the client's end breaks.
    void Reset();
    bool IsOpen() const { return control.IsOpen(); }

    // Opens a data port; returns the reply to PASV for it.
    std::string ListenForData(int backlog = 16);
    // The same for EPSV.
    std::string ListenForDataExtended();
    CListener& GetDataListener() { return *dataListener; }
    // False if nobody came, and the client has hung up instead, or if there is no agreement on TLS.
    bool AcceptData();
    void SendData(std::string_view bytes) { data.Send(bytes, stop); }
    // Until the client closes.
    std::string ReadData();
    // Waits for the first bytes.
    void TakeSomeData();
    // Takes all there is until the connection ends or breaks; the number of its failure, 0 if it has ended.
    int AwaitDataFailure();
    // Takes a little at a time until the client closes.
    void SipData(std::chrono::milliseconds pause);
    void CloseData() { data.Close(stop); }
    // As somebody on the way could do it.
    void CutData() { data.CloseWithoutNotice(); }
    void ResetData();
    // By the notice of TLS, at the end of the last ReadData.
    bool WereDataComplete() const { return dataWereComplete; }

    // One line without its end; false when the client has hung up.
    bool ReadLine(std::string& line);
    const CEvent& GetStop() const { return stop; }

private:
    CServerChannel control;
    CServerChannel data;
    CTlsServer* dataTls = nullptr;
    bool dataWereComplete = false;
    std::unique_ptr<CListener> dataListener;
    std::string received;
    const CEvent& stop;
};

// An FTP server that does what a test tells it, and what is right where it is told nothing: one client after
// the other, on a thread of its own.
class CScriptedServer {
public:
    using Handler = std::function<void(CServerSession& session, const std::string& argument)>;

    // family: AF_INET or AF_INET6, which is the server "::1".
    explicit CScriptedServer(int family = AF_INET);
    ~CScriptedServer();
    CScriptedServer(const CScriptedServer&) = delete;
    CScriptedServer& operator=(const CScriptedServer&) = delete;

    // To be told before Start. verb: of a command, or "GREETING".
    void On(const std::string& verb, Handler handler) { handlers[verb] = std::move(handler); }
    // Answers with these bytes and does nothing else.
    void Reply(const std::string& verb, const std::string& bytes);
    // Handles the verb as told the first time only, and properly afterwards.
    void Once(const std::string& verb, Handler handler);
    // implicit: from the first byte on, without being asked.
    void UseTls(const std::shared_ptr<CTlsServer>& tls, bool implicit = false);
    // Whoever comes while another client is there gets a 421, as from servers that let in so many and no
    // more. Otherwise he waits.
    void RefuseOthers() { refusesOthers = true; }
    void Start();
    void Stop();

    FTPDestinationConnection GetDestination(const QString& directory = {}) const;
    uint16_t GetPort() const { return listener.GetPort(); }
    bool IsOpen() const { return listener.IsOpen(); }

    // What all clients have said, line by line.
    std::vector<std::string> GetCommands();
    // What was stored, by the name in STOR.
    std::map<std::string, std::string> GetFiles();
    // What is there already.
    void PutFile(const std::string& name, const std::string& bytes);
    // What LIST and MLSD answer.
    std::string listing;
    // What FEAT answers, line by line.
    std::string features = " UTF8\r\n EPSV\r\n SIZE\r\n";

private:
    void Run();
    void Serve(CSocket client);
    void Handle(CServerSession& session, const std::string& line);
    void AddProperHandlers();
    void AddHandlersOfSessions();

    const int family;
    CListener listener;
    CEvent stop;
    std::map<std::string, Handler> handlers;
    std::map<std::string, Handler> properHandlers;
    std::thread thread;
    bool refusesOthers = false;
    // From the greeting to the goodbye of a client, of whom another thread hears then.
    std::atomic<bool> isBusy = false;

    // Guarded by lock.
    std::mutex lock;
    std::vector<std::string> commands;
    std::map<std::string, std::string> files;
};
