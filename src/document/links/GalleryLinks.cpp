#include "document/links/GalleryLinks.h"

#include <algorithm>
#include <vector>

#include <QStringList>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "document/content/GalleryContent.h"
#include "document/content/PageName.h"

namespace {

bool IsRoot(const CGalleryContent& gallery, const CGallerySite& site)
{
    return site.GetRootGalleryIndex() == gallery.GetIndex();
}

QString FolderName(int32_t galleryIndex)
{
    return QString::number(galleryIndex) + QLatin1Char('/');
}

// The page that a link to a gallery leads to: its current one or, as long as none was chosen, the first page
// of its layout, on which every look-up of a page lands.
DottedName PageShownBy(const CGalleryLayout& layout)
{
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    if (!layout.GetTemplatePage().isEmpty() || !layoutTemplate || layoutTemplate->GetPages().empty()) {
        return {layout.GetPageBaseName(), layout.GetPageExtension()};
    }
    return CutAtFirstDot(layoutTemplate->GetPages().front().file);
}

// Null if it names none.
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

QString GetDisplayName(const CGalleryContent& gallery, const CGallerySite& site)
{
    const std::optional<QString> own = gallery.FindOwnName();
    return own ? *own : site.GetName();
}

QString GetParentUrl(const CGalleryContent& gallery, const CGallerySite& site)
{
    const CGalleryContent* const parent = site.FindParentContent(gallery.GetIndex());
    const DottedName page = PageShownBy(parent ? parent->GetLayout() : gallery.GetLayout());
    if (!parent) {
        return page.stem + page.rest;
    }
    QString url = QStringLiteral("../");
    if (!IsRoot(*parent, site)) {
        url += FolderName(parent->GetIndex());
    }
    url += page.stem;
    // Odd on purpose: the position in the parent's pictures, not the number of a page.
    const int32_t position = parent->GetPictures().FindPosition(parent->FindChildPicture(gallery.GetIndex()));
    if (position > 0) {
        url += QString::number(position);
    }
    return url + page.rest;
}

QString GetParentPath(const CGalleryContent& gallery, const CGallerySite& site)
{
    std::vector<QString> links; // from here up; joined once, as a line of galleries may be long
    const CGalleryContent* current = &gallery;
    while (const CGalleryContent* parent = site.FindParentContent(current->GetIndex())) {
        const QString name = GetDisplayName(*parent, site);
        if (name.isEmpty()) {
            break;
        }
        links.push_back(QStringLiteral("<a href=\"") + GetParentUrl(*current, site) + QStringLiteral("\">") +
                        name + QStringLiteral("</a> \\ "));
        current = parent;
    }
    return QStringList(links.rbegin(), links.rend()).join(QString());
}

QString GetChildUrl(const CGalleryContent& gallery, const CGallerySite& site, int32_t childIndex)
{
    const DottedName page = PageShownBy(site.FindContent(childIndex)->GetLayout());
    return (IsRoot(gallery, site) ? QString() : QStringLiteral("../")) + FolderName(childIndex) + page.stem +
           page.rest;
}

std::optional<QString> FindPictureUrl(const CGalleryLayout& layout, const PictureLink& link)
{
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    if (!layoutTemplate || !layoutTemplate->HasPage(link.pageName)) {
        return std::nullopt;
    }
    if (link.position == 0) {
        return link.pageName;
    }
    const auto page = SplitPageName(link.pageName);
    if (!page) {
        return std::nullopt;
    }
    const int32_t perPage = link.countPicturesPerPage();
    // The number stands there for page 0 as well; only the very first picture goes without.
    return perPage == 0
               ? QString()
               : JoinPageName(
                     {.base = page->base, .number = link.position / perPage, .extension = page->extension});
}

std::optional<int32_t> FindGalleryOfUrl(const QString& url, int32_t rootIndex)
{
    if (!url.contains(QLatin1Char('/'))) {
        return std::nullopt;
    }
    if (url.count(QLatin1Char('/')) == 1 && url.startsWith(QStringLiteral("../"))) {
        return rootIndex;
    }
    const QString folder = GalleryFolderOf(url);
    return IsDecimal(folder) ? std::optional(ParseInteger(Narrow(folder))) : std::nullopt;
}

std::optional<bool> FollowPageLink(CGalleryContent& gallery, const QString& url)
{
    const qsizetype query = url.indexOf(QLatin1Char('?'));
    gallery.SetQueryString(query < 0 ? QString() : url.mid(query));
    const auto page = SplitPageName(query < 0 ? url : url.left(query));
    CGalleryLayout& layout = gallery.GetLayout();
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    if (!page || !layoutTemplate || !layoutTemplate->HasPage(page->base + page->extension)) {
        return std::nullopt;
    }
    bool styleChanged = false;
    const QString oldStyle = StyleChosenFor(layout, layout.GetPageBaseName());
    if (layout.SetTemplatePage(page->base + page->extension)) {
        const QString newStyle = StyleChosenFor(layout, layout.GetPageBaseName());
        if (!newStyle.isNull()) {
            layout.ShowStyle(newStyle);
            styleChanged = newStyle != oldStyle;
        }
    }
    layout.SetPageNumber(page->number);
    return styleChanged;
}
