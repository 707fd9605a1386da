#include "shell/panes/pages/ShownPage.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/Platform.h"
#include "common/TempFolder.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/ContentGeneratorViews.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "document/galleries/GalleryManager.h"
#include "resources/Resources.h"
#include "shell/look/WaitCursor.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/ErrorPage.h"
#include "template/parser/TemplateParsingException.h"
#include "template/parser/TemplateVariableName.h"

namespace {

std::string Paragraph(const QString& text)
{
    return Narrow(QStringLiteral("<p>%1</p>\n").arg(text.toHtmlEscaped()));
}

// The page file of the gallery's current page with the place of the error.
std::string BuildTemplateErrorPage(const CTemplateParsingException& error, const CGallery& gallery)
{
    const CGalleryTemplate* const layout = gallery.GetLayout().GetTemplate();
    const QString page = gallery.GetLayout().GetTemplatePage();
    std::string text = BuildErrorPage(error, layout ? layout->GetPageFilePath(page) : page);
    // The page is text already, so nobody else gives its head element the scripts that every page has; and
    // its colour "InfoBackground" is none that today's browsers know.
    const std::string header = "<%pageheader %>";
    const size_t place = text.find(header);
    if (place != std::string::npos) {
        const QByteArray script = FindResource(QStringLiteral("contextmenu"), QStringLiteral("js"));
        text.replace(place, header.size(),
                     "<style>td[bgcolor=InfoBackground] { background: #ffffe1; color: black; }</style>\r\n"
                     "<script type=\"text/javascript\" >" +
                         script.toStdString() + "</script>");
    }
    return text;
}

} // namespace

QString KeyOf(const CPictureInfo& picture)
{
    const auto* const child = dynamic_cast<const CGalleryPictureInfo*>(&picture);
    // No path begins like that.
    return child ? QStringLiteral("gallery:%1").arg(child->GetGalleryIndex()) : picture.GetPath();
}

QStringList KeysOf(const CGallery& gallery)
{
    QStringList keys;
    const CPictureList& pictures = gallery.GetPictures();
    keys.reserve(pictures.GetCount());
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        keys += KeyOf(*pictures.GetAt(position));
    }
    return keys;
}

QString PagePictures::FindKey(const QString& id) const
{
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&](const auto& entry) { return EqualsIgnoreCase(entry.first, id); });
    return found != keys.end() ? found->second : QString();
}

int32_t PagePictures::FindPosition(const CGallery& current, const QString& id) const
{
    const QString key = FindKey(id);
    return key.isEmpty() || gallery != current.GetIndex()
               ? -1
               : static_cast<int32_t>(KeysOf(current).indexOf(key));
}

CShownPage::CShownPage() = default;
CShownPage::~CShownPage() = default;

void CShownPage::Clear()
{
    iterator.reset();
    gallery = nullptr;
}

std::string CShownPage::Generate(CGallery& shownGallery)
{
    gallery = &shownGallery;
    try {
        return GeneratePage();
    } catch (const CTemplateParsingException& error) {
        Clear();
        return BuildTemplateErrorPage(error, shownGallery);
    } catch (const CExceptionBase& failure) {
        Clear();
        return BuildFailurePage(failure);
    }
}

std::string CShownPage::GeneratePage()
{
    Trace(QStringLiteral("Before_getting_template_section"));
    CGalleryLayout& layout = gallery->GetLayout();
    CCompoundTemplateSection tree;
    if (layout.GetTemplate()) {
        layout.GetTemplate()->LoadPage(layout.GetTemplatePage(), tree);
    }
    Trace(QStringLiteral("After_getting_template_section"));
    const CWaitCursor cursor;
    CContentGeneratorPreview generator(FindTemporaryFolder());
    const auto bind = [&] {
        iterator = std::make_unique<CGalleryIterator>();
        iterator->Init(*gallery);
        iterator->Reset();
        tree.Bind(*iterator, generator);
    };
    bind();
    const int32_t pageCount = iterator->GetPageCount();
    const int32_t pageIndex = iterator->GetPageIndex();
    if (pageCount != 0 && pageCount <= pageIndex) {
        layout.SetPageNumber(pageIndex - 1);
        bind();
    }
    iterator->SetPageIndex(iterator->GetPageIndex());
    iterator->PreparePictures();
    return tree.GenerateToString(*iterator, generator);
}

int32_t CShownPage::FindPictureIndex(const QString& id) const
{
    return iterator ? iterator->FindPictureIndex(id) : -1;
}

PagePictures CShownPage::GetPictures() const
{
    PagePictures page;
    if (!iterator) {
        return page;
    }
    page.gallery = gallery->GetIndex();
    for (const QString& id : iterator->GetBoundIds()) {
        if (const CPictureInfo* const picture = gallery->GetPictures().GetAt(FindPictureIndex(id))) {
            page.keys[id] = KeyOf(*picture);
        }
    }
    return page;
}

QString CShownPage::GetPicturePath(int32_t position) const
{
    CPictureInfo* const picture = gallery ? gallery->GetPictures().GetAt(position) : nullptr;
    return picture ? picture->GetPath() : QString();
}

std::optional<QString> CShownPage::ReadVariable(const QString& property) const
{
    try {
        const CTemplateVariableName name(property);
        CVariant value;
        const bool found =
            iterator && iterator->GetVariable(name.GetObjectName(), name.GetVariableName(), value);
        return found && !value.IsEmpty()
                   ? std::optional(CContentGeneratorStringConverter().VariantToString(value))
                   : std::nullopt;
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription()); // a script may name what is no property
        return std::nullopt;
    }
}

TextPlace CShownPage::FindTextPlace(const QString& property, const QString& name) const
{
    using Owner = TextPlace::Owner;
    const QString object = property.section(QLatin1Char('.'), 0, 0);
    TextPlace place{.name = property.section(QLatin1Char('.'), 1)};
    const int32_t position = FindPictureIndex(object);
    if (!iterator || !property.contains(QLatin1Char('.'))) {
        place.name.clear();
    } else if (EqualsIgnoreCase(object, QStringLiteral("page"))) {
        place.owner = Owner::Page;
        place.page = iterator->GetPageBaseName();
        place.pageNumber = iterator->GetPageIndex();
    } else if (position >= 0) {
        place.owner = Owner::Picture;
        place.position = position;
    } else if (EqualsIgnoreCase(object, QStringLiteral("content"))) {
        place.owner = Owner::PictureList;
    } else if (!EqualsIgnoreCase(object, QStringLiteral("gallery"))) {
        place.name.clear();
    }
    if (place.name.isEmpty()) {
        throw CGenericException(Text(StringId::TextNotKept, name),
                                Text(StringId::PropertyOfNothing, '"' + property + '"'),
                                Text(StringId::TextNotKeptAdvice));
    }
    return place;
}

QStringList FoldersOfPages(CGallery& gallery)
{
    CGalleryManager& manager = gallery.GetManager();
    QStringList folders = {FindTemporaryFolder(), FindImageCacheFolder(), manager.GetTempFolder().GetPath(),
                           manager.GetProgramFolder()};
    if (const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate()) {
        folders += layout->GetFolder();
    }
    for (const QString& folder : gallery.GetStyleDirectories()) {
        folders += folder;
    }
    return folders;
}

std::string BuildFailurePage(const CExceptionBase& failure)
{
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"></head>\n"
           "<body style=\"font-family:sans-serif;margin:2em\">\n" +
           Paragraph(Text(StringId::PageNotGenerated)) + "<blockquote>\n" + Paragraph(failure.GetCaption()) +
           Paragraph(failure.GetDescription()) + Paragraph(failure.GetAdvice()) +
           "</blockquote>\n</body></html>\n";
}
