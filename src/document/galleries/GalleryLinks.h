#pragma once

#include <cstdint>

#include <QString>

class CGallery;
class CGalleryManager;

// Links between the pages of a site. The site is flat: the root gallery's pages lie at the top, those of
// every other gallery in a folder that is named by its index. All URLs are relative to the gallery's own
// folder.

// From a page of this gallery to the page of its parent that lists it; to the gallery's own page for the
// root.
QString GetParentUrl(CGallery& gallery);

// The breadcrumb: a link for each gallery above, from the root down. Empty for the root.
QString GetParentPath(CGallery& gallery);

struct PictureLink {
    int32_t position; // in the gallery's pictures
    QString pageName; // file name of a page of its layout
};

// The page that shows the picture, or the child gallery that stands there. False if the layout has no such
// page or its name can't be split; an empty URL for a page without pictures. Throws what
// CGallery::GetPicturesPerPage throws.
bool GetPageUrl(CGallery& gallery, const PictureLink& link, QString& url);

struct FollowedLink {
    bool& styleChanged;
    bool& galleryChanged; // set for a link to another gallery, else left as it is
};

// Follows a link that was clicked in the preview. False if it leads out of the gallery and the project.
bool FollowLink(CGallery& gallery, const QString& url, FollowedLink followed);

// Makes the gallery that the URL leads to the current one. False if it leads to no other gallery.
bool NavigateToGallery(CGalleryManager& manager, const QString& url);
