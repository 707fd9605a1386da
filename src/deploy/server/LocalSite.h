#pragma once

#include <functional>
#include <map>
#include <vector>

#include <QString>

#include "deploy/server/SitePlan.h"

class CStopSignal;

// Where the files of a site lie on this computer, by path of the site.
using SiteSources = std::map<QString, QString>;

// The files of a site on this computer: sizes, and hashes as far as they are known. These are kept beside the
// site, so that only what has changed since is read: a file with the same size and time is the same, unless
// its time was so close to the reading that a second change could have been missed. Owned by the deployment,
// used by its thread.
class CLocalSite final {
public:
    // hashesPath: of the file of hashes; it may be lost at any time. Files that aren't there are left out.
    // Throws CFileException for one that may not be read.
    CLocalSite(const SiteSources& sources, const QString& hashesPath);

    // By path.
    const std::vector<LocalFile>& GetFiles() const { return files; }

    // Reads the files whose hash isn't known and is needed, on all cores. Throws CFileException for one that
    // can't be read. After a stop some are still unknown.
    void ReadHashes(const std::function<bool(const LocalFile&)>& isNeeded, const CStopSignal& stop);
    // What was read elsewhere.
    void SetHashes(const std::map<QString, QByteArray>& hashes);
    // For the next run; without it more is read again.
    void SaveHashes() const;

private:
    const QString hashesPath;
    const int64_t lookedAt; // nanoseconds since 1970
    std::vector<LocalFile> files;
};
