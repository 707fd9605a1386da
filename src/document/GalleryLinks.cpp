#include "document/GalleryLinks.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "document/Gallery.h"
#include "document/GalleryPictureInfo.h"
#include "document/PageName.h"

namespace {

bool IsRoot(const CGallery& gallery)
{
    return gallery.GetManager().GetRootGalleryIndex() == gallery.GetIndex();
}

QString FolderName(int32_t galleryIndex)
{
    return QString::number(galleryIndex) + QLatin1Char('/');
}

struct ShownPage {
    QString baseName;
    QString extension;
};

// The page that a link to a gallery leads to: its current one or, as long as none was chosen, the first page
// of its layout, on which every look-up of a page lands.
ShownPage PageShownBy(const CGalleryLayout& layout)
{
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    if (!layout.GetTemplatePage().isEmpty() || !layoutTemplate || layoutTemplate->GetPages().empty()) {
        return {layout.GetPageBaseName(), layout.GetPageExtension()};
    }
    const QString& file = layoutTemplate->GetPages().front().file;
    const qsizetype dot = file.indexOf(QLatin1Char('.'));
    return dot < 0 ? ShownPage{file, QString()} : ShownPage{file.left(dot), file.mid(dot)};
}

QString UrlOfChild(const CGallery& gallery, const CGalleryPictureInfo& entry)
{
    const ShownPage page = PageShownBy(entry.GetGallery().GetLayout());
    return (IsRoot(gallery) ? QString() : QStringLiteral("../")) + FolderName(entry.GetGalleryIndex()) +
           page.baseName + page.extension;
}

// The index in decimal that a URL names as its folder; null if it names none.
QString GalleryFolderOf(const QString& url)
{
    const qsizetype first = url.indexOf(QLatin1Char('/'));
    const qsizetype last = url.lastIndexOf(QLatin1Char('/'));
    return first == last ? url.left(first) : url.mid(first + 1, last - first - 1);
}

bool IsDecimal(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

// Null if the page has no style of its own.
QString StyleChosenFor(const CGalleryLayout& layout, const QString& pageBaseName)
{
    const auto entry = layout.GetPageStyles().find(pageBaseName);
    return entry != layout.GetPageStyles().end() ? entry->second : QString();
}

} // namespace

QString GetParentUrl(CGallery& gallery)
{
    CGallery* const parent = gallery.GetParent();
    const ShownPage page = PageShownBy(parent ? parent->GetLayout() : gallery.GetLayout());
    if (!parent) {
        return page.baseName + page.extension;
    }
    QString url = QStringLiteral("../");
    if (!IsRoot(*parent)) {
        url += FolderName(parent->GetIndex());
    }
    url += page.baseName;
    // Odd on purpose: the position in the parent's pictures, not the number of a page.
    const int32_t position = parent->GetPictures().FindPosition(parent->FindChildPicture(gallery.GetIndex()));
    if (position > 0) {
        url += QString::number(position);
    }
    return url + page.extension;
}

QString GetParentPath(CGallery& gallery)
{
    QString path;
    CGallery* current = &gallery;
    while (CGallery* parent = current->GetParent()) {
        const QString name = parent->GetDisplayName();
        if (name.isEmpty()) {
            break;
        }
        path = QStringLiteral("<a href=\"") + GetParentUrl(*current) + QStringLiteral("\">") + name +
               QStringLiteral("</a> \\ ") + path;
        current = parent;
    }
    return path;
}

bool GetPageUrl(CGallery& gallery, const PictureLink& link, QString& url)
{
    const CPictureInfo* const record = gallery.GetPictures().GetAt(link.position);
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
        url = UrlOfChild(gallery, *child);
        return true;
    }
    CGalleryTemplate* const layoutTemplate = gallery.GetLayout().GetTemplate();
    if (!layoutTemplate || !layoutTemplate->HasPage(link.pageName)) {
        return false;
    }
    if (link.position == 0) {
        url = link.pageName;
        return true;
    }
    const auto page = SplitPageName(link.pageName);
    if (!page) {
        return false;
    }
    const int32_t perPage = gallery.GetPicturesPerPage(*layoutTemplate, link.pageName);
    // The number stands there for page 0 as well; only the very first picture goes without.
    url = perPage == 0
              ? QString()
              : JoinPageName(
                    {.base = page->base, .number = link.position / perPage, .extension = page->extension});
    return true;
}

bool FollowLink(CGallery& gallery, const QString& url, FollowedLink followed)
{
    if (NavigateToGallery(gallery.GetManager(), url)) {
        followed.styleChanged = true;
        followed.galleryChanged = true;
        return true;
    }
    followed.styleChanged = false;
    const qsizetype query = url.indexOf(QLatin1Char('?'));
    gallery.SetQueryString(query < 0 ? QString() : url.mid(query));
    const auto page = SplitPageName(query < 0 ? url : url.left(query));
    CGalleryLayout& layout = gallery.GetLayout();
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    if (!page || !layoutTemplate || !layoutTemplate->HasPage(page->base + page->extension)) {
        return false;
    }
    const QString oldStyle = StyleChosenFor(layout, layout.GetPageBaseName());
    if (layout.SetTemplatePage(page->base + page->extension)) {
        const QString newStyle = StyleChosenFor(layout, layout.GetPageBaseName());
        if (!newStyle.isNull()) {
            layout.SetStyle(newStyle);
            followed.styleChanged = newStyle != oldStyle;
        }
    }
    layout.SetPageNumber(page->number);
    return true;
}

bool NavigateToGallery(CGalleryManager& manager, const QString& url)
{
    if (!url.contains(QLatin1Char('/'))) {
        return false;
    }
    if (url.count(QLatin1Char('/')) == 1 && url.startsWith(QStringLiteral("../"))) {
        manager.SetCurrentGallery(manager.GetRootGalleryIndex());
        return true;
    }
    const QString folder = GalleryFolderOf(url);
    if (!IsDecimal(folder)) {
        return false;
    }
    manager.SetCurrentGallery(ParseInteger(Narrow(folder)));
    return true;
}
