#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "document/pictures/PictureInfo.h"
#include "template/contracts/ImageIterator.h"

class CGallery;

// Walks over the thumbnails of a folder for the generator of its page, past those that are hidden
// because the gallery has their pictures. What only a gallery can tell is empty. Owned by the folder
// view; screen's thread.
class CViewFolderImageIterator final : public CImageIterator {
public:
    using Collection = std::vector<std::unique_ptr<CFilePictureInfo>>;

    // collection: borrowed. Call SetCollection when its content has changed.
    explicit CViewFolderImageIterator(const Collection& collection) : collection(collection) {}

    // Nothing is hidden any more.
    void SetCollection();
    void HidePicture(int32_t index) { hiddenPictures.insert(index); }
    bool IsHidden(int32_t index) const { return hiddenPictures.contains(index); }
    // Hides the pictures of the gallery, and shows all others. Null hides nothing.
    void SetGallery(const CGallery* gallery);
    // The index of a picture by its path; -1 if the collection does not have it.
    int32_t FindIndex(const QString& path) const;
    // The index in the collection of the picture under the cursor.
    int32_t GetIndex() const { return index; }

    void Reset() override;
    void NextPicture() override;
    bool HasPicture() const override;
    // The path of the thumbnail.
    QString GetPicturePath(QString& out) override;
    CPictureInfo* GetCurrentPicture() const override;
    int32_t GetPictureCount() const override { return static_cast<int32_t>(collection.size()); }
    int32_t GetPicturesPerPage() const override { return GetPictureCount(); }

    bool GetPageProperty(int32_t, const QString&, CVariant&) override { return false; }
    bool GetVariable(const QString&, const QString&, CVariant&) override { return false; }
    void SetVariable(const QString&, const QString&, const CVariant&) override {}
    void BindPicture(const QString&) override {}
    void BindPictureReference(const QString&, int32_t, int32_t) override {}
    int32_t GetPageIndex() const override { return 0; }
    int32_t GetPageCount() const override { return 1; }
    QString GetPageFileName(int32_t) const override { return QString(); }
    bool IsLastPage() const override { return true; }
    bool IsElementVisible(const QString&) override { return true; }
    void SetPageIndex(int32_t) override {}

private:
    void SkipHidden();

    const Collection& collection;
    std::map<QString, int32_t> indexByPath;
    std::set<int32_t> hiddenPictures;
    int32_t index = 0;
};

// The paths by which the gallery knows its pictures. Null has none.
std::set<QString> KeysOfPictures(const CGallery* gallery);
