#pragma once

#include <set>

#include <QString>

class CCompoundTemplateSection;
class CContentGenerator;
class CGallery;
class CGalleryProject;
struct CGalleryTemplatePage;
class CImageIterator;
class CStopSignal;

// What happens at each page of a walk through a gallery tree.
class CGalleryTemplatesProcessor {
public:
    virtual ~CGalleryTemplatesProcessor() = default;

    // tree: the bound sections of one layout page; iterator: on the gallery. False stops the walk.
    virtual bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) = 0;
    // Once for each gallery, before its pages. subFolder: empty for the root, else a separator and the
    // gallery's index; every gallery lies directly below the target, whatever its depth in the tree.
    virtual void ProcessGallery(const QString& subFolder, const CGallery& gallery) = 0;
};

// Walks a gallery tree depth first: a gallery's pages in the order of its layout, then its children by
// ascending index. Each gallery's current page is set while its pages are in work and is set back in the end,
// whatever happens.
class CGalleryWalk {
public:
    // All are borrowed and outlive the walk.
    CGalleryWalk(CGalleryProject& project, CContentGenerator& generator, const CStopSignal& stop);

    // False if the stop signal or the processor ended the walk. Throws CExceptionBase from a page.
    bool Run(CGalleryTemplatesProcessor& processor);

private:
    class COpenGallery;
    struct Walking;
    bool Enter(CGallery& gallery, const QString& subFolder, const Walking& walking);
    bool WalkPages(CGallery& gallery, CGalleryTemplatesProcessor& processor);
    bool WalkPage(CGallery& gallery, const CGalleryTemplatePage& page, CGalleryTemplatesProcessor& processor);

    CGalleryProject& project;
    CContentGenerator& generator;
    const CStopSignal& stop;
    std::set<const CGallery*> visited; // a hand-made project may list a gallery twice or in a ring
};
