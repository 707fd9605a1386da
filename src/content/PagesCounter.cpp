#include "content/PagesCounter.h"

#include "template/contracts/ImageIterator.h"

bool CPagesCounter::ProcessPage(CCompoundTemplateSection&, CImageIterator& iterator, bool multipage)
{
    count += multipage ? iterator.GetPageCount() : 1;
    return true;
}

void CPagesCounter::ProcessGallery(const QString&, CGallery&) {}
