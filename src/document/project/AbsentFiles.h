#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QString>

#include "document/files/FileTrace.h"
#include "document/files/LostFiles.h"

class CGallery;
class CStopSignal;

// Pictures and watermarks of a project whose files are not there, and how they are found again. They keep
// their places, texts and angles for as long as the person doesn't delete them.

struct AbsentFile {
    int32_t gallery = 0; // index
    QString path;
    bool isWatermark = false;
    FileTrace trace;
};

// A file of a gallery that is somewhere else now.
struct FileMove {
    int32_t gallery = 0; // index
    QString oldPath;
    QString newPath;
    bool hasExactSize = false; // as it was when the project was saved
    bool isWatermark = false;
};

// Looks for absent files below a folder that the person names. Holds values only, so that it may be used on
// another thread.
class CAbsentFileSearch {
public:
    // present: what CGalleryProject::GetPresentFiles says; none of them is found for another.
    CAbsentFileSearch(const std::vector<AbsentFile>& absent, const std::set<QString>& present)
        : absent(absent), present(present)
    {}

    // Searches the folder whole, up to 100,000 folders. What was found until then if the signal is set. The
    // same lost path in two galleries gives two moves.
    std::vector<FileMove> Find(const QString& folder, const CStopSignal& stop) const;

    // What is found without the person: by the traces, then below the folders within narrow limits.
    std::vector<FileMove> FindByItself(const QStringList& folders) const;

private:
    CLostFiles MakeLostFiles() const;
    std::vector<FileMove> MovesOf(const std::vector<FoundFile>& found) const;

    const std::vector<AbsentFile> absent;
    const std::set<QString> present;
};

// An entry may be null.
using GalleriesByIndex = std::map<int32_t, std::unique_ptr<CGallery>>;

// By gallery, its pictures in their order before its watermarks, each path of them once.
std::vector<AbsentFile> ListAbsentFiles(const GalleriesByIndex& galleries);
// Pictures as they were last looked for.
std::set<QString> ListPresentFiles(const GalleriesByIndex& galleries);

// Gives pictures and watermarks of galleries their new paths; everything else of them stays. A path that its
// gallery has already, and one that it hasn't, change nothing. Returns how many entries have moved. The same
// with old and new paths exchanged takes it back.
int32_t MoveFiles(const GalleriesByIndex& galleries, const std::vector<FileMove>& moves);
