#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include <QString>

#include "document/files/FileIndex.h"
#include "document/files/FileTrace.h"

// A file that is not at its path.
struct LostFile {
    QString path; // may be of another system: "/" and "\" both separate
    FileTrace trace;
};

struct FoundFile {
    QString path; // as it was lost
    QString found;
    bool hasExactSize = false; // as the trace tells it
};

// Finds files that have moved, all of a project in one pass. One file is never found for two, and none is
// that is taken. A path counts once, however many lose it. Values only: may be used on any thread.
class CLostFiles {
public:
    // taken: paths of files that are nobody's to find, since they are in the project already.
    CLostFiles(const std::vector<LostFile>& lost, std::set<QString> taken);

    // Those that have moved together with the project.
    std::vector<FoundFile> FindByTraces();

    // Those below the folders, by the longest common end of the path, whole names with letter case. Several
    // that are equally good are none, and so is one that has only the name in common and another size than
    // the trace tells. An index that was cut short may lack a better one, so that a file known by its name
    // alone needs the exact size then.
    std::vector<FoundFile> FindBelow(const QStringList& folders, const CFileIndex::Limits& limits);

private:
    struct Claim {
        const LostFile* lost;
        QString found;
        int commonEnd; // in names
    };
    std::vector<FoundFile> Grant(const std::vector<Claim>& claims);

    std::vector<LostFile> lost;
    std::set<QString> taken;
};
