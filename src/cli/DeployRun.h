#pragma once

#include <memory>
#include <optional>

#include <QElapsedTimer>
#include <QEventLoop>

#include "cli/Interrupts.h"
#include "deploy/Deployment.h"
#include "resources/StringTable.h"

class CProjectSession;

// Shows the progress of a deployment on standard output: a bar that is drawn over itself on a terminal, else
// a plain line at each tenth. Single-threaded.
class CDeployProgressDisplay {
public:
    explicit CDeployProgressDisplay(bool onTerminal) : onTerminal(onTerminal) {}

    // step: the text with the two numbers. Another step than the last begins anew.
    void Show(int32_t done, int32_t total, StringId step);
    // Of the sending: the files, and on a terminal also the bytes, their rate and the time left.
    void Show(const SendProgress& progress);
    // Leaves the line of the bar.
    void End();

private:
    void BeginStep(StringId step);
    void DrawBar(int64_t done, int64_t total, const QString& text);
    void PrintTenth(int64_t done, int64_t total, const QString& text);

    const bool onTerminal;
    std::optional<StringId> lastStep;
    int64_t lastTenth = 0;
    qsizetype barLength = 0; // characters; 0 if none is shown
};

// One deployment at the command line. The first interrupt cancels it; the second ends the program at once.
// Works on the event loop of the program's first thread. Made for one run.
class CDeployRun {
public:
    struct Options {
        bool quiet = false; // no progress
        bool leaveOutMissing = false;
        bool overwrite = false; // somebody else's files in the target
        bool isDryRun = false;  // of a server: tells what would be sent
    };
    // session: borrowed, with an open project.
    CDeployRun(CProjectSession& session, Options options);

    // These answer an ExitCode, and tell the person what has come of it.
    int ToFolder(const QString& folder);
    int ToServer(const FTPDestinationConnection& destination);

private:
    void Deploy(const DeploymentTarget& target);
    // An ExitCode.
    int Report(const DeployDone&);
    int Report(const DeployCancelled&);
    int Report(const DeployFailure& failure);
    int Report(const DeployDoubts& doubts);
    int Report(const ServerDoubt& doubt);
    int ReportEnd();
    int ReportPublished(const QString& seconds);

    void OnInterrupt(uint64_t count);
    void OnMessage(const DeploymentMessage& message);
    void On(const DeployPhaseBegun& begun);
    void On(const DeployPagesDone& pages);
    void On(const DeploySummary&) {}
    void On(const SendProgress& progress);
    void On(const SendRetry& retry);
    void On(const DeployEnded&) { loop.quit(); }

    CProjectSession& session;
    const Options options;
    QElapsedTimer timer;
    CDeployProgressDisplay display;
    QEventLoop loop;
    std::optional<QString> folder; // the target, unless it is a server
    FTPDestinationConnection server;
    bool hasBegunToSend = false;
    std::unique_ptr<CDeployment> deployment;
    const CInterrupts interrupts;
};
