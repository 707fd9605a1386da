#pragma once

#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateSectionElement.h"

// Small sections that complete a page. Each does one call in Generate and has no part in Bind; owned by its
// parent; used by one thread.

// <%pageheader%>: what the page's head needs from the system. Words after the keyword are accepted and lost.
class CTemplateSectionPageHeader final : public CNoChildTemplateSection {
public:
    void Clear() override {}
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void AddText(const char*, size_t) override {}
    void OnEndOfFile(const char* text, size_t length) override;
};

// <%banner width="468" height="60"%>: a frame of that size for the banner server.
class CTemplateSectionBanner final : public CTemplateSectionElement {
public:
    CTemplateSectionBanner();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%advertisement name="top"%>: one of the user's advertisement blocks.
class CTemplateSectionAdvertisement final : public CTemplateSectionElement {
public:
    CTemplateSectionAdvertisement();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%javastring value="..."%>: the value with its backslashes doubled, for a string in a script. Quotes are
// left alone.
class CTemplateSectionJavaString final : public CTemplateSectionElement {
public:
    CTemplateSectionJavaString();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};
