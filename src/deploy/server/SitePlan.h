#pragma once

#include <optional>
#include <set>
#include <vector>

#include <QStringList>

#include "deploy/server/SiteManifest.h"

// A file of the site as it is to be.
struct LocalFile {
    QString path;         // of the site
    QString source;       // where it lies
    int64_t size = 0;     // bytes
    int64_t modified = 0; // nanoseconds since 1970
    QByteArray hash;      // of CContentHash; empty as long as nobody has read the file
};

// A file on the server, as far as a listing tells.
struct RemoteFile {
    std::optional<int64_t> size;
    std::optional<int64_t> modified; // seconds since 1970 by the server's clock, which may be any
};

// What the server has, in the directories that a site is concerned with.
struct RemoteSite {
    std::map<QString, RemoteFile> files; // by path of the site; also those of others
    std::set<QString> directories;       // that are there; "" for the site's own
    // The manifest, or what this computer knows in its place, with its own notes of what came after it.
    std::optional<SiteManifest> manifest;
    std::set<QString> amended;           // its files that those notes are about
    bool isManifestThere = false;        // on the server
    bool isLastOurs = false;             // nobody else has written it since this computer's notes
    std::optional<int64_t> manifestTime; // of its last change, by the server's clock
};

// A whole file on the server that has not got its own name yet, by this computer's own notes.
struct StoredFile {
    int64_t size = 0;
    QByteArray hash;
};

// What a comparison looks at. References are borrowed for the call.
struct PlanInput {
    const std::vector<LocalFile>& local;
    const RemoteSite& remote;
    const std::map<QString, StoredFile>& stored; // by path of the site
    QString sender;                              // whose temporary files may go at once
    int64_t now = 0;                             // seconds since 1970
    bool removeLeftovers = true;                 // false: what the site no longer has stays on the server
};

// The server has something that may be this file, so that its hash is to be known before the comparison.
bool NeedsHash(const LocalFile& file, const RemoteSite& remote, const QString& sender);

// The order in which a site is changed, so that visitors never meet a link to something that isn't there:
// what nobody sees yet comes first, what others lead to before what leads there, and what nobody leads to any
// longer goes last. One step begins when the one before is done.
enum class SiteStep { NewAssets, ChangedAssets, NewPages, NewEntries, ChangedPages, ChangedEntries, Front };

struct PlannedFile {
    LocalFile file;
    SiteStep step = SiteStep::NewAssets;
    bool isNew = false;    // nothing of that name is there
    bool isStored = false; // it is there whole, and only has to get its name
};

// What makes a site on a server the one that it is to be. A plain value.
struct SitePlan {
    std::vector<PlannedFile> sends; // by step, then path
    ManifestFiles named;            // they have got their names without a note of it: the program was ended
    QStringList directories;        // to be made, upper ones first
    QStringList removedPages;       // go before the assets that they show
    QStringList removedAssets;      // go last
    QStringList temporaries;        // leftovers of runs that were ended
    QStringList strangers;          // somebody else's files that would be overwritten, by path
    ManifestFiles opened;     // for the manifest before anything is changed: what is to be sent is not whole
    QJsonObject manifestRest; // of the manifest so far
    bool isManifestThere = false;   // the server has taken one before
    bool isManifestCurrent = false; // nothing has to be written into it
    int32_t unchanged = 0;

    int32_t CountNew() const;
    int32_t CountChanged() const { return static_cast<int32_t>(sends.size()) - CountNew(); }
    int32_t CountRemoved() const { return static_cast<int32_t>(removedPages.size() + removedAssets.size()); }
    int64_t CountBytes() const; // to be sent
    bool IsEmpty() const { return sends.empty() && CountRemoved() == 0; }
};

// Compares; a local hash that isn't known equals none. A file of the manifest is sent again if the server has
// it no longer, or with another size, or has changed it later than the manifest. Without a manifest a file of
// the same size counts as the project's own work of earlier versions: as the same one if it is an asset,
// while a page is sent again.
SitePlan MakeSitePlan(const PlanInput& input);

// The directories that a comparison needs to know: of all files, and those above. "" is among them.
std::set<QString> DirectoriesOf(const std::vector<LocalFile>& local, const ManifestFiles& listed);
