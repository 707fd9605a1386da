#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include <QString>

#include "common/Variant.h"

class CImageEffectCompound;
class CPictureInfo;

// What the sections of a page see of a gallery: a cursor over the pictures of the page in work, its paging, a
// lookup of values by object and name, and the stamp effects by picture size. Made for one pass over one page
// and used by one thread at a time.
//
// A null QString (isNull) stands for "no name given", an empty one for an empty name.
class CImageIterator {
public:
    static constexpr int SizeClassCount = 3;

    CImageIterator();
    virtual ~CImageIterator();
    CImageIterator(const CImageIterator&) = delete;
    CImageIterator& operator=(const CImageIterator&) = delete;

    virtual void Reset() = 0;
    virtual void NextPicture() = 0;
    virtual bool HasPicture() const = 0;
    virtual QString GetPicturePath(QString& out) = 0;
    // Makes the files that GetPicturePath would make one after the other for the pictures bound on this page,
    // all at once.
    virtual void PreparePictures() {}
    virtual bool GetPageProperty(int32_t pageNumber, const QString& name, CVariant& out) = 0;
    virtual bool GetVariable(const QString& object, const QString& name, CVariant& out) = 0;
    virtual void SetVariable(const QString& object, const QString& name, const CVariant& value) = 0;
    virtual void BindPicture(const QString& id) = 0;
    virtual void BindPictureReference(const QString& id, int32_t offset, int32_t modulo) = 0;
    virtual int32_t GetPicturesPerPage() const = 0;
    virtual int32_t GetPageIndex() const = 0;
    virtual int32_t GetPageCount() const = 0;
    virtual int32_t GetPictureCount() const = 0;
    virtual QString GetPageFileName(int32_t page) const = 0;
    virtual bool IsLastPage() const = 0;
    virtual bool IsElementVisible(const QString& name) = 0;
    virtual void SetPageIndex(int32_t page) = 0;
    // Owned by the gallery; null if the cursor stands on no picture.
    virtual CPictureInfo* GetCurrentPicture() const = 0;
    // The stamps for a picture that is shown in a box of that size, in pixels. Shared, so that image work
    // which is put off may outlive the iterator.
    virtual std::shared_ptr<const CImageEffectCompound> GetEffectsForSize(int32_t width,
                                                                          int32_t height) const;
    virtual QString GetGalleryFileStem() const;

protected:
    // One compound for each size class: small, middle, large.
    std::array<std::shared_ptr<CImageEffectCompound>, SizeClassCount> stampEffects;
};

// 0 if both sides are below 200 pixels, else 1 if both are below 600, else 2.
int GetSizeClass(int32_t width, int32_t height);
