#pragma once

#include <cstdint>
#include <map>
#include <vector>

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

// Makes the pages of a walk, and leaves to others what becomes of them.
class CPagesMaker : public CGalleryTemplatesProcessor {
public:
    bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) override;
    void ProcessGallery(const QString& galleryFolder, const CGallery& gallery) override;

protected:
    // All are borrowed and outlive this object.
    struct Site {
        const QString& targetFolder;
        CContentGeneratorFolder& generator;
        const CStopSignal& stop;
    };
    explicit CPagesMaker(const Site& site) : site(site) {}

    virtual void BeginGallery() {}
    // A folder of a style, and where its copy goes.
    virtual void TakeStyle(const QString& directory, const QString& copy) = 0;
    virtual void BeginPage() {}
    virtual void TakePage(const QString& path, const QByteArray& page) = 0;

private:
    void BindPage(CCompoundTemplateSection& tree, CImageIterator& iterator, int32_t page);
    bool MakePage(CCompoundTemplateSection& tree, CImageIterator& iterator, int32_t page);

    const Site site;
    QString subFolder;
};

// Writes the pages of a walk, and copies the style folders of each gallery next to its pages. The images that
// the pages ask for are left to the image production, gallery by gallery.
class CPagesGenerator final : public CPagesMaker {
public:
    // All are borrowed and outlive this object.
    struct Run {
        const QString& targetFolder;
        CContentGeneratorFolder& generator;
        CImageProduction& production;
        const CStopSignal& stop;
        CDeploymentRecord* record = nullptr;
        std::map<QString, QString>* uncopied = nullptr; // of GenerationTarget
    };
    explicit CPagesGenerator(const Run& run)
        : CPagesMaker({run.targetFolder, run.generator, run.stop}), run(run)
    {}

protected:
    void BeginGallery() override;
    // Throws CWin32Exception.
    void TakeStyle(const QString& directory, const QString& copy) override;
    void BeginPage() override;
    // Throws CFileException if the page can't be opened, CWin32Exception if it can't be written.
    void TakePage(const QString& path, const QByteArray& page) override;

private:
    void ListStyle(const QString& directory, const QString& copy);

    const Run run;
};

// The paths that a copy of a folder would have, hidden entries left out, with the files that they come from.
struct FileCopy {
    QString source;
    QString copy;
};
std::vector<FileCopy> ListCopies(const QString& source, const QString& target);
