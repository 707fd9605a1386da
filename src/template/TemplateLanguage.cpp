#include "template/TemplateLanguage.h"

#include "template/parser/TemplateParsingException.h"
#include "template/sections/ConditionSections.h"
#include "template/sections/FurnitureSections.h"
#include "template/sections/NavigationSections.h"
#include "template/sections/PictureSections.h"
#include "template/sections/TemplateSectionBlog.h"
#include "template/sections/TemplateSectionInclude.h"
#include "template/sections/TextSections.h"

namespace {

template <class Section>
std::unique_ptr<CTemplateSection> Make()
{
    return std::make_unique<Section>();
}

// The keywords of the language. A new element is a new row.
constexpr struct {
    std::string_view keyword;
    std::unique_ptr<CTemplateSection> (*make)();
} Keywords[] = {
    {"=", Make<CTemplateSectionVariable>},
    {"textspan", Make<CTemplateSectionTextSpan>},
    {"textproperty", Make<CTemplateSectionTextProperty>},
    {"picture", Make<CTemplateSectionPicture>},
    {"navigationtable", Make<CTemplateSectionNavigationTable>},
    {"pageheader", Make<CTemplateSectionPageHeader>},
    {"if", Make<CTemplateSectionIf>},
    {"else", Make<CCompoundTemplateSection>},
    {"isvisible", Make<CTemplateSectionIsVisible>},
    {"relative_page", Make<CTemplateSectionRelativePage>},
    {"relative_page_block", Make<CTemplateSectionRelativePageBlock>},
    {"isequal", Make<CTemplateSectionIsEqual>},
    {"imgref", Make<CTemplateSectionImageReference>},
    {"textref", Make<CTemplateSectionTextReference>},
    {"banner", Make<CTemplateSectionBanner>},
    {"include", Make<CTemplateSectionInclude>},
    {"blog", Make<CTemplateSectionBlog>},
    {"javastring", Make<CTemplateSectionJavaString>},
    {"advertisement", Make<CTemplateSectionAdvertisement>},
};

std::unique_ptr<CTemplateSection> MakeSection(const std::string& keyword)
{
    for (const auto& row : Keywords) {
        if (row.keyword == keyword) {
            return row.make();
        }
    }
    throw UnknownSectionError(keyword.c_str()); // like any narrow text the name ends at a NUL byte
}

} // namespace

void ParsePage(std::istream& stream, CTemplateSection& root, const PageReading& reading)
{
    root.SetContext({.makeSection = MakeSection,
                     .observer = reading.observer,
                     .stop = reading.stop,
                     .page = std::make_shared<PageFiles>(PageFiles{.folder = reading.folder})});
    root.Parse(stream);
}
