#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include <QString>

#include "document/cover/GalleryCover.h"
#include "document/galleries/GalleryLayout.h"
#include "document/galleries/GalleryManager.h"
#include "document/galleries/GalleryVariables.h"
#include "document/galleries/PageVisibility.h"
#include "document/pictures/PictureList.h"
#include "effects/StampParams.h"

class CGalleryPictureInfo;

// One gallery of a project: its pictures and child galleries in one order, its layout and style, its
// variables, stamps and cover. Owned by the project, which outlives it and is seen through CGalleryManager.
// Used by the main thread, or by the one thread that generates pages while nobody changes the document.
class CGallery {
public:
    // One set of stamps for each class of picture size: small, middle, large.
    static constexpr size_t StampCount = 3;

    CGallery(CGalleryManager& manager, CGalleryCatalogue& catalogue, int32_t index);
    CGallery(const CGallery&) = delete;
    CGallery& operator=(const CGallery&) = delete;

    int32_t GetIndex() const { return index; }
    CGalleryManager& GetManager() const { return manager; }
    CPictureList& GetPictures() { return pictures; }
    const CPictureList& GetPictures() const { return pictures; }
    const CGalleryLayout& GetLayout() const { return layout; }
    CGalleryLayout& GetLayout() { return layout; }

    // --- Layout and pages.

    // A layout by its key, else by its file name, else the first; see CGalleryCatalogue::ChooseTemplate. The
    // page number is scaled so that the picture on screen stays there. Throws what GetPicturesPerPage throws
    // for the new page, and CTemplateParsingException for a first page without extension; then nothing has
    // changed.
    void SetTemplate(const QString& path);
    void SetStyle(const QString& path) { layout.SetStyle(path); }
    // False if it is the page already. Throws CTemplateParsingException for a name without ".".
    bool SetTemplatePage(const QString& name) { return layout.SetTemplatePage(name); }
    // The first layout that has a multipage page, if there is one.
    void SelectMultipageTemplate();
    // How many pictures one output page takes, counted once for each layout page. 0 for a page without
    // pictures and for one that can't be parsed. Throws CFileException for a page file that can't be opened.
    int32_t GetPicturesPerPage(CGalleryTemplate& layoutTemplate, const QString& page);
    // Goes to the page that shows the picture; to the first one if a page shows no pictures.
    void SetCurrentPicture(int32_t position);
    // Full paths of the style folders that the published gallery needs, each once.
    std::vector<QString> GetStyleDirectories();

    // --- Pictures. Positions outside the list change nothing.

    // Null, and nothing changed, for the file of a child gallery's cover.
    CPictureInfo* AddPicture(const QString& path);
    // The same at the end of the list, whatever the page says, and with an angle: for reading a project.
    CPictureInfo* AppendPicture(const QString& path, int32_t angle);
    // Removes the gallery from the project if the entry is a child gallery.
    void RemovePicture(int32_t position);
    // Swaps the two.
    void MovePicture(int32_t a, int32_t b);
    // By a quarter turn.
    void RotatePicture(int32_t position, bool clockwise);
    // A plain picture becomes a child gallery that holds it.
    void MakeChildFromPicture(int32_t position);

    // --- Tree.

    // The new entry, or the one that is there already. Null, and nothing changed, for an index that names no
    // gallery, this gallery, or one above it: the tree has no circles.
    CGalleryPictureInfo* AddChild(int32_t childIndex);
    void RemoveChild(int32_t childIndex);
    std::set<int32_t> GetChildren() const;
    bool HasChildren() const { return !childPictures.empty(); }
    // Null if this gallery does not list that one.
    CGalleryPictureInfo* FindChildPicture(int32_t childIndex) const;
    // Null for the root, and for a gallery that no other lists.
    CGallery* GetParent() const { return manager.GetParentGallery(index); }
    // Indexes of the galleries that list this one; kept by their AddChild and RemoveChild.
    const std::set<int32_t>& GetParentIndexes() const { return parentIndexes; }
    // For a gallery that is about to leave the project: no child knows it as a parent any more.
    void ForgetChildren();

    // --- Cover. See GalleryCover.h.

    QString GetCoverPath() { return cover.GetPath(); }
    QString GetCoverName() { return cover.GetName(); }
    // To be called behind every change of the content, with the lowest position touched.
    void UpdateCover(int32_t changedPosition) { cover.Update(changedPosition); }
    void OnChildCoverChanged(const QString& oldPath) { cover.OnChildChanged(oldPath); }
    CGalleryCover& GetCover() { return cover; }

    // --- Names, links and values. See GalleryLinks.h and GalleryVariables.h.

    QString GetDisplayName();
    QString GetParentPath();
    bool GetPageUrl(int32_t position, const QString& pageName, QString& url);
    bool GetObjectVariable(const QString& object, const QString& name, CVariant& out);
    void SetObjectVariable(const QString& object, const QString& name, const CVariant& value);
    bool GetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name, CVariant& out);
    void SetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name,
                         const CVariant& value);
    CGalleryVariables& GetVariables() { return variables; }
    bool FollowLink(const QString& url, bool& styleChanged, bool& galleryChanged);
    bool NavigateToGallery(const QString& url);
    // The text from "?" on in the link that was followed last.
    const QString& GetQueryString() const { return queryString; }
    void SetQueryString(const QString& text) { queryString = text; }

    // --- Visibility, of elements of the current page.

    const CPageVisibility::Elements& GetVisibilityMap() const { return visibility.GetSeenElements(); }
    void SetVisibilityMap(const CPageVisibility::Elements& map);
    bool IsElementVisibleOnPage(const QString& name);
    CPageVisibility& GetVisibility() { return visibility; }

    // --- Stamps.

    std::array<CImageStampParams, StampCount>& GetImageStamps() { return imageStamps; }
    std::array<CTextStampParams, StampCount>& GetTextStamps() { return textStamps; }

private:
    struct NewFile {
        const QString& path;
        int32_t angle;
        bool atFront;
    };
    CPictureInfo* AddFile(const NewFile& file);
    int32_t CountPictures(CGalleryTemplate& layoutTemplate, const QString& page);
    int32_t ScaledPageNumber(const CGalleryLayout& before);
    int32_t PositionOfAdded(const CPictureInfo* record) const;

    CGalleryManager& manager;
    const int32_t index;
    CGalleryLayout layout;
    CPageVisibility visibility;
    CGalleryVariables variables;
    CPictureList pictures;
    std::map<int32_t, CGalleryPictureInfo*>
        childPictures; // by index; each is an entry of pictures, its owner
    std::set<int32_t> parentIndexes;
    CGalleryCover cover;
    std::array<CImageStampParams, StampCount> imageStamps;
    std::array<CTextStampParams, StampCount> textStamps;
    QString queryString;
};
