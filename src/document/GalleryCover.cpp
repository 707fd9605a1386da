#include "document/GalleryCover.h"

#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "document/CoverComposition.h"
#include "document/Gallery.h"
#include "document/GalleryPictureInfo.h"

QString CGalleryCover::GetPath()
{
    // A list instead of recursion: a hand-made project may be a line of thousands of galleries.
    std::vector<CGallery*> open;
    if (!isMade) {
        open.push_back(&gallery);
    }
    for (size_t i = 0; i < open.size(); ++i) {
        for (CGallery* child : open[i]->GetCover().GetShownChildren()) {
            if (!child->GetCover().isMade) {
                open.push_back(child);
            }
        }
    }
    for (auto next = open.rbegin(); next != open.rend(); ++next) {
        (*next)->GetCover().Make();
    }
    return GetName();
}

QString CGalleryCover::GetName()
{
    if (path.isEmpty()) {
        path = PathOf({});
    }
    return path;
}

void CGalleryCover::Update(int32_t changedPosition)
{
    CGallery* changed = &gallery;
    while (changed && changedPosition < PictureCount) {
        const QString oldPath = changed->GetCover().GetName();
        if (!changed->GetCover().Choose()) {
            return;
        }
        CGallery* const parent = changed->GetParent();
        if (parent) {
            changedPosition = parent->GetCover().RekeyChild(*changed, oldPath);
        }
        changed = parent;
    }
}

// False if nobody above needs to know: there is no other name, and pixels that were not made before are not
// shown anywhere yet.
bool CGalleryCover::Choose()
{
    if (isHeld) {
        return false;
    }
    shownCount = CountOfCoverPictures(gallery.GetPictures().GetCount());
    const QString newPath = PathOf(GetShownPictures());
    const bool isNews = isMade || newPath != path;
    path = newPath;
    // The same name can hide another picture: of two tiles that change places, or of one that is turned.
    isMade = false;
    return isNews;
}

void CGalleryCover::OnChildChanged(const QString& oldPath)
{
    CPictureList& pictures = gallery.GetPictures();
    if (const CPictureInfo* record = pictures.FindRecord(oldPath)) {
        pictures.Rekey(oldPath);
        Update(PositionOf(record));
    }
}

int32_t CGalleryCover::RekeyChild(const CGallery& child, const QString& oldPath)
{
    gallery.GetPictures().Rekey(oldPath);
    return PositionOf(gallery.FindChildPicture(child.GetIndex()));
}

void CGalleryCover::Release()
{
    isHeld = false;
    Update(0);
}

// PictureCount for a record that can't show.
int32_t CGalleryCover::PositionOf(const CPictureInfo* record) const
{
    int32_t position = 0;
    while (position < PictureCount && gallery.GetPictures().GetAt(position) != record) {
        ++position;
    }
    return position;
}

std::vector<CoverPicture> CGalleryCover::GetShownPictures() const
{
    std::vector<CoverPicture> shown;
    for (int32_t position = 0; position < shownCount; ++position) {
        CPictureInfo* const record = gallery.GetPictures().GetAt(position);
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
            const QString cover = child->GetGallery().GetCoverName();
            shown.push_back({cover, ExtractLastName(cover), record->GetAngle()});
        } else {
            shown.push_back({record->GetPath(), record->GetPath(), record->GetAngle()});
        }
    }
    return shown;
}

std::vector<CGallery*> CGalleryCover::GetShownChildren() const
{
    std::vector<CGallery*> children;
    for (int32_t position = 0; position < shownCount; ++position) {
        const CPictureInfo* const record = gallery.GetPictures().GetAt(position);
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
            children.push_back(&child->GetGallery());
        }
    }
    return children;
}

QString CGalleryCover::PathOf(const std::vector<CoverPicture>& pictures) const
{
    return gallery.GetManager().GetTempFolder().GetPath() + CoverFileName(gallery.GetIndex(), pictures);
}

void CGalleryCover::Make()
{
    if (isMade) {
        return;
    }
    const std::vector<CoverPicture> pictures = GetShownPictures();
    if (pictures.empty() || !SaveCover(GetName(), pictures)) {
        const QString empty = gallery.GetManager().GetTempFolder().ExtractResource(
            QStringLiteral("new_gallery"), QStringLiteral("png"), ExtractLastName(PathOf({})), true);
        if (empty != GetName()) {
            SaveCoverLike(GetName(), empty);
        }
    }
    isMade = true;
}
