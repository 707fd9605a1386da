#pragma once

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

// A socket that listens on a free port of the loopback interface.
class CListener {
public:
    explicit CListener(int backlog = 16);

    uint16_t GetPort() const { return port; }
    // None if stop was signalled first.
    CSocket Accept(const CEvent& stop);
    int GetDescriptor() const { return socket.GetDescriptor(); }
    void Close() { socket.Close(); }

private:
    CSocket socket;
    uint16_t port = 0;
};

sockaddr_in LoopbackAddress(uint16_t port);

// Two ends of one connection.
struct SocketPair {
    SocketPair();
    CSocket client;
    CSocket server;
};

// Sends all bytes, or as many as the peer takes before it closes or stop is signalled.
void SendAll(CSocket& socket, std::string_view bytes, const CEvent& stop);

// One client's visit to a scripted server. On the server's thread; all waits end when the server is stopped.
class CServerSession {
public:
    CServerSession(CSocket control, const CEvent& stop);

    void Send(std::string_view bytes) { SendAll(control, bytes, stop); }
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
    CListener& GetDataListener() { return *dataListener; }
    // False if nobody came, and the client has hung up instead.
    bool AcceptData();
    void SendData(std::string_view bytes) { SendAll(data, bytes, stop); }
    // Until the client closes.
    std::string ReadData();
    // Waits for the first bytes.
    void TakeSomeData();
    // Takes a little at a time until the client closes.
    void SipData(std::chrono::milliseconds pause);
    void CloseData() { data.Close(); }
    void ResetData();

    // One line without its end; false when the client has hung up.
    bool ReadLine(std::string& line);
    const CEvent& GetStop() const { return stop; }

private:
    CSocket control;
    CSocket data;
    std::unique_ptr<CListener> dataListener;
    std::string received;
    const CEvent& stop;
};

// An FTP server that does what a test tells it, and what is right where it is told nothing: one client after
// the other, on a thread of its own.
class CScriptedServer {
public:
    using Handler = std::function<void(CServerSession& session, const std::string& argument)>;

    CScriptedServer();
    ~CScriptedServer();
    CScriptedServer(const CScriptedServer&) = delete;
    CScriptedServer& operator=(const CScriptedServer&) = delete;

    // To be told before Start. verb: of a command, or "GREETING".
    void On(const std::string& verb, Handler handler) { handlers[verb] = std::move(handler); }
    // Answers with these bytes and does nothing else.
    void Reply(const std::string& verb, const std::string& bytes);
    // Handles the verb as told the first time only, and properly afterwards.
    void Once(const std::string& verb, Handler handler);
    void Start();
    void Stop();

    FTPDestinationConnection GetDestination(const QString& directory = {}) const;
    uint16_t GetPort() const { return listener.GetPort(); }

    // What all clients have said, line by line.
    std::vector<std::string> GetCommands();
    // What was stored, by the name in STOR.
    std::map<std::string, std::string> GetFiles();
    // What LIST answers.
    std::string listing;

private:
    void Serve(CSocket client);
    void Handle(CServerSession& session, const std::string& line);
    void AddProperHandlers();

    CListener listener;
    CEvent stop;
    std::map<std::string, Handler> handlers;
    std::map<std::string, Handler> properHandlers;
    std::thread thread;

    // Guarded by lock.
    std::mutex lock;
    std::vector<std::string> commands;
    std::map<std::string, std::string> files;
};
