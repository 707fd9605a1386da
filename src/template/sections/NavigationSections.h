#pragma once

#include <cstdint>

#include "template/parser/TemplateSectionElement.h"

// The sections by which a page reaches the other pages of its gallery. Each is owned by its parent and used
// by one thread.

// <%navigationtable%>: a row of links to the pages of a gallery, with images that the style provides.
class CTemplateSectionNavigationTable final : public CTemplateSectionElement {
public:
    CTemplateSectionNavigationTable();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%relative_page position="1"%>: the file name of the page at that distance. The pages form a ring, but a
// step over an end keeps no remainder: it lands on the first or the last page.
class CTemplateSectionRelativePage : public CTemplateSectionElement {
public:
    CTemplateSectionRelativePage();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

protected:
    int32_t EvaluatePosition(CImageIterator& iterator, CContentGenerator& generator) const;
};

// <%relative_page_block position="-5"%>: the same in steps of whole blocks of |position| pages: forwards to
// the first page of a block, backwards to the last.
class CTemplateSectionRelativePageBlock final : public CTemplateSectionRelativePage {
public:
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// The arithmetic of the relative pages, in 64 bits: an attribute may be as far out as 32 bits go.

// A page index that lies outside 0..pageCount-1 is brought to the other end; 0 without pages.
int32_t ToRing(int64_t target, int32_t pageCount);

// The page that lies |position| pages from the block of page. A position of 0 is page itself.
int64_t StepByBlock(int64_t page, int64_t position);
