#include "document/cover/GalleryCover.h"

#include <atomic>
#include <cstdio>
#include <map>

#include <QFile>

#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "common/WorkerPool.h"
#include "document/cover/CoverCache.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/GalleryPictureInfo.h"

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
    if (!isMade) {
        MakeAll({&gallery});
    }
    return GetName();
}

CGallery* CGalleryCover::FindUnmade()
{
    const std::vector<std::vector<CGallery*>> waves = WavesOf({&gallery});
    return waves.empty() ? nullptr : waves.front().front();
}

CGalleryCover::Recipe CGalleryCover::HandOut()
{
    isHandedOut = true;
    return {.revision = revision, .pictures = GetShownPictures()};
}

void CGalleryCover::Accept(int64_t recipeRevision, const MadeCover& cover)
{
    const QByteArray from = QFile::encodeName(cover.file);
    if (isMade || recipeRevision != revision ||
        std::rename(from.constData(), QFile::encodeName(GetName()).constData()) != 0) {
        std::remove(from.constData());
        return;
    }
    key = cover.key;
    isMade = true;
}

// The threads see a document that nobody changes meanwhile: the caller waits for them.
void CGalleryCover::MakeAll(const std::vector<CGallery*>& galleries)
{
    for (const std::vector<CGallery*>& wave : WavesOf(galleries)) {
        for (CGallery* next : wave) {
            next->GetCover().GetName(); // before several threads ask for it
        }
        OnAllCores(wave.size(), [&](size_t i) { wave[i]->GetCover().Make(); });
    }
}

// Those that are not made, each once, with the children that they show. The covers of a wave show covers of
// earlier waves only.
std::vector<std::vector<CGallery*>> CGalleryCover::WavesOf(const std::vector<CGallery*>& galleries)
{
    std::vector<std::vector<CGallery*>> waves;
    std::map<const CGallery*, size_t> waveOf;
    // A stack instead of recursion: a hand-made project may be a line of thousands of galleries.
    struct Step {
        CGallery* gallery;
        bool hasChildrenDone = false;
    };
    std::vector<Step> open;
    for (CGallery* gallery : galleries) {
        open.push_back({gallery});
    }
    while (!open.empty()) {
        const Step step = open.back();
        CGalleryCover& cover = step.gallery->GetCover();
        if (cover.isMade || waveOf.count(step.gallery) != 0) {
            open.pop_back();
            continue;
        }
        if (!step.hasChildrenDone) {
            open.back().hasChildrenDone = true;
            for (CGallery* child : cover.GetShownChildren()) {
                open.push_back({child});
            }
            continue;
        }
        size_t wave = 0;
        for (const CGallery* child : cover.GetShownChildren()) {
            const auto found = waveOf.find(child);
            wave = found != waveOf.end() ? std::max(wave, found->second + 1) : wave;
        }
        waves.resize(std::max(waves.size(), wave + 1));
        waves[wave].push_back(step.gallery);
        waveOf[step.gallery] = wave;
        open.pop_back();
    }
    return waves;
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
            shown.push_back({.path = cover,
                             .namedBy = ExtractLastName(cover),
                             .angle = record->GetAngle(),
                             .isCover = true,
                             .coverKey = child->GetGallery().GetCover().key});
        } else {
            shown.push_back(
                {.path = record->GetPath(), .namedBy = record->GetPath(), .angle = record->GetAngle()});
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
    key = gallery.GetManager().GetCoverCache().MakeCover(GetName(), GetShownPictures());
    isMade = true;
}
