#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <QString>
#include <QStringList>

#include "editing/TextActs.h"

class CExceptionBase;
class CGallery;
class CGalleryIterator;
class CPictureInfo;

// By what a picture is known while its gallery changes: its path, or the index of the child gallery that it
// stands for.
QString KeyOf(const CPictureInfo& picture);
// Of all pictures of a gallery, by position.
QStringList KeysOf(const CGallery& gallery);

// What the ids of pictures mean on a page, also when the document has changed since. A plain value.
struct PagePictures {
    int32_t gallery = -1;            // index
    std::map<QString, QString> keys; // by id

    // Empty for an id that means none.
    QString FindKey(const QString& id) const;
    // Where the picture stands by now; -1 if it doesn't.
    int32_t FindPosition(const CGallery& current, const QString& id) const;
};

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
    PagePictures GetPictures() const;
    // Empty for a position outside the gallery.
    QString GetPicturePath(int32_t position) const;
    // property: "object.variable". Nothing if it has no value.
    std::optional<QString> ReadVariable(const QString& property) const;
    // Where the document keeps the property. Throws CExceptionBase if what is written there would be lost.
    // name: of the text, for people.
    TextPlace FindTextPlace(const QString& property, const QString& name) const;

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
