#include "document/catalogue/Definitions.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/xmldomutils.h"
#include "template/TemplateLanguage.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"

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

// Without a separator at its end. A style's files are copied to a folder of its name, so that "." and ".."
// have no sense in it, wherever they lead.
QString PlainSubfolder(QString subfolder)
{
    subfolder.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (subfolder.endsWith(QLatin1Char('/'))) {
        subfolder.chop(1);
    }
    return subfolder;
}

bool HasDots(const QString& subfolder)
{
    const QStringList parts = subfolder.split(QLatin1Char('/'));
    return parts.contains(QStringLiteral(".")) || parts.contains(QStringLiteral(".."));
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
    : definitionFolder(QFileInfo(definitionPath).absolutePath())
{
    const auto document = LoadDocument(definitionPath);
    const CXmlElement element = FindDefinition(*document, "template");
    name = GetAttributeText(element, "name").GetString();
    const CVariant subfolder = GetAttributeText(element, "folder");
    if (!subfolder.IsEmpty()) {
        namedFolder = FindNamedFile(definitionFolder, subfolder.GetString(), definitionFolder);
        folder = WithTrailingSeparator(namedFolder.state == NamedFile::State::Found
                                           ? namedFolder.path
                                           : DefinitionSubfolder(definitionPath, subfolder.GetString()));
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
    const NamedFile page = FindPageFile(file);
    return page.differsInCase ? page.path : folder + GetPage(file).file;
}

NamedFile CGalleryTemplate::FindPageFile(const QString& file) const
{
    // A layout without a folder has its pages in the process's current one.
    const QString root = folder.isEmpty() ? QDir::currentPath() : definitionFolder;
    return FindNamedFile(folder.isEmpty() ? root : folder, GetPage(file).file, root);
}

void CGalleryTemplate::LoadPage(const QString& file, CTemplateSection& sectionTree) const
{
    LoadPage(file, sectionTree, PageReading());
}

void CGalleryTemplate::LoadPage(const QString& file, CTemplateSection& sectionTree, PageReading reading) const
{
    const NamedFile page = FindPageFile(file);
    std::ifstream stream;
    if (page.state == NamedFile::State::Found) {
        stream = OpenPageFile(page.path);
    }
    if (!stream.is_open()) {
        throw CFileException(GetPageFilePath(file), {.caption = StringId::CouldNotOpenFile,
                                                     .reason = StringId::FileDoesNotExist,
                                                     .solution = StringId::InformTemplateDeveloper});
    }
    reading.folder = definitionFolder;
    ParsePage(stream, sectionTree, reading);
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
    const QString plain = PlainSubfolder(folder);
    const QString root = QFileInfo(definitionPath).absolutePath();
    namedFolder = FindNamedFile(root, plain, root);
    if (HasDots(plain)) {
        namedFolder.state = NamedFile::State::LeadsOut;
    }
    if (plain.isEmpty() || namedFolder.state == NamedFile::State::LeadsOut) {
        return;
    }
    directory = namedFolder.path;
    sheet = FindNamedFile(directory, css, directory);
    // Pages name what lies beside them, and servers tell capitals apart.
    if (namedFolder.differsInCase) {
        folder = directory.mid(root.size() + 1);
    }
    if (sheet.differsInCase) {
        css = sheet.path.mid(directory.size() + 1);
    }
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
