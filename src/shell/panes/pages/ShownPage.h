#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QString>
#include <QStringList>

class CExceptionBase;
class CGallery;
class CGalleryIterator;
class CVariant;

// The page of a gallery that the pages view shows: makes it, and knows what the names in it mean. Owned by
// the pages view; screen's thread.
class CShownPage final {
public:
    CShownPage();
    ~CShownPage();
    CShownPage(const CShownPage&) = delete;
    CShownPage& operator=(const CShownPage&) = delete;

    // The current page of the gallery, which is borrowed until the next call. Whatever is wrong with a layout
    // or a file, there is a page, which then tells of it.
    std::string Generate(CGallery& gallery);
    void Clear();

    // False without a gallery, and for a page that could not be made: then no name means anything.
    bool HasNames() const { return iterator != nullptr; }
    // The position in the gallery of an element's id, or -1.
    int32_t FindPictureIndex(const QString& id) const;
    // Empty for a position outside the gallery.
    QString GetPicturePath(int32_t position) const;
    // property: "object.variable". Nothing if it has no value.
    std::optional<QString> ReadVariable(const QString& property) const;
    // An empty value takes the property away: then the layout's own text shows.
    void WriteVariable(const QString& property, const CVariant& value);
    // Throws CExceptionBase if what is written there would be lost. name: of the text, for people.
    void RequireKept(const QString& property, const QString& name) const;

private:
    std::string GeneratePage();

    CGallery* gallery = nullptr;
    std::unique_ptr<CGalleryIterator> iterator;
};

// The folders of all files that pages of the gallery show.
QStringList FoldersOfPages(CGallery& gallery);

// The page that stands in the view in place of one that could not be made: what happened, why, and what to do
// about it.
std::string BuildFailurePage(const CExceptionBase& failure);
