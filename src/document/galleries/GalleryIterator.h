#pragma once

#include <map>
#include <optional>
#include <vector>

#include "template/contracts/ImageIterator.h"

class CGallery;
class CGalleryTemplate;

// The iterator over a gallery: cuts its pictures into pages by the number of picture sections that a page
// has. Made for one pass over one page: construct, Init, Reset, bind the page, SetPageIndex, generate.
class CGalleryIterator final : public CImageIterator {
public:
    // To be called once, first. The gallery is borrowed. With no names given the gallery's current page and
    // page number are used. Forgets which elements the last render has asked about.
    void Init(CGallery& gallery, const QString& baseName = QString(), const QString& extension = QString(),
              int32_t pageIndex = 0);

    void Reset() override;
    void NextPicture() override { ++cursor; }
    bool HasPicture() const override;
    QString GetPicturePath(QString& out) override;
    void PreparePictures() override;
    bool GetPageProperty(int32_t pageNumber, const QString& name, CVariant& out) override;
    bool GetVariable(const QString& object, const QString& name, CVariant& out) override;
    void SetVariable(const QString& object, const QString& name, const CVariant& value) override;
    void BindPicture(const QString& id) override;
    void BindPictureReference(const QString& id, int32_t offset, int32_t modulo) override;
    int32_t GetPicturesPerPage() const override;
    int32_t GetPageIndex() const override { return pageIndex; }
    // Of all places for pictures, in their order; an id may stand there twice.
    const std::vector<QString>& GetBoundIds() const { return boundIds; }
    // Of the page's file in the layout.
    const QString& GetPageBaseName() const { return pageBaseName; }
    int32_t GetPageCount() const override;
    int32_t GetPictureCount() const override;
    QString GetPageFileName(int32_t page) const override;
    bool IsLastPage() const override;
    bool IsElementVisible(const QString& name) override;
    void SetPageIndex(int32_t page) override;
    CPictureInfo* GetCurrentPicture() const override;
    QString GetGalleryFileStem() const override { return fileStem; }

    // The position in the gallery that a bound id points at from the current page; may lie outside it.
    int32_t GetPictureIndex(int32_t offset, int32_t modulo) const;
    // False for an index outside the gallery and for a name that the picture does not know. A name "#PAGE"
    // puts the URL of that page with the picture into out, and the answer is false all the same.
    bool GetPictureProperty(int32_t index, const QString& name, CVariant& out);
    // The position of a bound id, -1 for an id that is not bound or points outside the gallery.
    int32_t FindPictureIndex(const QString& id) const;

private:
    struct Binding {
        int32_t offset;
        int32_t modulo;
        bool isReference; // shows nothing
    };

    void Bind(const QString& id, Binding binding);
    std::optional<CVariant> FindOwnPageVariable(const QString& name);
    void MakeStampEffects();

    int32_t cursor = 0; // position in boundIds of the next picture section; while binding, the next place
    int32_t pageIndex = 0;
    int32_t referenceCount = 0;
    CGallery* gallery = nullptr;
    std::map<QString, Binding> bindings; // by lower-cased id
    std::vector<QString> boundIds;       // in the order of binding, repeated ids included
    QString pageBaseName;
    QString pageExtension;
    QString fileStem;
};

// Binds the page for the gallery and counts the places that it has for pictures. Throws what
// CGalleryTemplate::LoadPage and the page itself throw.
int32_t CountPictures(CGallery& gallery, const CGalleryTemplate& layout, const QString& page);
