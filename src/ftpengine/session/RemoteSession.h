#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

class QIODevice;

// An entry of a directory on a server, as far as the server tells.
struct RemoteEntry {
    QString name;
    bool isDirectory = false;
    std::optional<int64_t> size;     // bytes; of files
    std::optional<int64_t> modified; // seconds since 1970, UTC
};

// A server with somebody logged in, whatever the protocol is between here and there. Owned by the task or job
// that opened it and used on one thread at a time; every operation waits, in bounded time, and is broken by
// the abort event that the session was opened with.
//
// Paths have "/" between their names and are seen from the directory that the session was opened in; a
// leading "/" makes one absolute. Names are UTF-16 here and UTF-8 on the wire wherever the server can.
//
// Throws an int (EngineStatus.h) for a failure of the network or a cancel, after which the session is of no
// further use, and an FTPReply for a refusal of the server, after which it goes on. A server that speaks in
// other numbers is translated: 550 for what isn't there or isn't allowed, 552 for no space, 530 for a login.
class CRemoteSession {
public:
    // bytes: taken by the network since the last call. Called on the thread of the operation.
    using Progress = std::function<void(int64_t bytes)>;

    virtual ~CRemoteSession() = default;
    CRemoteSession(const CRemoteSession&) = delete;
    CRemoteSession& operator=(const CRemoteSession&) = delete;

    // Without "." and "..", in the server's order. A refusal with 550 if the directory isn't there.
    virtual std::vector<RemoteEntry> List(const QString& directory) = 0;
    // The same as the server writes it for people, line by line and as it came, for a person who wants to
    // look at it. What no line says of an entry, or whether it has one, is the server's own matter.
    virtual QString ListInWords(const QString& directory) = 0;
    // Makes one directory; the one above has to be there. Nothing happens if it is there already.
    virtual void MakeDirectory(const QString& path) = 0;
    // Replaces what bears the new name, in one step where the server can.
    virtual void Rename(const QString& oldPath, const QString& newPath) = 0;
    virtual void RemoveFile(const QString& path) = 0;
    // Refused if it isn't empty.
    virtual void RemoveDirectory(const QString& path) = 0;
    // Sends from the source's position to its end. A file of that name is replaced. When it returns, the
    // server has confirmed the file and, where it tells sizes, holds all of it; after a failure what is there
    // is incomplete. A refusal with 451 if the server holds another size.
    virtual void Send(QIODevice& source, const QString& path, const Progress& progress) = 0;
    // A small file; throws MessageTooLong if it has more than maximum bytes. Nothing if there is no such
    // file.
    virtual std::optional<QByteArray> Read(const QString& path, int64_t maximum) = 0;
    // Of a file, in bytes; nothing if it isn't there or the server doesn't tell.
    virtual std::optional<int64_t> GetSize(const QString& path) = 0;
    // Keeps a connection alive that has nothing to do.
    virtual void KeepAlive() = 0;
    // The goodbye, before the session is destroyed after success. Throws nothing.
    virtual void Quit() = 0;

protected:
    CRemoteSession() = default;
};
