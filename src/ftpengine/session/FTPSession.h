#pragma once

#include <functional>
#include <string>

#include "ftpengine/net/SocketStream.h"
#include "ftpengine/session/FTPDialogue.h"
#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/session/SessionSetting.h"

// A session by FTP, in clear or with TLS (RFC 959, 2228, 2389, 2428, 2640, 3659, 4217).
class CFTPSession final : public CRemoteSession {
public:
    // Not connected. log outlives the session.
    CFTPSession(const SessionSetting& setting, SessionLog& log);

    // Connects, logs in and enters the destination's directory, which has to be there. To be called once,
    // before anything else. Throws as ConnectAndLogIn does.
    void Open();

    std::vector<RemoteEntry> List(const QString& directory) override;
    QString ListInWords(const QString& directory) override;
    void MakeDirectory(const QString& path) override;
    void Rename(const QString& oldPath, const QString& newPath) override;
    void RemoveFile(const QString& path) override;
    void RemoveDirectory(const QString& path) override;
    void Send(QIODevice& source, const QString& path, const Progress& progress) override;
    std::optional<QByteArray> Read(const QString& path, int64_t maximum) override;
    std::optional<int64_t> GetSize(const QString& path) override;
    void KeepAlive() override;
    void Quit() override;

private:
    std::vector<RemoteEntry> ListByFacts(const std::string& directory);
    std::string ReceiveIn(const std::string& directory, const std::function<std::string()>& receive);
    std::vector<RemoteEntry> ListByLines(const std::string& directory);
    std::string ReceiveListing();
    std::string Receive(std::string_view verb, std::string_view argument, std::size_t maximum);
    bool IsDirectory(const std::string& path);
    void ReturnToBase();

    const SessionSetting setting;
    SessionLog& log;
    CSocketStream stream;
    CFTPDialogue dialogue;
    ServerFeatures features;
    std::string base; // the directory that paths are seen from, absolute
    bool listsHidden = true;
};

// One that is open. log outlives the session; what is in it when this throws tells why.
std::unique_ptr<CRemoteSession> OpenFTPSession(const SessionSetting& setting, SessionLog& log);
