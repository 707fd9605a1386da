#pragma once

#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>

#include "MemoryServer.h"
#include "deploy/server/SitePlan.h"
#include "support/ScratchFolder.h"

// One random history of a site on a server: somebody edits the site and deploys it again and again, while
// connections break, the program is killed, files are removed or replaced on the server, and other computers
// go on. After each step on the server somebody looks at the site there.
//
// What holds at every moment: each page is whole, as it is or as it once was; what it shows is there and
// whole; whoever starts at the front page meets no dead link. At the end: the server has the site and
// nothing else of ours, what belongs to others is untouched, and no file was sent a second time without
// need. What somebody has broken on purpose is excused until it was sent again.
class CSiteHistory {
public:
    struct Options {
        uint32_t seed = 0;
        size_t sessions = 1;
        bool isTold = false; // to standard output, operation by operation
    };
    explicit CSiteHistory(const Options& options);

    // Empty if all of that has held; else the first thing that hasn't, with the steps up to there.
    std::string Tell(int steps);

private:
    enum class End { Done, Killed, Failed, Cancelled, Doubts };

    void Edit();
    void WriteSite();
    QByteArray PageOf(const QString& path, const QStringList& links) const;
    QByteArray AssetOf(const QString& path, int version) const;

    End Deploy(bool overwrite);
    void DeployWithTrouble();
    void DeployUntilDone();
    void GoToAnotherComputer();
    void Tamper();
    void LoseManifest();
    void AddStranger();

    CMemoryServer::Fault FaultFor(const CMemoryServer::Operation& operation);
    CMemoryServer::Fault DrawFault(const CMemoryServer::Operation& operation);
    void OnNamed(const QString& oldPath, const QString& newPath);
    void OnSend(const QString& path, const QByteArray& bytes);
    void LookAsVisitor();
    void LookAtLinks(const QString& page, const QByteArray& bytes);
    void LookFromFront();
    void CheckTree();
    bool IsExcused(const QString& path) const { return tampered.contains(path) || others.contains(path); }
    void Fail(const QString& what);
    int Random(int below) { return static_cast<int>(random() % static_cast<uint32_t>(below)); }
    bool Chance(int percent) { return Random(100) < percent; }
    QString Computer(const char* name) const;

    const Options options;
    std::mt19937 random;
    std::mt19937 faultRandom; // for the server's threads, under its lock
    const CScratchFolder scratch;
    CMemoryServer server;
    std::shared_ptr<CEvent> abort;

    // The site as it is on this computer.
    std::map<int, int> pictures; // version by number
    std::map<int, int> gallery;  // the same, of the gallery "2"
    int styleVersion = 1;
    int textVersion = 1;
    std::map<QString, QByteArray> site;

    // What has happened on the server.
    std::map<QString, QByteArray> others;    // somebody else's
    std::set<QString> tampered;              // ours, but broken by somebody
    std::map<QString, QByteArray> confirmed; // what the program has made sure of, by the name it has now
    std::map<QString, QString> lastName;     // what became of a temporary one
    int computer = 0;
    bool isComplete = false; // the last run was
    bool isEdited = false;   // since then

    // Of the run.
    int killAt = 0;
    int cancelAt = 0;
    bool isTroubled = false;

    std::string told;
    std::string failure;
};
