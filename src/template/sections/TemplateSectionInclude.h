#pragma once

#include <istream>

#include <QString>

#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateSectionElement.h"

// <%include file="..."%>: another file of the layout's folder, loaded at the first Bind and kept from then
// on. A missing file is no error, and one outside the folder that the page may read counts as missing. Later
// binds don't bind the file's content again, so included files are for markup without pictures of its own.
// Owned by its parent; used by one thread.
class CTemplateSectionInclude final : public CTemplateSectionElement {
public:
    // How many files may include each other in a row; a file that includes itself ends here.
    static constexpr int MaxDepth = 64;
    // How many files a page may load: with two includes each, files that many levels deep would be more than
    // anybody can wait for.
    static constexpr int MaxLoads = 4096;

    CTemplateSectionInclude();
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    // Throws CTemplateParsingException, with offsets in the included file, for an error in that file.
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;

private:
    void Load(CImageIterator& iterator, CContentGenerator& generator);
    QString FindFile(const QString& folder, const QString& name) const;
    void CountLoad(const QString& path) const;
    void ParseContent(std::istream& stream);

    CCompoundTemplateSection content;
    bool loaded = false;
};
