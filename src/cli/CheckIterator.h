#pragma once

#include <map>
#include <set>

#include "template/contracts/ImageIterator.h"

// A gallery of which nothing is known but its layout's folder, so that a page can be bound for its check. It
// has more pictures than a page shows, and all elements are visible. As at the first binding of a real page,
// an id that is asked for before its picture is bound answers with an error's text, so that the branches that
// are taken are those that bind pictures. Made for one page.
class CCheckIterator final : public CImageIterator {
public:
    explicit CCheckIterator(const QString& layoutFolder) : layoutFolder(layoutFolder) {}

    void Reset() override {}
    void NextPicture() override {}
    bool HasPicture() const override { return false; }
    QString GetPicturePath(QString&) override { return QString(); }
    bool GetPageProperty(int32_t, const QString&, CVariant&) override { return false; }
    bool GetVariable(const QString& object, const QString& name, CVariant& out) override;
    void SetVariable(const QString& object, const QString& name, const CVariant& value) override;
    void BindPicture(const QString& id) override;
    void BindPictureReference(const QString& id, int32_t offset, int32_t modulo) override;
    int32_t GetPicturesPerPage() const override { return static_cast<int32_t>(ownIds.size()); }
    int32_t GetPageIndex() const override { return 0; }
    int32_t GetPageCount() const override { return GetPicturesPerPage() == 0 ? 0 : PageCount; }
    int32_t GetPictureCount() const override { return PageCount * GetPicturesPerPage() + PageCount; }
    QString GetPageFileName(int32_t page) const override { return QString::number(page); }
    bool IsLastPage() const override { return false; }
    bool IsElementVisible(const QString&) override { return true; }
    void SetPageIndex(int32_t) override {}
    CPictureInfo* GetCurrentPicture() const override { return nullptr; }

private:
    static constexpr int32_t PageCount = 20;

    bool GetPageVariable(const QString& name, CVariant& out) const;

    const QString layoutFolder;
    std::set<QString> ids;    // of all bound pictures
    std::set<QString> ownIds; // of those that are no references
    std::map<QString, CVariant> pageVariables;
};
