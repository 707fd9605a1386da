#pragma once

#include <cstdint>
#include <map>

#include <QString>
#include <QStringList>

class CDeploymentRecord;
class CGalleryProject;
class CStopSignal;

// Receives the progress of a run, one call at a time. Called on the thread of the generation and on
// those of the images.
class CGenerationProgress {
public:
    virtual ~CGenerationProgress() = default;
    // A page counts as done when its file and all its images are written.
    virtual void OnPageDone(int32_t donePages, int32_t totalPages) = 0;
};

// What a run has made.
struct GenerationResult {
    int32_t pages = 0;
    int32_t images = 0;
    QStringList warnings; // one for each picture that was published in part, in the order of the pages
};

// Where a run writes.
struct GenerationTarget {
    QString folder;
    CDeploymentRecord* record = nullptr; // of the folder, borrowed; without one every image is made anew
    // Borrowed. Where it is given, the files of styles aren't copied into the folder but listed here: where
    // they lie, by their relative paths in the folder.
    std::map<QString, QString>* uncopied = nullptr;
};

// Writes a project's whole gallery tree into the target: a first walk counts the pages, a second one writes
// them while one worker per core makes the images. Returns when all is written or when stop was set; files
// written so far then stay. Throws the first failure of any thread.
GenerationResult GeneratePages(CGalleryProject& project, const GenerationTarget& target,
                               const CStopSignal& stop, CGenerationProgress& progress);
