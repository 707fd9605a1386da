#include "document/catalogue/GalleryTemplate.h"

#include <algorithm>
#include <fstream>

#include <QFile>
#include <QFileInfo>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/xmldomutils.h"
#include "document/catalogue/DefinitionElement.h"
#include "template/TemplateLanguage.h"
#include "template/parser/TemplateParsingException.h"

namespace {

// A page's file name is also the name of its output file; one that leads to another folder would write there.
bool IsPlainFileName(const QString& file)
{
    return !file.isEmpty() && ExtractLastName(file) == file;
}

} // namespace

CGalleryTemplate::CGalleryTemplate(const QString& definitionPath)
{
    const auto document = LoadDocument(definitionPath);
    const CXmlElement element = FindDefinition(*document, "template");
    name = GetAttributeText(element, "name").GetString();
    const CVariant subfolder = GetAttributeText(element, "folder");
    if (!subfolder.IsEmpty()) {
        folder = WithTrailingSeparator(DefinitionSubfolder(definitionPath, subfolder.GetString()));
    }
    group = GetAttributeText(element, "group").GetString();
    for (const CXmlElement& child : element.GetChildren("page")) {
        CGalleryTemplatePage page;
        page.file = GetAttributeText(child, "file").GetString();
        page.multipage = GetAttributeLong(child, "multipage") != 0;
        page.addAtFront =
            EqualsIgnoreCase(GetAttributeText(child, "add_order").GetString(), QStringLiteral("front"));
        if (IsPlainFileName(page.file)) {
            pages.push_back(page);
        }
    }
}

bool CGalleryTemplate::HasPage(const QString& file) const
{
    return std::any_of(pages.begin(), pages.end(), [&](const auto& page) { return page.file == file; });
}

const CGalleryTemplatePage& CGalleryTemplate::GetPage(const QString& file) const
{
    const auto page = std::find_if(pages.begin(), pages.end(),
                                   [&](const auto& candidate) { return candidate.file == file; });
    if (page != pages.end()) {
        return *page;
    }
    if (pages.empty()) {
        throw CGenericException(Text(StringId::TemplateAccessCaption),
                                Text(StringId::TemplateKindNotFound, file),
                                Text(StringId::TemplateErrorAdvice));
    }
    return pages.front();
}

CGalleryTemplatePage& CGalleryTemplate::GetPage(const QString& file)
{
    return const_cast<CGalleryTemplatePage&>(static_cast<const CGalleryTemplate*>(this)->GetPage(file));
}

QString CGalleryTemplate::GetPageFilePath(const QString& file) const
{
    return folder + GetPage(file).file;
}

void CGalleryTemplate::LoadPage(const QString& file, CTemplateSection& sectionTree,
                                CTemplateObserver* observer) const
{
    const QString path = GetPageFilePath(file);
    std::ifstream stream;
    // Asked first: a folder can be opened as a stream, and a pipe would keep the program waiting.
    if (QFileInfo(path).isFile()) {
        stream.open(QFile::encodeName(path).constData(), std::ios::binary);
    }
    if (!stream.is_open()) {
        throw CFileException(path, {.caption = StringId::CouldNotOpenFile,
                                    .reason = StringId::FileDoesNotExist,
                                    .solution = StringId::InformTemplateDeveloper});
    }
    ParsePage(stream, sectionTree, observer);
}
