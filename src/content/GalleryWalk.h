#pragma once

#include <set>

#include <QString>

class CContentGenerator;
class CGallery;
class CGalleryProject;
struct CGalleryTemplatePage;
class CGalleryTemplatesProcessor;
class CStopSignal;

// Walks a gallery tree depth first: a gallery's pages in the order of its layout, then its children by
// ascending index. Each gallery's current page is set while its pages are in work and is set back on every
// road.
class CGalleryWalk {
public:
    // All are borrowed and outlive the walk.
    CGalleryWalk(CGalleryProject& project, CContentGenerator& generator, const CStopSignal& stop);

    // False if the stop signal or the processor ended the walk. Throws CExceptionBase from a page.
    bool Run(CGalleryTemplatesProcessor& processor);

private:
    bool WalkGallery(CGallery& gallery, const QString& subFolder, CGalleryTemplatesProcessor& processor);
    bool WalkPages(CGallery& gallery, CGalleryTemplatesProcessor& processor);
    bool WalkChildren(CGallery& gallery, CGalleryTemplatesProcessor& processor);
    bool WalkPage(CGallery& gallery, const CGalleryTemplatePage& page, CGalleryTemplatesProcessor& processor);

    CGalleryProject& project;
    CContentGenerator& generator;
    const CStopSignal& stop;
    std::set<const CGallery*> visited; // a hand-made project may list a gallery twice or in a ring
};
