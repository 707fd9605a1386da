#include "template/TemplateSectionPageHeader.h"

#include "template/ContentGenerator.h"
#include "template/TemplateErrors.h"

void CTemplateSectionPageHeader::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                          std::ostream& out)
{
    generator.GeneratePageHeader(iterator, out);
}

void CTemplateSectionPageHeader::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}
