#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <vector>

#include "deploy/server/SessionCrew.h"

// Thrown where the program is ended without notice: nothing that it does afterwards counts.
struct Killed {};

// A server in memory with everything that can go wrong on one, for tests of what talks to CRemoteSession. The
// sessions keep to the contract, and complain about a client that doesn't. Safe for several threads; the
// callbacks come under its lock.
class CMemoryServer {
public:
    enum class Verb {
        Open,
        List,
        MakeDirectory,
        Rename,
        RemoveFile,
        RemoveDirectory,
        Send,
        Read,
        GetSize,
        KeepAlive
    };
    enum class Fault {
        None,
        CutBefore,  // the connection breaks, and nothing has happened
        CutInside,  // in the middle of a file
        CutAfter,   // it has happened, but the reply is lost
        Refuse,     // 550
        NoSpace,    // 552 in the middle of a file
        Goodbye,    // 421
        StoreLess,  // a part of the file is stored, and the transfer is confirmed
        KillBefore, // the program is ended
        KillInside,
        KillAfter,
        Cancel, // the person cancels
    };
    struct Operation {
        Verb verb;
        QString path;
        QString newPath; // of a rename
        int number;      // from 1, of all
    };
    struct File {
        QByteArray bytes;
        int64_t modified = 0;
    };

    // What the server is like. To be set before it is used.
    size_t mostSessions = 100;
    bool tellsSizes = true; // when it is asked for one, and after a transfer; listings have them
    bool tellsTimes = true;
    bool takesDotNames = true;
    bool renamesOver = true; // else a file in the way is removed first, as a step of its own

    // Said about each operation before it is done; empty: nothing goes wrong.
    std::function<Fault(const Operation&)> onOperation;
    std::function<void()> onChange; // a client has changed something
    std::function<void(const QString& oldPath, const QString& newPath)> onNamed; // a file was renamed
    std::function<void(const QString& path)> onLost; // a rename was broken after the file in its way had gone
    std::function<void(const QString& path)> onConfirmed; // a client was told that a file is there
    std::function<void(const QString& path, const QByteArray& bytes)> onSend; // a client begins to send

    SessionOpener MakeOpener(const std::shared_ptr<CEvent>& abort);

    // These are the tests' own, outside of any session.
    void Put(const QString& path, const QByteArray& bytes);
    void Remove(const QString& path);
    const File* Find(const QString& path) const;
    std::map<QString, File> files;
    std::set<QString> directories{QString()};
    int64_t clock = 1'000'000; // seconds since 1970; one more with each operation
    bool isDead = false;       // the program was ended
    int operations = 0;
    int64_t sentBytes = 0;
    size_t openSessions = 0;
    size_t mostOpened = 0;
    std::multiset<QString> sentPaths; // of whole files, by the names they were sent under

private:
    friend class CMemorySession;

    std::mutex mutex;
};
