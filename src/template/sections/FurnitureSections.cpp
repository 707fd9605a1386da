#include "template/sections/FurnitureSections.h"

#include "template/contracts/ContentGenerator.h"
#include "template/parser/ReplaceAll.h"
#include "template/parser/TemplateParsingException.h"

namespace {

const AttributeTable BannerTable = {OtherAttributes::Kept, {{"height", 2}, {"width", 1}}};
const AttributeTable AdvertisementTable = {OtherAttributes::Refused, {{"name", 1}}};
const AttributeTable JavaStringTable = {OtherAttributes::Kept, {{"value", 1}}};

} // namespace

void CTemplateSectionPageHeader::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                          std::ostream& out)
{
    generator.GeneratePageHeader(iterator, out);
}

void CTemplateSectionPageHeader::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}

CTemplateSectionBanner::CTemplateSectionBanner() : CTemplateSectionElement(BannerTable) {}

void CTemplateSectionBanner::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                      std::ostream& out)
{
    const std::string height = Evaluate("height", iterator, generator);
    const std::string width = Evaluate("width", iterator, generator);
    generator.GenerateBanner(width, height, out);
}

CTemplateSectionAdvertisement::CTemplateSectionAdvertisement() : CTemplateSectionElement(AdvertisementTable)
{}

void CTemplateSectionAdvertisement::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                             std::ostream& out)
{
    generator.GenerateAdvertisement(iterator, Evaluate("name", iterator, generator), out);
}

CTemplateSectionJavaString::CTemplateSectionJavaString() : CTemplateSectionElement(JavaStringTable) {}

void CTemplateSectionJavaString::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                          std::ostream& out)
{
    std::string text = Evaluate("value", iterator, generator);
    ReplaceAll(text, R"(\)", R"(\\)");
    out << text;
}
