#pragma once

#include <chrono>
#include <map>
#include <vector>

#include <QString>
#include <QStringList>

class CStopSignal;

// The files of some names below some folders: what is looked through for files that have moved. Made once for
// all that are looked for, breadth first, so that what is near comes first. Hidden entries are left out, and
// no link is followed. A plain value.
class CFileIndex {
public:
    struct Limits {
        int levels = 4; // below the folders that are looked through
        size_t folders = 2000;
        // Of listing folders that are slow, such as those of a sleeping disk; the first hundred are listed
        // in any case.
        std::chrono::milliseconds time = std::chrono::milliseconds::max();
        const CStopSignal* stop = nullptr;
    };

    // names: those that are looked for, letter case counts.
    CFileIndex(const QStringList& folders, const std::vector<QString>& names, const Limits& limits);

    // Full paths. Empty for a name that was not looked for.
    const std::vector<QString>& GetFiles(const QString& name) const;
    // A limit or the stop signal has ended it before all folders were seen.
    bool IsCutShort() const { return isCutShort; }

private:
    std::map<QString, std::vector<QString>> files;
    bool isCutShort = false;
};
