#include "document/cover/GalleryCover.h"

#include <atomic>
#include <cstdio>
#include <map>

#include <QFile>

#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "common/WorkerPool.h"
#include "document/cover/CoverCache.h"
#include "document/pictures/PictureInfo.h"
#include "document/pictures/PictureList.h"

namespace {

// Documents may live on several threads.
int64_t NextRevision()
{
    static std::atomic<int64_t> last = 0;
    return ++last;
}

} // namespace

CGalleryCover::CGalleryCover(int32_t galleryIndex, CPictureList& pictures, CCoverSite& site)
    : galleryIndex(galleryIndex), pictures(pictures), site(site), revision(NextRevision()), path(PathOf({}))
{}

QString CGalleryCover::GetPath()
{
    if (!isMade) {
        MakeAll({this});
    }
    return path;
}

CGalleryCover* CGalleryCover::FindUnmade()
{
    const std::vector<std::vector<CGalleryCover*>> waves = WavesOf({this});
    return waves.empty() ? nullptr : waves.front().front();
}

CGalleryCover::Recipe CGalleryCover::HandOut()
{
    isHandedOut = true;
    shownStamps = GetShownStamps();
    return {.revision = revision, .pictures = GetShownPictures()};
}

void CGalleryCover::Accept(int64_t recipeRevision, const MadeCover& cover)
{
    const QByteArray from = QFile::encodeName(cover.file);
    if (isMade || recipeRevision != revision ||
        std::rename(from.constData(), QFile::encodeName(path).constData()) != 0) {
        std::remove(from.constData());
        return;
    }
    key = cover.key;
    isMade = true;
}

// The threads see a document that nobody changes meanwhile: the caller waits for them.
void CGalleryCover::MakeAll(const std::vector<CGalleryCover*>& covers)
{
    for (const std::vector<CGalleryCover*>& wave : WavesOf(covers)) {
        OnAllCores(wave.size(), [&](size_t i) { wave[i]->Make(); });
    }
}

// Those that are not made, each once, with the covers that they show. The covers of a wave show covers of
// earlier waves only.
std::vector<std::vector<CGalleryCover*>> CGalleryCover::WavesOf(const std::vector<CGalleryCover*>& covers)
{
    std::vector<std::vector<CGalleryCover*>> waves;
    std::map<const CGalleryCover*, size_t> waveOf;
    // A stack instead of recursion: a hand-made project may be a line of thousands of galleries.
    struct Step {
        CGalleryCover* cover;
        bool areShownDone = false;
    };
    std::vector<Step> open;
    for (CGalleryCover* cover : covers) {
        open.push_back({cover});
    }
    while (!open.empty()) {
        const Step step = open.back();
        if (step.cover->isMade || waveOf.count(step.cover) != 0) {
            open.pop_back();
            continue;
        }
        if (!step.areShownDone) {
            open.back().areShownDone = true;
            for (CGalleryCover* shown : step.cover->GetShownCovers()) {
                open.push_back({shown});
            }
            continue;
        }
        size_t wave = 0;
        for (const CGalleryCover* shown : step.cover->GetShownCovers()) {
            const auto found = waveOf.find(shown);
            wave = found != waveOf.end() ? std::max(wave, found->second + 1) : wave;
        }
        waves.resize(std::max(waves.size(), wave + 1));
        waves[wave].push_back(step.cover);
        waveOf[step.cover] = wave;
        open.pop_back();
    }
    return waves;
}

void CGalleryCover::Update(int32_t changedPosition)
{
    CGalleryCover* changed = this;
    while (changed && changedPosition < PictureCount) {
        const QString oldPath = changed->path;
        if (!changed->Choose()) {
            return;
        }
        CGalleryCover* const parent = site.FindParentCover(changed->galleryIndex);
        if (parent) {
            changedPosition = parent->RekeyChild(changed->galleryIndex, oldPath);
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
    shownCount = CountOfCoverPictures(pictures.GetCount());
    const QString newPath = PathOf(GetShownPictures());
    const bool isNews = isMade || isHandedOut || newPath != path;
    path = newPath;
    revision = NextRevision();
    isHandedOut = false;
    // The same name can hide another picture: of two tiles that change places, or of one that is turned.
    isMade = false;
    return isNews;
}

bool CGalleryCover::LookForChanges()
{
    if ((!isMade && !isHandedOut) || GetShownStamps() == shownStamps) {
        return false;
    }
    Update(0);
    return true;
}

// Covers are left out: they tell of their changes by themselves.
std::vector<std::optional<FileStamp>> CGalleryCover::GetShownStamps() const
{
    std::vector<std::optional<FileStamp>> stamps;
    for (int32_t position = 0; position < shownCount; ++position) {
        if (const auto* file = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position))) {
            stamps.push_back(FileStamp::Of(file->GetPath()));
        }
    }
    return stamps;
}

void CGalleryCover::OnChildChanged(const QString& oldPath)
{
    if (const CPictureInfo* record = pictures.FindRecord(oldPath)) {
        pictures.Rekey(oldPath);
        Update(PositionOf(record));
    }
}

// Returns where the child stands; PictureCount if it can't show.
int32_t CGalleryCover::RekeyChild(int32_t childIndex, const QString& oldPath)
{
    pictures.Rekey(oldPath);
    int32_t position = 0;
    for (; position < PictureCount; ++position) {
        const auto* child = dynamic_cast<const CGalleryPictureInfo*>(pictures.GetAt(position));
        if (child && child->GetGalleryIndex() == childIndex) {
            break;
        }
    }
    return position;
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
    while (position < PictureCount && pictures.GetAt(position) != record) {
        ++position;
    }
    return position;
}

std::vector<CoverPicture> CGalleryCover::GetShownPictures() const
{
    std::vector<CoverPicture> shown;
    for (int32_t position = 0; position < shownCount; ++position) {
        const CPictureInfo* const record = pictures.GetAt(position);
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
            const CGalleryCover& cover = *site.FindCover(child->GetGalleryIndex());
            shown.push_back({.path = cover.path,
                             .namedBy = ExtractLastName(cover.path),
                             .angle = record->GetAngle(),
                             .isCover = true,
                             .coverKey = cover.key});
        } else {
            shown.push_back(
                {.path = record->GetPath(), .namedBy = record->GetPath(), .angle = record->GetAngle()});
        }
    }
    return shown;
}

std::vector<CGalleryCover*> CGalleryCover::GetShownCovers() const
{
    std::vector<CGalleryCover*> covers;
    for (int32_t position = 0; position < shownCount; ++position) {
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(pictures.GetAt(position))) {
            covers.push_back(site.FindCover(child->GetGalleryIndex()));
        }
    }
    return covers;
}

QString CGalleryCover::PathOf(const std::vector<CoverPicture>& shown) const
{
    return site.GetTempFolder().GetPath() + CoverFileName(galleryIndex, shown);
}

void CGalleryCover::Make()
{
    if (isMade) {
        return;
    }
    // Before the first is opened: a change that comes later is seen.
    shownStamps = GetShownStamps();
    key = site.GetCoverCache().MakeCover(path, GetShownPictures());
    isMade = true;
}
