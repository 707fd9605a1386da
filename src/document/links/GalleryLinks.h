#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <QString>

class CGalleryContent;
class CGalleryLayout;

// The site as the links and values of one of its galleries see it. Implemented by the project.
class CGallerySite {
public:
    // True but for the time in which pages are generated to be published.
    virtual bool IsPreviewMode() const = 0;
    // The project's name.
    virtual QString GetName() const = 0;
    virtual int32_t GetRootGalleryIndex() const = 0;
    // Null for an index that names no gallery.
    virtual const CGalleryContent* FindContent(int32_t index) const = 0;
    // Of the gallery that lists this one; null for the root and for a gallery that no other lists.
    virtual const CGalleryContent* FindParentContent(int32_t index) const = 0;
    // With a trailing separator.
    virtual QString GetProgramFolder() const = 0;
    // The address of the server that banners come from, and the feed shown in their place in the preview.
    // Both are empty where the installation supplies none.
    virtual QString GetBannerServer() const = 0;
    virtual QString GetBannerFeed() const = 0;

protected:
    ~CGallerySite() = default;
};

// Links between the pages of a site. The site is flat: the root gallery's pages lie at the top, those of
// every other gallery in a folder that is named by its index. URLs are relative to the gallery's own folder.

// The gallery's own name, else the project's.
QString GetDisplayName(const CGalleryContent& gallery, const CGallerySite& site);

// From a page of this gallery to the page of its parent that lists it; for the root to its own page.
QString GetParentUrl(const CGalleryContent& gallery, const CGallerySite& site);

// The breadcrumb: a link for each gallery above, from the root down. Empty for the root.
QString GetParentPath(const CGalleryContent& gallery, const CGallerySite& site);

// To the page that shows a child gallery. The index names a gallery of the site.
QString GetChildUrl(const CGalleryContent& gallery, const CGallerySite& site, int32_t childIndex);

struct PictureLink {
    int32_t position; // in the gallery's pictures
    QString pageName; // file name of a page of its layout
    // How many pictures one output page of that name takes. Asked only where the answer counts.
    std::function<int32_t()> countPicturesPerPage;
};

// The page that shows a picture. Nothing if the layout has no such page or its name can't be split; an empty
// URL for a page without pictures. Throws what the count throws.
std::optional<QString> FindPictureUrl(const CGalleryLayout& layout, const PictureLink& link);

// The index in decimal that a URL names as its folder, or the root's for a URL that leads one folder up.
// Nothing if it leads to no gallery; whether there is one of that index is not looked at.
std::optional<int32_t> FindGalleryOfUrl(const QString& url, int32_t rootIndex);

// Follows a link to a page of the gallery itself. Nothing if it has no such page; else whether another style
// is in force now.
std::optional<bool> FollowPageLink(CGalleryContent& gallery, const QString& url);
