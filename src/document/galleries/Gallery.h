#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include <QString>

#include "document/content/GalleryContent.h"
#include "document/content/GalleryState.h"
#include "document/cover/GalleryCover.h"
#include "document/galleries/GalleryManager.h"

// One gallery of a project: its content, its place in the tree of galleries, and its cover. Owned by the
// project, which outlives it and is seen through CGalleryManager. Used by the main thread, or by the one
// thread that generates pages while nobody changes the document.
class CGallery final : public CGalleryContent, private CListedGallery {
public:
    CGallery(CGalleryManager& manager, const CGalleryCatalogue& catalogue, int32_t index);

    CGalleryManager& GetManager() const { return manager; }

    // --- Layout and pages.

    // A layout by its key, else by its file name, else the first; see CGalleryCatalogue::ChooseTemplate. The
    // page number is scaled so that the picture on screen stays there. Throws what GetPicturesPerPage throws
    // for the new page, and CTemplateParsingException for a first page without extension; nothing has changed
    // then, neither layout nor page.
    void SetTemplate(const QString& path);
    // The first layout that has a multipage page, if there is one.
    void SelectMultipageTemplate();
    // How many pictures one output page takes, counted once for each layout page. 0 for a page without
    // pictures and for one that can't be parsed. Throws CFileException for a page file that can't be opened.
    int32_t GetPicturesPerPage(const CGalleryTemplate& layoutTemplate, const QString& page);
    // Goes to the page that shows the picture; to the first one if a page shows no pictures.
    void SetCurrentPicture(int32_t position);
    // Full paths of the style folders that the published gallery needs, each once.
    std::vector<QString> GetStyleDirectories() const;

    // --- Pictures. Positions outside the list change nothing.

    // A picture that is there already stays as it is, with its texts, angle and place. No record, and nothing
    // changed, for the file of a child gallery's cover.
    AddedPicture AddPicture(const QString& path);
    // The same at the end of the list, whatever the page says, and with an angle: for reading a project.
    AddedPicture AppendPicture(const QString& path, int32_t angle);
    // Removes the gallery from the project if the entry is a child gallery.
    void RemovePicture(int32_t position);
    // Swaps the two.
    void MovePicture(int32_t a, int32_t b);
    // order: where each picture stands now, by its new position; every position once.
    void ReorderPictures(const std::vector<int32_t>& order);
    // Plain pictures leave with all that is known of them, in the order of the positions; child galleries
    // stay.
    std::vector<std::unique_ptr<CPictureInfo>> TakePictures(const std::vector<int32_t>& positions);
    // Takes one over, where the current page adds what is new. False, and the picture stays with the caller,
    // if its file is in the gallery already.
    bool TakeOver(std::unique_ptr<CPictureInfo>& picture);
    // By a quarter turn.
    void RotatePicture(int32_t position, bool clockwise);
    // A plain picture becomes a child gallery that holds it.
    void MakeChildFromPicture(int32_t position);

    // --- Moments. See GalleryState.h.

    // Takes back or does anew: the parts in which the two differ become those of the first. The galleries
    // that are children in it have to be there. The cover is to be updated afterwards.
    void Restore(const GalleryState& wanted, const GalleryState& present);
    // For a new gallery. copies: for each gallery below the other the one that stands for it below this one.
    void BecomeCopyOf(const CGallery& other, const std::map<int32_t, int32_t>& copies);

    // --- Tree.

    // The new entry, or the one that is there already. Null, and nothing changed, for an index that names no
    // gallery, this gallery, or one above it: the tree has no circles.
    CGalleryPictureInfo* AddChild(int32_t childIndex);
    // The entry that stands for a child, and where.
    struct ChildPlace {
        PictureListState::Child entry;
        int32_t position = 0;
    };
    std::optional<ChildPlace> FindChildPlace(int32_t childIndex) const;
    // Lists a gallery that nobody lists, in front of what stands there; at the end for a position after it.
    void AddChild(const ChildPlace& place);
    void RemoveChild(int32_t childIndex);
    // Null for the root, and for a gallery that no other lists.
    CGallery* GetParent() const { return manager.GetParentGallery(GetIndex()); }
    // Indexes of the galleries that list this one; kept by their AddChild and RemoveChild.
    const std::set<int32_t>& GetParentIndexes() const { return parentIndexes; }
    // For a gallery that is about to leave the project: no child knows it as a parent any more.
    void ForgetChildren();

    // --- Cover.

    const CGalleryCover& GetCover() const { return cover; }
    CGalleryCover& GetCover() { return cover; }
    QString GetCoverPath() override { return cover.GetPath(); }
    // To be called after every change of the content, with the lowest position touched.
    void UpdateCover(int32_t changedPosition) { cover.Update(changedPosition); }
    void OnChildCoverChanged(const QString& oldPath) { cover.OnChildChanged(oldPath); }

    // --- Names, links and values. See GalleryLinks.h and GalleryVariables.h.

    QString GetDisplayName() const { return ::GetDisplayName(*this, manager); }
    QString GetParentPath() const { return ::GetParentPath(*this, manager); }
    // The page that shows the picture, or the child gallery that stands there. Nothing if there is none.
    // Throws what GetPicturesPerPage throws.
    std::optional<QString> GetPageUrl(int32_t position, const QString& pageName);
    // Asks as a page does: an advertisement that the current page has not got is entered as an empty text.
    std::optional<CVariant> GetObjectVariable(const QString& object, const QString& name);
    std::optional<CVariant> GetPageVariable(const QString& pageName, int32_t pageNumber,
                                            const QString& name) const;
    // Follows a link that was clicked in the preview. False if it leads out of the gallery and the project.
    // galleryChanged: set for a link to another gallery, else left as it is.
    bool FollowLink(const QString& url, bool& styleChanged, bool& galleryChanged);
    // Makes the gallery that the URL leads to the current one. False if it leads to no other gallery.
    bool NavigateToGallery(const QString& url);

private:
    QString GetCoverName() const override { return cover.GetName(); }
    DateValue GetEarliestDate() const override { return GetPictures().GetMinDate(); }
    DateValue GetLatestDate() const override { return GetPictures().GetMaxDate(); }
    CVariant FindGalleryVariable(const QString& name) const override;
    void SetGalleryVariable(const QString& name, const CVariant& value) override;

    struct NewFile {
        const QString& path;
        int32_t angle;
        bool atFront;
    };
    AddedPicture AddFile(const NewFile& file);
    void RestorePictures(const PictureListState& state);
    std::unique_ptr<CGalleryPictureInfo> MakeChildEntry(const PictureListState::Child& state);
    int32_t ScaledPageNumber(const CGalleryLayout& before);
    int32_t PositionOfAdded(const CPictureInfo* record) const;
    bool IsAtOrAbove(const CGallery& gallery) const;

    CGalleryManager& manager;
    std::set<int32_t> parentIndexes;
    CGalleryCover cover;
};
