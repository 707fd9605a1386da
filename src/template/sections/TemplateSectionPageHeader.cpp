#include "template/sections/TemplateSectionPageHeader.h"

#include "template/contracts/ContentGenerator.h"
#include "template/parser/TemplateErrors.h"

void CTemplateSectionPageHeader::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                          std::ostream& out)
{
    generator.GeneratePageHeader(iterator, out);
}

void CTemplateSectionPageHeader::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}
