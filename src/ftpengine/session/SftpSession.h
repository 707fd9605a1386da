#pragma once

#include <memory>
#include <string>

#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/session/SessionSetting.h"
#include "ftpengine/sftp/SftpChannel.h"
#include "ftpengine/sftp/SftpRefusal.h"

// Connects, makes sure of the server, logs in, and enters the destination's directory. Throws as the session
// does: 12045 (with the identity in the log) before anything about the user is sent, if the server isn't
// known; a refusal with 530 that names the ways that were tried, if nobody is let in; one with 550 if there
// is no such directory.
std::unique_ptr<CRemoteSession> OpenSftpSession(const SessionSetting& setting, SessionLog& log);

// Files on a server over SFTP, version 3. How it is connected to doesn't matter here.
class CSftpSession final : public CRemoteSession {
public:
    // directory: as in a destination: seen from the login's folder; a leading "/" makes it absolute, and "~/"
    // is the login's folder. log: borrowed; outlives the session.
    CSftpSession(std::unique_ptr<CSftpStream> stream, const QString& directory, SessionLog& log);

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
    void Enter(const QString& directory);
    std::string FindPath(std::string_view path);
    std::string Locate(const QString& path) const;
    // Writes to the transcript.
    void Note(const char* command, const QString& path);
    // The answer to a request about a path. Throws the refusal unless it is of that type.
    SftpAnswer Demand(SftpType type, const CSftpRequest& request, const QString& path);
    void DemandDone(const CSftpRequest& request, const QString& path);
    [[noreturn]] void Refuse(const FTPReply& reply);

    std::vector<SftpEntry> ReadEntries(const QString& directory);
    std::string Open(SftpType type, const CSftpRequest& request, const QString& path);
    std::optional<SftpAttributes> FindAttributes(const QString& path);
    void CloseQuietly(const std::string& handle);
    bool IsFull(const QString& path);

    SessionLog& log;
    const std::unique_ptr<CSftpStream> stream;
    CSftpChannel channel;
    std::string base; // the directory of the session; absolute
};
