#pragma once

#include <cstdint>

#include "content/GalleryTemplatesProcessor.h"

// Counts the pages of a walk for the progress. A multipage page without pictures counts 0 though one page is
// written for it, so the progress may run past the total by such pages.
class CPagesCounter final : public CGalleryTemplatesProcessor {
public:
    // count: borrowed; the pages are added to it.
    explicit CPagesCounter(int32_t& count) : count(count) {}

    bool ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage) override;
    void ProcessGallery(const QString& subFolder, CGallery& gallery) override;

private:
    int32_t& count;
};
