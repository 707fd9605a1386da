#pragma once

#include <cstdint>

#include <QString>

#include "common/Descriptor.h"

// The folder in the user's cache in which the site of one project for one place on a server is made and kept,
// with all that the program knows about it, so that the next deployment makes and sends only what changed.
// May be lost at any time. Locked as long as this lives: two programs would spoil each other's site. Owned by
// the run.
class CSiteFolder final {
public:
    struct Options {
        QString folder;                                  // of all sites
        int64_t limit = int64_t{5} * 1024 * 1024 * 1024; // bytes; beyond it the longest unused sites go
    };

    // key: tells project and place. Makes the folder. Throws CWin32Exception, and CGenericException if
    // another program is at work in it.
    CSiteFolder(const Options& options, const QString& key);
    CSiteFolder(const CSiteFolder&) = delete;
    CSiteFolder& operator=(const CSiteFolder&) = delete;

    QString GetSite() const;       // the folder of the files, with a trailing separator
    QString GetRecordPath() const; // of the CDeploymentRecord
    QString GetHashesPath() const;
    QString GetJournalPath() const;

    // Removes the sites of other projects and places that were not used for the longest time, until the limit
    // holds. Those in use stay, and this one.
    void RemoveLongestUnused() const;

private:
    const Options options;
    const QString name; // of the folder
    CDescriptor lock;
};

// Of all sites: bytes, and to remove those that nobody is at work with. For the cache in general.
int64_t GetSizeOfSites(const QString& folder);
void ClearSites(const QString& folder);
