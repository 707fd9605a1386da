#pragma once

#include <memory>
#include <optional>
#include <thread>
#include <variant>
#include <vector>

#include <QString>
#include <QStringList>

#include "common/MessageTarget.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "deploy/DeployDoubts.h"
#include "deploy/DeployFailures.h"
#include "deploy/server/LocalSite.h"
#include "deploy/server/SendTally.h"
#include "deploy/server/SessionCrew.h"
#include "deploy/server/SitePlan.h"
#include "ftpengine/session/ServerIdentity.h"

class CGalleryProject;
class CServerDeployment;
class CSiteFolder;

// Where a site goes: a folder of this computer, or a directory on a server.
struct FolderTarget {
    QString folder;
};
struct ServerTarget {
    QString server;                // which one and as whom, so that the cache tells places apart; no password
    QString directory;             // seen from where sessions are opened; empty: that directory itself
    SessionOpener open;            // on any thread
    std::shared_ptr<CEvent> abort; // breaks what the sessions wait for; set by the deployment's cancel
    size_t mostSessions = 4;
};
using DeploymentTarget = std::variant<FolderTarget, ServerTarget>;

// The sections of a run, in their order. Those after Pages are a server's, and Tidy comes only if something
// is to be removed there.
enum class DeployPhase { Look, Pages, Compare, Send, Tidy };

// What a comparison has found.
struct DeploySummary {
    int32_t newFiles = 0;
    int32_t changedFiles = 0;
    int32_t removedFiles = 0;
    int32_t unchangedFiles = 0;
    int64_t bytes = 0;          // to be sent
    bool awaitsConsent = false; // the run goes on when it has that

    bool IsNothing() const { return newFiles == 0 && changedFiles == 0 && removedFiles == 0; }
    // "3 new", "1 changed", "0 removed", "5000 bytes".
    QStringList GetLines() const;
};

// What a deployment tells the face that has started it.
struct DeployPhaseBegun {
    DeployPhase phase;
};
struct DeployPagesDone {
    int32_t done = 0;
    int32_t total = 0;
};
struct DeployEnded {}; // the last one; GetEnd says how
using DeploymentMessage =
    std::variant<DeployPhaseBegun, DeployPagesDone, DeploySummary, SendProgress, SendRetry, DeployEnded>;
using CDeploymentReceiver = CMessageTarget<DeploymentMessage>;

// How a run can end. After a doubt a face may ask, and start again with the decision.
struct DeployDone {};
struct DeployCancelled {};
// The server's identity is in question, or its protection.
struct ServerDoubt {
    int status = 0; // UntrustedServer, TlsNotOffered or TlsDemanded (EngineStatus.h)
    std::optional<ServerIdentity> identity;
};
using DeployEnd = std::variant<DeployDone, DeployCancelled, DeployFailure, DeployDoubts, ServerDoubt>;

// What came of a run, also of one that hasn't come to its end.
struct DeployResult {
    GenerationResult generation;
    std::optional<DeploySummary> summary; // of a server, as soon as it was compared
    std::vector<QString> transcript;      // of a session that couldn't be opened, without secrets
    QStringList warnings;                 // of the missing, the generation and the server, in that order
};

// What a person should decide about a target before a run, as far as it can be known without going to a
// server: a run finds the same by itself. Nobody else may change the project meanwhile. Throws as
// GeneratePages does.
DeployDoubts ExamineDeployment(CGalleryProject& project, const DeploymentTarget& target,
                               const QString& recordsFolder);

// The one road on which a gallery leaves the program: looks at what a person should decide, makes the site,
// and, if it goes to a server, compares it with what is there and sends what differs. Owned by the face that
// starts it. While the thread runs nobody else may change the project. The results are read after the message
// DeployEnded, or after WaitFinished.
class CDeployment final : private CGenerationProgress {
public:
    struct Setting {
        DeploymentTarget target;
        // What a person has decided.
        bool leaveOutMissing = false; // absent pictures and unreadable watermarks; nothing is tidied up then
        bool overwrite = false;       // somebody else's files in the target
        bool isDryRun = false;      // of a server: ends after the comparison, with its summary or its doubts
        bool awaitsConsent = false; // of a server: waits after a comparison that has found something
        // Where records of folders and the sites of servers are kept.
        QString recordsFolder;
        QString sitesFolder;
    };

    // project: borrowed, outlives the deployment.
    CDeployment(CGalleryProject& project, const Setting& setting);
    // Cancels and waits.
    ~CDeployment() override;
    CDeployment(const CDeployment&) = delete;
    CDeployment& operator=(const CDeployment&) = delete;

    // Once. Messages are posted as long as the receiver exists.
    void Start(std::weak_ptr<CDeploymentReceiver> receiver);
    // Returns at once; the run ends within seconds.
    void RequestCancel();
    // To what the summary has told: it may be sent.
    void Consent();
    void WaitFinished();

    const DeployEnd& GetEnd() const { return end; }
    const DeployResult& GetResult() const { return result; }

private:
    void OnPageDone(int32_t donePages, int32_t totalPages) override;
    void Run();
    DeployEnd Deploy();
    DeployEnd DeployTo(const FolderTarget& target, CGalleryProject& published, const DeployDoubts& missing);
    DeployEnd DeployTo(const ServerTarget& target, CGalleryProject& published, const DeployDoubts& missing);
    SiteSources GenerateForServer(const CSiteFolder& folder, CGalleryProject& published,
                                  const DeployDoubts& missing);
    DeployEnd SendTo(CServerDeployment& server, const SitePlan& plan);
    DeployEnd EndOf(const SendFailure& failure);
    void Generate(CGalleryProject& published, const GenerationTarget& target);
    void Begin(DeployPhase phase);
    void Post(DeploymentMessage message);

    CGalleryProject& project;
    const Setting setting;
    CStopSignal cancel;
    CEvent decision; // consent or cancel
    std::weak_ptr<CDeploymentReceiver> receiver;
    DeployEnd end;
    DeployResult result;
    std::thread thread;
};
