#pragma once

#include <cstdint>

#include "content/GalleryWalk.h"

class CContentGeneratorFolder;
class CDeploymentRecord;
class CImageProduction;
class CStopSignal;

// Counts the pages of a walk for the progress. A multipage page without pictures counts 0 though one page is
// written for it, so the progress may run past the total by such pages.
class CPagesCounter final : public CGalleryTemplatesProcessor {
public:
    // count: borrowed; the pages are added to it.
    explicit CPagesCounter(int32_t& count) : count(count) {}

    bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) override;
    void ProcessGallery(const QString& subFolder, const CGallery& gallery) override;

private:
    int32_t& count;
};

// Writes the pages of a walk, and copies the style folders of each gallery next to its pages. The images that
// the pages ask for are left to the image production, gallery by gallery.
class CPagesGenerator final : public CGalleryTemplatesProcessor {
public:
    // All are borrowed and outlive this object.
    struct Run {
        const QString& targetFolder;
        CContentGeneratorFolder& generator;
        CImageProduction& production;
        const CStopSignal& stop;
        CDeploymentRecord* record; // may be null
    };
    explicit CPagesGenerator(const Run& run) : run(run) {}

    // Throws CFileException if a page can't be opened, CWin32Exception if it can't be written.
    bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) override;
    // Throws CWin32Exception from copying.
    void ProcessGallery(const QString& galleryFolder, const CGallery& gallery) override;

private:
    void NoteCopies(const QString& source, const QString& target);
    void WritePage(CCompoundTemplateSection& tree, CImageIterator& iterator, const QString& path);

    const Run run;
    QString subFolder;
};
