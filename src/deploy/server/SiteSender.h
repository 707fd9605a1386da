#pragma once

#include <map>
#include <set>
#include <vector>

#include <QStringList>

#include "common/ThreadSafety.h"
#include "deploy/server/SendTally.h"
#include "deploy/server/SessionCrew.h"
#include "deploy/server/SiteJournal.h"
#include "deploy/server/SiteNames.h"
#include "deploy/server/SitePlan.h"

// Makes the site on a server what a plan says. At every moment each page there is whole, the old one or the
// new one, and what it shows is there: files come under temporary names and get their own when their size is
// confirmed, and the plan's steps follow one after the other. A run that is ended at any moment is gone on
// with by the next one. Made for one run, by the thread of the deployment.
class CSiteSender final {
public:
    // All that is borrowed outlives the sender.
    struct Setting {
        ServerPlace place;
        QString projectKey;
        CSessionCrew& crew;
        CSiteJournal& journal;
        // One call at a time, on any thread; may be empty.
        std::function<void(const SendProgress&)> onProgress;
        std::function<CSendTally::Clock::time_point()> now; // for tests; empty for the real one
        std::function<void()> onTidy = {};                  // all is sent, and leftovers are removed next
    };

    CSiteSender(const Setting& setting, const SitePlan& plan);

    // Returns when all is done. Throws SendFailure, SendCancelled, and CWin32Exception if the journal can't
    // be written. What has arrived by then is noted.
    void Run();

    // What didn't keep the run from its end; for people, complete after Run.
    const QStringList& GetWarnings() const { return warnings; }
    // Of the files that were sent, by path: what their bytes were when they were read.
    std::map<QString, QByteArray> GetSentHashes() const;

private:
    // A file that is being sent. Used by the thread that does its job.
    struct Sending {
        PlannedFile planned;
        bool mayHaveName = false; // it was being renamed when the connection broke
        int64_t counted = 0;      // bytes in the progress
    };

    void BeginNotes();
    void RunSteps();
    void MakePlace();
    void MakeDirectories(const QStringList& directories);
    void SendStep(size_t begin, size_t end);
    void SendFile(CRemoteSession& session, Sending& sending);
    void Store(CRemoteSession& session, Sending& sending);
    void SendBytes(CRemoteSession& session, Sending& sending);
    void GiveName(CRemoteSession& session, Sending& sending);
    bool HasName(CRemoteSession& session, Sending& sending);
    void NoteSent(const LocalFile& file);
    void RemoveFiles(const QStringList& paths);
    void RemoveFile(CRemoteSession& session, const QString& path);
    bool HasRemovedAll();
    bool IsThere(CRemoteSession& session, const QString& path) const;
    void RemoveTemporaries();
    void RemoveEmptyDirectories();
    void WriteManifest();
    bool PutManifest(CRemoteSession& session, const QByteArray& bytes);
    void TryToKeepManifest();

    const Setting setting;
    const SitePlan& plan;
    const QString run;
    CSendTally tally;
    QStringList warnings;
    bool isManifestTaken; // the server has one of ours; of one job at a time

    mutable CMutex mutex;
    ManifestFiles known VISTORAMA_GUARDED_BY(mutex); // the manifest as it would be now
    std::set<QString> removed VISTORAMA_GUARDED_BY(mutex);
    QStringList notRemoved VISTORAMA_GUARDED_BY(mutex);
};
