#include "template/parser/TemplateSectionFactory.h"

#include "template/parser/MarkupBytes.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateErrors.h"
#include "template/sections/CompoundTemplateSection.h"
#include "template/sections/TemplateSectionAdvertisement.h"
#include "template/sections/TemplateSectionBanner.h"
#include "template/sections/TemplateSectionBlog.h"
#include "template/sections/TemplateSectionIf.h"
#include "template/sections/TemplateSectionImageReference.h"
#include "template/sections/TemplateSectionInclude.h"
#include "template/sections/TemplateSectionIsEqual.h"
#include "template/sections/TemplateSectionIsVisible.h"
#include "template/sections/TemplateSectionJavaString.h"
#include "template/sections/TemplateSectionNavigationTable.h"
#include "template/sections/TemplateSectionPageHeader.h"
#include "template/sections/TemplateSectionPicture.h"
#include "template/sections/TemplateSectionRelativePage.h"
#include "template/sections/TemplateSectionTextProperty.h"
#include "template/sections/TemplateSectionTextReference.h"
#include "template/sections/TemplateSectionTextSpan.h"
#include "template/sections/TemplateSectionVariable.h"

namespace {

using SectionMaker = std::unique_ptr<CTemplateSection> (*)();

template <class Section>
std::unique_ptr<CTemplateSection> Make()
{
    return std::make_unique<Section>();
}

// The keywords of the language. A new element is a new row.
constexpr struct {
    std::string_view keyword;
    SectionMaker make;
} Keywords[] = {
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

std::unique_ptr<CTemplateSection> MakeSection(const std::string& name)
{
    for (const auto& row : Keywords) {
        if (row.keyword == name) {
            return row.make();
        }
    }
    throw UnknownSectionError(name.c_str()); // like any narrow text the name ends at a NUL byte
}

// Reads up to the blank behind the keyword, which is consumed, or to the "%>" behind it, which is the body's.
// False if the input ends before.
bool ReadKeyword(std::string& name, std::istream& stream)
{
    constexpr size_t usualLength = 1024;
    name.reserve(usualLength);
    while (const std::optional<char> byte = ReadPageByte(stream)) {
        if (IsSpace(*byte)) {
            return true;
        }
        if (*byte == '%' && PeekPageByte(stream) == '>') {
            UnreadPageByte(stream);
            return true;
        }
        name += *byte;
    }
    return false;
}

} // namespace

std::unique_ptr<CTemplateSection> CreateSection(std::string& name, std::istream& stream,
                                                const TemplateDepth& depth)
{
    if (depth.elements > MaxNestingDepth) {
        throw NestingTooDeepError(MaxNestingDepth);
    }
    name.clear();
    std::unique_ptr<CTemplateSection> section;
    if (PeekPageByte(stream) == '=') {
        section = std::make_unique<CTemplateSectionVariable>(); // "=" stays the first byte of its text
    } else if (ReadKeyword(name, stream)) {
        section = MakeSection(name);
    } else {
        return nullptr;
    }
    section->SetDepth(depth);
    section->Parse(stream);
    return section;
}
