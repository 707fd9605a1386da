#pragma once

#include <optional>

#include <QElapsedTimer>
#include <QEventLoop>

#include "cli/Interrupts.h"
#include "deploy/DeployJob.h"
#include "deploy/SiteUpload.h"
#include "resources/StringTable.h"

class CProjectSession;

// Shows the progress of a deployment on standard output: a bar that is drawn over itself on a terminal, else
// a plain line at each tenth. Single-threaded.
class CDeployProgressDisplay {
public:
    explicit CDeployProgressDisplay(bool onTerminal) : onTerminal(onTerminal) {}

    // step: the text with the two numbers. Another step than the last begins anew.
    void Show(int32_t done, int32_t total, StringId step);
    // Leaves the line of the bar.
    void End();

private:
    const bool onTerminal;
    std::optional<StringId> lastStep;
    int64_t lastTenth = 0;
    bool barShown = false;
};

// One deployment at the command line: the generation and, if the site goes to a server, the upload. The first
// interrupt cancels it; the second ends the program at once. Works on the event loop of the program's first
// thread.
class CDeployRun {
public:
    struct Options {
        bool quiet = false; // no progress
        bool leaveOutMissing = false;
        bool overwrite = false; // somebody else's files in the target
    };
    // session: borrowed, with an open project.
    CDeployRun(CProjectSession& session, Options options);

    // These answer an ExitCode, and tell the person what has come of it.
    int ToFolder(const QString& folder);
    // The pages go to a temporary folder first. directory: on the server, seen from the login's folder.
    int ToServer(const FTPDestinationConnection& destination, const QString& directory);

private:
    void Generate();
    // An ExitCode, if the run ends here.
    std::optional<int> FindEnd() const;
    std::optional<DeployError> Upload(CSiteUpload& upload);
    // sentFiles: nothing for a site in a folder.
    int ReportDone(std::optional<int32_t> sentFiles);
    void OnInterrupt(uint64_t count);
    void OnJobMessage(const DeployMessage& message);
    void OnUploadMessage(const FTPMessage& message, CSiteUpload& upload);
    void ShowProgress(int32_t done, int32_t total, StringId step);

    CProjectSession& session;
    const Options options;
    QElapsedTimer timer;
    CDeployProgressDisplay display;
    QEventLoop loop;
    CDeployJob job;
    CFTPEngine engine;
    const CInterrupts interrupts;
};
