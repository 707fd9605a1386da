#pragma once

#include <cstdint>

#include <QString>

class CCoverCache;
class CGallery;
class CTempFolder;

// The project as its galleries see it. Galleries are addressed by an index that stays theirs for as long as
// they exist. Main thread, or the one thread that generates pages while nobody changes the document.
class CGalleryManager {
public:
    // True but for the time in which pages are generated to be published.
    virtual bool IsPreviewMode() = 0;
    // The project's name.
    virtual QString GetName() = 0;
    // Null for an index that names no gallery. Such an index gets an empty entry, so that callers pass only
    // indexes that they know.
    virtual CGallery* GetGallery(int32_t index) = 0;
    // Returns the index of the new gallery.
    virtual int32_t AddGallery() = 0;
    virtual void RemoveGallery(int32_t index) = 0;
    // Nothing changes for an index that names no gallery.
    virtual void SetCurrentGallery(int32_t index) = 0;
    // -1 if the gallery is not in the project.
    virtual int32_t GetGalleryIndex(const CGallery* gallery) = 0;
    virtual int32_t GetRootGalleryIndex() = 0;
    // Null for the root, for an index that names no gallery and for a gallery that no other lists.
    virtual CGallery* GetParentGallery(int32_t index) = 0;
    virtual ~CGalleryManager() = default;

    // The same as GetGallery for an index that may name no gallery: no entry is made.
    virtual CGallery* FindGallery(int32_t index) const = 0;
    // With a trailing separator.
    virtual QString GetProgramFolder() = 0;
    virtual CTempFolder& GetTempFolder() = 0;
    virtual CCoverCache& GetCoverCache() = 0;
    // The address of the server that banners come from, and the feed shown in their place in the preview.
    // Both are empty where the installation supplies none.
    virtual QString GetBannerServer() = 0;
    virtual QString GetBannerFeed() = 0;
};
