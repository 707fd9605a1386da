#pragma once

#include <map>
#include <set>
#include <vector>

#include "template/contracts/ImageIterator.h"

// A gallery of made-up pictures "photo0.jpg", "photo1.jpg", ... with the paging rules of a real one and a
// record of what was asked. Picture variables: "title" is "Photo 0", ...; "index" is a number. Objects:
// "page", "gallery", bound ids.
class CTestIterator final : public CImageIterator {
public:
    explicit CTestIterator(int32_t pictureCount = 5) : pictureCount(pictureCount) {}

    void Reset() override;
    void NextPicture() override { ++cursor; }
    bool HasPicture() const override { return CurrentIndex() >= 0; }
    QString GetPicturePath(QString& out) override;
    bool GetPageProperty(int32_t pageNumber, const QString& name, CVariant& out) override;
    bool GetVariable(const QString& object, const QString& name, CVariant& out) override;
    void SetVariable(const QString& object, const QString& name, const CVariant& value) override;
    void BindPicture(const QString& id) override;
    void BindPictureReference(const QString& id, int32_t offset, int32_t modulo) override;
    int32_t GetPicturesPerPage() const override
    {
        return static_cast<int32_t>(bindings.size()) - referenceCount;
    }
    int32_t GetPageIndex() const override { return pageIndex; }
    int32_t GetPageCount() const override;
    int32_t GetPictureCount() const override { return pictureCount; }
    QString GetPageFileName(int32_t page) const override;
    bool IsLastPage() const override { return (pageIndex + 1) * GetPicturesPerPage() >= pictureCount; }
    bool IsElementVisible(const QString& name) override;
    void SetPageIndex(int32_t page) override;
    CPictureInfo* GetCurrentPicture() const override { return nullptr; }

    CVariableMap gallery;
    std::map<int32_t, CVariableMap> pages; // variables by page index
    std::set<QString> hiddenElements;
    bool echoesGallery = false;       // any variable of "gallery" has its own name in brackets as its value
    int32_t forcedPageCount = -1;     // replaces the count that follows from the pictures
    std::vector<QString> asked;       // "object.variable" as given, in the order of the questions
    std::vector<QString> askedLayout; // the names of page elements
    std::vector<QString> bound;       // "id" or "id offset modulo", in the order of binding

private:
    struct Binding {
        int32_t offset;
        int32_t modulo;
    };

    bool Bind(const QString& id, Binding binding);
    int32_t IndexOf(const Binding& binding) const;
    int32_t CurrentIndex() const;
    bool GetPageVariable(const QString& name, CVariant& out);
    bool GetGalleryVariable(const QString& name, CVariant& out);
    bool GetPictureVariable(int32_t index, const QString& name, CVariant& out) const;

    const int32_t pictureCount;
    int32_t cursor = 0;
    int32_t pageIndex = 0;
    int32_t referenceCount = 0;
    std::map<QString, Binding> bindings;
    std::vector<QString> boundIds;
};
