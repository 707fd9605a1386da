#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include <QByteArray>
#include <QString>

#include "common/Descriptor.h"
#include "common/ThreadSafety.h"
#include "deploy/server/SiteManifest.h"
#include "deploy/server/SitePlan.h"

// What this computer has done to one site on a server since the manifest there was written: a file of lines
// in the user's cache, each written at once when its act is confirmed, so that a run that is ended at any
// moment loses nothing. What has been done since a manifest counts as long as that manifest is the one on the
// server: another computer begins with writing its own. May be lost at any time; then more is sent than
// needed.
//
// What stores notes and what asks for stored files may be called by any thread, all else by the owner's.
class CSiteJournal final {
public:
    // path: of the file; one that is missing or damaged is an empty journal.
    explicit CSiteJournal(const QString& path);
    CSiteJournal(const CSiteJournal&) = delete;
    CSiteJournal& operator=(const CSiteJournal&) = delete;

    // By which this computer's temporary files are known.
    const QString& GetSender() const { return sender; }

    // Adds what has been done since that manifest was written. The files that this is about.
    std::set<QString> Amend(SiteManifest& manifest) const;
    // In place of a manifest that the server hasn't got: the last one that this computer has written. If it
    // was taken by the server once, somebody has removed it since, and who knows what else has happened: the
    // files are the project's own then, but its pages don't count as whole.
    std::optional<SiteManifest> FindSubstitute() const;
    // The server has never taken a manifest: these notes are all that there is.
    bool IsOnlyRecord() const { return kept && !wasOnServer; }
    // Nobody else has written a manifest since that of this run, by these notes.
    bool Follows(const QString& run) const;
    // Files that came to the server under temporary names.
    std::map<QString, StoredFile> GetStored() const;
    bool IsStored(const QString& sitePath) const;

    // From here on the notes are those of another run; earlier ones still count, but of the stored files only
    // those named here. Throws CWin32Exception.
    void BeginRun(const QString& run, const std::set<QString>& stillStored = {});
    // The manifest of the run is on the server, so that earlier notes can go, or, if that takes none, is kept
    // here alone. Throws CWin32Exception.
    void NoteManifest(const SiteManifest& manifest, bool isOnServer);

    // These throw nothing: what can't be noted is sent again.
    void NoteStored(const QString& sitePath, const StoredFile& storedFile);
    // What lies under the file's temporary name is about to change.
    void NoteUnstored(const QString& sitePath);
    void NoteSent(const QString& sitePath, const ManifestFile& sent);
    void NoteRemoved(const QString& sitePath);

private:
    // What one run has done; by path, nothing for a file that was removed.
    struct Section {
        QString run;
        std::map<QString, std::optional<ManifestFile>> acts;
    };

    void Load();
    void TakeLine(const QJsonObject& line);
    void Rewrite() VISTORAMA_REQUIRES(mutex);
    void Open() VISTORAMA_REQUIRES(mutex);
    void Append(const QJsonObject& line);

    const QString path;
    QString sender;
    std::optional<SiteManifest> kept; // the last one that was written
    bool wasOnServer = false;         // the server has taken that

    mutable CMutex mutex;
    std::map<QString, StoredFile> stored VISTORAMA_GUARDED_BY(mutex);
    std::vector<Section> sections VISTORAMA_GUARDED_BY(mutex); // in the order of the runs
    CDescriptor file VISTORAMA_GUARDED_BY(mutex);              // negative as long as no run has begun
};
