#pragma once

#include <cstdint>

#include <QString>

#include "document/cover/GalleryCover.h"
#include "document/links/GalleryLinks.h"

class CGallery;
class CGalleryTemplate;

// The project as its galleries see it. Galleries are addressed by an index that stays theirs for as long as
// they exist. Main thread, or the one thread that generates pages while nobody changes the document.
class CGalleryManager : public CGallerySite, public CCoverSite {
public:
    virtual ~CGalleryManager() = default;

    // Null for an index that names no gallery. Such an index gets an empty entry, so that callers pass only
    // indexes that they know.
    virtual CGallery* GetGallery(int32_t index) = 0;
    // The same for an index that may name no gallery: no entry is made.
    virtual CGallery* FindGallery(int32_t index) = 0;
    // Null for the root, for an index that names no gallery and for a gallery that no other lists.
    virtual CGallery* GetParentGallery(int32_t index) = 0;
    // -1 if the gallery is not in the project.
    virtual int32_t GetGalleryIndex(const CGallery* gallery) const = 0;
    // Returns the index of the new gallery.
    virtual int32_t AddGallery() = 0;
    virtual void RemoveGallery(int32_t index) = 0;
    // Nothing changes for an index that names no gallery.
    virtual void SetCurrentGallery(int32_t index) = 0;

    // How many pictures the page binds for this gallery: a pass over the page that may write into the
    // gallery's texts, as every pass does. Throws what CGalleryTemplate::LoadPage and the page itself throw.
    virtual int32_t CountPictures(CGallery& gallery, const CGalleryTemplate& layout, const QString& page) = 0;
};
