#include "document/GalleryCover.h"

#include <atomic>
#include <cstdio>

#include <QFile>

#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "document/Gallery.h"
#include "document/GalleryPictureInfo.h"

namespace {

// Documents may live on several threads.
int64_t NextRevision()
{
    static std::atomic<int64_t> last = 0;
    return ++last;
}

} // namespace

CGalleryCover::CGalleryCover(CGallery& gallery) : gallery(gallery), revision(NextRevision()) {}

QString CGalleryCover::GetPath()
{
    const std::vector<CGallery*> unmade = ListUnmade();
    for (auto next = unmade.rbegin(); next != unmade.rend(); ++next) {
        (*next)->GetCover().Make();
    }
    return GetName();
}

// Each before those that it shows. A list instead of recursion: a hand-made project may be a line of
// thousands of galleries.
std::vector<CGallery*> CGalleryCover::ListUnmade()
{
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
    return open;
}

CGallery* CGalleryCover::FindUnmade()
{
    const std::vector<CGallery*> unmade = ListUnmade();
    return unmade.empty() ? nullptr : unmade.back();
}

CGalleryCover::Recipe CGalleryCover::HandOut()
{
    isHandedOut = true;
    return {.revision = revision, .pictures = GetShownPictures()};
}

void CGalleryCover::Accept(int64_t recipeRevision, const QString& file)
{
    const QByteArray from = QFile::encodeName(file);
    if (isMade || recipeRevision != revision ||
        std::rename(from.constData(), QFile::encodeName(GetName()).constData()) != 0) {
        std::remove(from.constData());
        return;
    }
    isMade = true;
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

// False if nobody above needs to know: there is no other name, and pixels that nobody has asked for before
// are not shown anywhere yet.
bool CGalleryCover::Choose()
{
    if (isHeld) {
        return false;
    }
    shownCount = CountOfCoverPictures(gallery.GetPictures().GetCount());
    const QString newPath = PathOf(GetShownPictures());
    const bool isNews = isMade || isHandedOut || newPath != path;
    path = newPath;
    revision = NextRevision();
    isHandedOut = false;
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
    SaveCover(GetName(), GetShownPictures());
    isMade = true;
}
