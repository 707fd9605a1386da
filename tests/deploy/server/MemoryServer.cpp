#include "MemoryServer.h"

#include <QIODevice>
#include <gtest/gtest.h>

#include "deploy/server/SiteNames.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

FTPReply Refusal(int code, const char* text)
{
    return {.code = code, .text = QStringLiteral("%1 %2\r\n").arg(code).arg(QLatin1String(text))};
}

bool HasDotName(const QString& path)
{
    return path.startsWith(QLatin1Char('.')) || path.contains(QLatin1String("/."));
}

} // namespace

class CMemorySession final : public CRemoteSession {
public:
    using Verb = CMemoryServer::Verb;
    using Fault = CMemoryServer::Fault;

    CMemorySession(CMemoryServer& server, std::shared_ptr<CEvent> abort)
        : server(server), abort(std::move(abort))
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::Open, QString());
        if (server.openSessions >= server.mostSessions) {
            throw Refusal(421, "Too many connections");
        }
        ++server.openSessions;
        isOpen = true;
        server.mostOpened = std::max(server.mostOpened, server.openSessions);
        try {
            End(fault);
        } catch (...) {
            Close();
            throw;
        }
    }

    ~CMemorySession() override
    {
        const std::lock_guard lock(server.mutex);
        Close();
    }

    std::vector<RemoteEntry> List(const QString& directory) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::List, directory);
        Require(server.directories.contains(directory));
        std::vector<RemoteEntry> entries;
        for (const QString& path : server.directories) {
            if (!path.isEmpty() && DirectoryOf(path) == directory) {
                entries.push_back({.name = NameOf(path), .isDirectory = true, .size = {}, .modified = {}});
            }
        }
        for (const auto& [path, file] : server.files) {
            if (DirectoryOf(path) == directory) {
                RemoteEntry entry{.name = NameOf(path), .isDirectory = false, .size = {}, .modified = {}};
                entry.size = file.bytes.size();
                if (server.tellsTimes) {
                    entry.modified = file.modified;
                }
                entries.push_back(entry);
            }
        }
        End(fault);
        return entries;
    }

    QString ListInWords(const QString& directory) override
    {
        QString words;
        for (const RemoteEntry& entry : List(directory)) {
            words += entry.name + QLatin1Char('\n');
        }
        return words;
    }

    void MakeDirectory(const QString& path) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::MakeDirectory, path);
        Require(server.directories.contains(DirectoryOf(path)) && !server.files.contains(path));
        Require(server.takesDotNames || !HasDotName(path));
        server.directories.insert(path);
        Changed();
        End(fault);
    }

    void Rename(const QString& oldPath, const QString& newPath) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::Rename, oldPath, newPath);
        Require(server.files.contains(oldPath) && server.directories.contains(DirectoryOf(newPath)) &&
                !server.directories.contains(newPath));
        if (!server.renamesOver && server.files.erase(newPath) > 0) {
            if (fault == Fault::KillInside || fault == Fault::CutInside) {
                if (server.onLost) {
                    server.onLost(newPath);
                }
                End(fault);
            }
        }
        server.files[newPath] = server.files[oldPath];
        server.files.erase(oldPath);
        if (server.onNamed) {
            server.onNamed(oldPath, newPath);
        }
        Changed();
        End(fault);
    }

    void RemoveFile(const QString& path) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::RemoveFile, path);
        Require(server.files.erase(path) > 0);
        Changed();
        End(fault);
    }

    void RemoveDirectory(const QString& path) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::RemoveDirectory, path);
        bool isEmpty = server.directories.contains(path);
        for (const QString& other : server.directories) {
            isEmpty = isEmpty && DirectoryOf(other) != path;
        }
        for (const auto& [other, file] : server.files) {
            isEmpty = isEmpty && DirectoryOf(other) != path;
        }
        Require(isEmpty);
        server.directories.erase(path);
        End(fault);
    }

    void Send(QIODevice& source, const QString& path, const Progress& progress) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::Send, path);
        Require(server.directories.contains(DirectoryOf(path)) && !server.directories.contains(path));
        const QByteArray bytes = source.readAll();
        if (server.onSend) {
            server.onSend(path, bytes);
        }
        server.files[path] = {QByteArray(), server.clock};
        Changed();
        const bool isHalf = fault == Fault::CutInside || fault == Fault::KillInside ||
                            fault == Fault::NoSpace || fault == Fault::StoreLess;
        const QByteArray taken = isHalf ? bytes.left(bytes.size() / 2) : bytes;
        server.files[path] = {taken, server.clock};
        server.sentBytes += taken.size();
        Changed();
        if (progress && !taken.isEmpty()) {
            progress(taken.size());
        }
        if (fault == Fault::NoSpace) {
            throw Refusal(552, "Disk full");
        }
        if (fault == Fault::StoreLess && server.tellsSizes) {
            throw Refusal(451, "The server holds another size");
        }
        if (taken.size() == bytes.size()) {
            server.sentPaths.insert(path);
        }
        End(fault);
        if (server.onConfirmed) {
            server.onConfirmed(path);
        }
    }

    std::optional<QByteArray> Read(const QString& path, int64_t maximum) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::Read, path);
        const auto* const file = server.Find(path);
        End(fault);
        if (file && file->bytes.size() > maximum) {
            Close();
            throw EngineStatus::MessageTooLong;
        }
        return file ? std::optional(file->bytes) : std::nullopt;
    }

    std::optional<int64_t> GetSize(const QString& path) override
    {
        const std::lock_guard lock(server.mutex);
        const Fault fault = Begin(Verb::GetSize, path);
        const auto* const file = server.Find(path);
        End(fault);
        return file && server.tellsSizes ? std::optional<int64_t>(file->bytes.size()) : std::nullopt;
    }

    void KeepAlive() override
    {
        const std::lock_guard lock(server.mutex);
        End(Begin(Verb::KeepAlive, QString()));
    }

    void Quit() override
    {
        const std::lock_guard lock(server.mutex);
        Close();
    }

private:
    // What happens instead of the operation, or what is to happen after it.
    Fault Begin(Verb verb, const QString& path, const QString& newPath = QString())
    {
        if (server.isDead) {
            throw Killed();
        }
        EXPECT_TRUE(isOpen || verb == Verb::Open) << "a session is used after it was broken";
        ++server.clock;
        const int number = ++server.operations;
        const Fault fault =
            server.onOperation ? server.onOperation({verb, path, newPath, number}) : Fault::None;
        if (fault == Fault::Cancel) {
            abort->Set();
        }
        if (abort->IsSet()) {
            Close();
            throw EngineStatus::Aborted;
        }
        if (fault == Fault::KillBefore) {
            server.isDead = true;
            throw Killed();
        }
        if (fault == Fault::CutBefore) {
            Close();
            throw EngineStatus::ConnectionReset;
        }
        if (fault == Fault::Goodbye) {
            Close();
            throw Refusal(421, "Goodbye");
        }
        if (fault == Fault::Refuse) {
            throw Refusal(550, "No");
        }
        return fault;
    }

    void End(Fault fault)
    {
        if (fault == Fault::KillAfter || fault == Fault::KillInside) {
            server.isDead = true;
            throw Killed();
        }
        if (fault == Fault::CutAfter || fault == Fault::CutInside) {
            Close();
            throw EngineStatus::ConnectionReset;
        }
    }

    static void Require(bool condition)
    {
        if (!condition) {
            throw Refusal(550, "Not so");
        }
    }

    void Changed()
    {
        if (server.onChange) {
            server.onChange();
        }
    }

    void Close()
    {
        if (isOpen) {
            isOpen = false;
            --server.openSessions;
        }
    }

    CMemoryServer& server;
    const std::shared_ptr<CEvent> abort;
    bool isOpen = false;
};

SessionOpener CMemoryServer::MakeOpener(const std::shared_ptr<CEvent>& abort)
{
    return [this, abort](SessionLog&) {
        return std::make_unique<CMemorySession>(*this, abort);
    };
}

void CMemoryServer::Put(const QString& path, const QByteArray& bytes)
{
    for (QString above = DirectoryOf(path); !above.isEmpty(); above = DirectoryOf(above)) {
        directories.insert(above);
    }
    files[path] = {bytes, ++clock};
}

void CMemoryServer::Remove(const QString& path)
{
    files.erase(path);
}

const CMemoryServer::File* CMemoryServer::Find(const QString& path) const
{
    const auto found = files.find(path);
    return found == files.end() ? nullptr : &found->second;
}
