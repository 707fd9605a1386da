#pragma once

#include <QString>

class CCompoundTemplateSection;
class CGallery;
class CImageIterator;

// What happens at each page of a walk through a gallery tree.
class CGalleryTemplatesProcessor {
public:
    virtual ~CGalleryTemplatesProcessor() = default;

    // tree: the bound sections of one layout page; iterator: on the gallery. False stops the walk.
    virtual bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) = 0;
    // Once for each gallery, before its pages. subFolder: empty for the root, else a separator and the
    // gallery's index; every gallery lies directly below the target, whatever its depth in the tree.
    virtual void ProcessGallery(const QString& subFolder, CGallery& gallery) = 0;
};
