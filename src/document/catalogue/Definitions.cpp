#include "document/catalogue/Definitions.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/xmldomutils.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"
#include "template/sections/TemplateSection.h"

namespace {

// The first element of that tag.
CXmlElement FindDefinition(CXmlDocument& document, const char* tag)
{
    const std::vector<CXmlElement> found = document.FindAll(tag);
    if (found.empty()) {
        throw TemplateError(Text(StringId::TemplateElementNotFound, tag));
    }
    return found.front();
}

// A subfolder of the folder that holds the definition, without a trailing separator of its own.
QString DefinitionSubfolder(const QString& definitionPath, const QString& subfolder)
{
    QString native = subfolder;
    native.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return ExtractFolder(definitionPath) + native;
}

// A page's file name is also the name of its output file; one that leads to another folder would write there.
bool IsPlainFileName(const QString& file)
{
    return !file.isEmpty() && ExtractLastName(file) == file;
}

QString FullPath(const QString& path)
{
    constexpr qsizetype limit = 1024;
    const QString full = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (full.size() > limit) {
        throw CUnexpectedException("GalleryProject", 260, Text(StringId::BufferInsufficient));
    }
    return full;
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

QString CGalleryTemplate::GetPageFilePath(const QString& file) const
{
    return folder + GetPage(file).file;
}

void CGalleryTemplate::LoadPage(const QString& file, CTemplateSection& sectionTree) const
{
    const QString path = GetPageFilePath(file);
    std::ifstream stream = OpenPageFile(path);
    if (!stream.is_open()) {
        throw CFileException(path, {.caption = StringId::CouldNotOpenFile,
                                    .reason = StringId::FileDoesNotExist,
                                    .solution = StringId::InformTemplateDeveloper});
    }
    sectionTree.Parse(stream);
}

CGalleryStyle::CGalleryStyle(const QString& definitionPath)
{
    const auto document = LoadDocument(definitionPath);
    const CXmlElement element = FindDefinition(*document, "style");
    css = GetAttributeText(element, "css").GetString();
    name = GetAttributeText(element, "name").GetString();
    folder = GetAttributeText(element, "folder").GetString();
    group = GetAttributeText(element, "group").GetString();
    isDefault = GetAttributeLong(element, "default") != 0;
    directory = DefinitionSubfolder(definitionPath, folder);
}

void ScanFolder(const QString& folder, const std::function<void(const QString& fullPath)>& onFile)
{
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        // Hidden: other systems leave "._name.xml" beside "name.xml", and that is no XML.
        if (!entry.isDirectory && !entry.isHidden &&
            entry.name.endsWith(QStringLiteral(".xml"), Qt::CaseInsensitive)) {
            onFile(FullPath(JoinPath(folder, entry.name)));
        }
    }
}

QString AbsoluteFolderOf(const QString& path)
{
    return WithTrailingSeparator(QDir::cleanPath(QFileInfo(path).absolutePath()));
}
