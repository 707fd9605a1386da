#include "editing/PictureActs.h"

#include <algorithm>
#include <numeric>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "editing/ActNames.h"

namespace {

using Positions = std::vector<int32_t>;

// An act on one gallery that does nothing where it isn't there.
Act OnGallery(const QString& name, int32_t index, const std::function<void(CGallery& gallery)>& change)
{
    return {.name = name, .galleries = {index}, .apply = [index, change](CGalleryProject& project) {
                if (CGallery* const gallery = project.FindGallery(index)) {
                    change(*gallery);
                }
            }};
}

// Ascending, each once, all of them in the list.
Positions Within(const CGallery& gallery, Positions positions)
{
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    positions.erase(std::remove_if(positions.begin(), positions.end(),
                                   [&](int32_t position) { return !gallery.GetPictures().GetAt(position); }),
                    positions.end());
    return positions;
}

Positions AllOf(const CGallery& gallery)
{
    Positions all(static_cast<size_t>(gallery.GetPictures().GetCount()));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

// Which gallery a picture stands for; nothing for a file.
std::optional<int32_t> ChildAt(const CGallery& gallery, int32_t position)
{
    const auto* const child = dynamic_cast<const CGalleryPictureInfo*>(gallery.GetPictures().GetAt(position));
    return child ? std::optional(child->GetGalleryIndex()) : std::nullopt;
}

Positions FilesAmong(const CGalleryProject& project, int32_t gallery, const Positions& positions)
{
    Positions files;
    if (const CGallery* const from = project.FindGallery(gallery)) {
        std::copy_if(positions.begin(), positions.end(), std::back_inserter(files),
                     [from](int32_t position) { return !ChildAt(*from, position); });
    }
    return files;
}

// Where the picture comes to stand that stood at the position.
int32_t PositionIn(const Positions& order, int32_t position)
{
    return static_cast<int32_t>(std::find(order.begin(), order.end(), position) - order.begin());
}

void MoveBefore(CGallery& gallery, const Positions& wanted, int32_t before)
{
    const Positions moved = Within(gallery, wanted);
    Positions order;
    const auto isMoved = [&](int32_t position) {
        return std::binary_search(moved.begin(), moved.end(), position);
    };
    const Positions all = AllOf(gallery);
    std::copy_if(all.begin(), all.end(), std::back_inserter(order),
                 [&](int32_t position) { return position < before && !isMoved(position); });
    order.insert(order.end(), moved.begin(), moved.end());
    std::copy_if(all.begin(), all.end(), std::back_inserter(order),
                 [&](int32_t position) { return position >= before && !isMoved(position); });
    if (order != all) {
        gallery.ReorderPictures(order);
        ShowPicture(gallery, PositionIn(order, moved.front()));
    }
}

// Where the pictures of those paths stand.
Positions PositionsOf(const CGallery& gallery, const std::vector<const CPictureInfo*>& records)
{
    Positions positions;
    for (const CPictureInfo* record : records) {
        positions.push_back(gallery.GetPictures().FindPosition(record));
    }
    return positions;
}

void RemoveAll(CGallery& gallery, const Positions& wanted)
{
    // A gallery that leaves may hand its children up, so that galleries go by their index when the files are
    // gone.
    const Positions positions = Within(gallery, wanted);
    std::vector<int32_t> children;
    for (auto position = positions.rbegin(); position != positions.rend(); ++position) {
        if (const std::optional<int32_t> child = ChildAt(gallery, *position)) {
            children.push_back(*child);
        }
    }
    gallery.TakePictures(positions);
    for (const int32_t child : children) {
        gallery.GetManager().RemoveGallery(child);
    }
    if (!positions.empty() && gallery.GetPictures().GetCount() > 0) {
        ShowPicture(gallery, positions.front());
    }
}

void TurnAll(CGallery& gallery, const Positions& positions, bool clockwise)
{
    const Positions turned = Within(gallery, positions);
    for (const int32_t position : turned) {
        gallery.RotatePicture(position, clockwise);
    }
    if (!turned.empty()) {
        ShowPicture(gallery, turned.front());
    }
}

// Swaps with the neighbour, at the ends with the other end.
void Step(CGallery& gallery, int32_t position, int32_t direction)
{
    const int32_t count = gallery.GetPictures().GetCount();
    const int32_t other = count > 0 ? (position + direction + count) % count : 0;
    if (position >= 0 && position < count) {
        gallery.MovePicture(position, other);
        ShowPicture(gallery, direction < 0 ? std::min(position, other) : std::max(position, other));
    }
}

void MoveTo(CGallery& gallery, const Positions& wanted, CGallery& target)
{
    Positions positions = Within(gallery, wanted);
    const auto isThereAlready = [&](int32_t position) {
        return target.GetPictures().FindRecord(gallery.GetPictures().GetAt(position)->GetKey()) != nullptr;
    };
    positions.erase(std::remove_if(positions.begin(), positions.end(), isThereAlready), positions.end());
    for (std::unique_ptr<CPictureInfo>& picture : gallery.TakePictures(positions)) {
        // Free for a name of its own there.
        picture->SetNameSuffix(QString());
        target.TakeOver(picture);
    }
}

void CopyTo(const CGallery& gallery, const Positions& wanted, CGallery& target)
{
    for (const int32_t position : Within(gallery, wanted)) {
        if (const auto* const file =
                dynamic_cast<const CFilePictureInfo*>(gallery.GetPictures().GetAt(position))) {
            std::unique_ptr<CPictureInfo> copy = std::make_unique<CFilePictureInfo>(*file);
            copy->SetNameSuffix(QString());
            target.TakeOver(copy);
        }
    }
}

using Transfer = std::function<void(CGallery& gallery, CGallery& target)>;

Act BetweenGalleries(const QString& name, int32_t from, int32_t to, const Transfer& transfer)
{
    return {.name = name, .galleries = {from, to}, .apply = [from, to, transfer](CGalleryProject& project) {
                CGallery* const gallery = project.FindGallery(from);
                CGallery* const target = project.FindGallery(to);
                if (gallery && target && gallery != target) {
                    transfer(*gallery, *target);
                }
            }};
}

} // namespace

Act AddPictures(int32_t gallery, const QStringList& paths)
{
    return OnGallery(NameFor(StringId::ActAddPicture, StringId::ActAddPictures, paths.size()), gallery,
                     [paths](CGallery& target) {
                         for (const QString& path : paths) {
                             target.AddPicture(path);
                         }
                     });
}

Act AddPicturesBefore(int32_t gallery, const QStringList& paths, int32_t position)
{
    return OnGallery(NameFor(StringId::ActAddPicture, StringId::ActAddPictures, paths.size()), gallery,
                     [paths, position](CGallery& target) {
                         const CPictureInfo* const next = target.GetPictures().GetAt(position);
                         std::vector<const CPictureInfo*> added;
                         for (const QString& path : paths) {
                             if (const AddedPicture picture = target.AddPicture(path); picture.isNew) {
                                 added.push_back(picture.record);
                             }
                         }
                         if (next) {
                             MoveBefore(target, PositionsOf(target, added),
                                        target.GetPictures().FindPosition(next));
                         }
                     });
}

Act PastePictures(int32_t gallery, const std::vector<CFilePictureInfo>& pictures, int32_t position)
{
    return OnGallery(NameFor(StringId::ActPastePicture, StringId::ActPastePictures,
                             static_cast<qsizetype>(pictures.size())),
                     gallery, [pictures, position](CGallery& target) {
                         const CPictureInfo* const next = target.GetPictures().GetAt(position);
                         std::vector<const CPictureInfo*> added;
                         for (const CFilePictureInfo& picture : pictures) {
                             std::unique_ptr<CPictureInfo> copy = std::make_unique<CFilePictureInfo>(picture);
                             const CPictureInfo* const record = copy.get();
                             if (target.TakeOver(copy)) {
                                 added.push_back(record);
                             }
                         }
                         if (next) {
                             MoveBefore(target, PositionsOf(target, added),
                                        target.GetPictures().FindPosition(next));
                         }
                     });
}

Act TakeOutFiles(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions)
{
    return RemovePictures(project, gallery, FilesAmong(project, gallery, positions));
}

Act CutPictures(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions)
{
    const Positions files = FilesAmong(project, gallery, positions);
    Act act = RemovePictures(project, gallery, files);
    act.name =
        NameFor(StringId::ActCutPicture, StringId::ActCutPictures, static_cast<qsizetype>(files.size()));
    return act;
}

Act RemovePictures(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions)
{
    Act act = OnGallery(NameFor(StringId::ActDeletePicture, StringId::ActDeletePictures,
                                static_cast<qsizetype>(positions.size())),
                        gallery, [positions](CGallery& from) { RemoveAll(from, positions); });
    act.notice = NameFor(StringId::PictureDeleted, StringId::PicturesDeleted,
                         static_cast<qsizetype>(positions.size()));
    if (const CGallery* const from = project.FindGallery(gallery)) {
        for (const int32_t position : positions) {
            if (const std::optional<int32_t> child = ChildAt(*from, position)) {
                act.galleries.merge(GalleriesAround(project, *child));
            }
        }
    }
    return act;
}

Act MovePicturesBefore(int32_t gallery, const std::vector<int32_t>& positions, int32_t before)
{
    return OnGallery(NameFor(StringId::ActMovePicture, StringId::ActMovePictures,
                             static_cast<qsizetype>(positions.size())),
                     gallery, [positions, before](CGallery& of) { MoveBefore(of, positions, before); });
}

Act MovePictureUp(int32_t gallery, int32_t position)
{
    return OnGallery(Text(StringId::ActMovePicture), gallery,
                     [position](CGallery& of) { Step(of, position, -1); });
}

Act MovePictureDown(int32_t gallery, int32_t position)
{
    return OnGallery(Text(StringId::ActMovePicture), gallery,
                     [position](CGallery& of) { Step(of, position, 1); });
}

Act SortPictures(int32_t gallery, const std::vector<int32_t>& order)
{
    return OnGallery(Text(StringId::ActSortPictures), gallery, [order](CGallery& of) {
        Positions sorted = order;
        std::sort(sorted.begin(), sorted.end());
        if (sorted == AllOf(of) && order != sorted) {
            of.ReorderPictures(order);
        }
    });
}

Act TurnPictures(int32_t gallery, const std::vector<int32_t>& positions, bool clockwise)
{
    return OnGallery(NameFor(StringId::ActTurnPicture, StringId::ActTurnPictures,
                             static_cast<qsizetype>(positions.size())),
                     gallery, [positions, clockwise](CGallery& of) { TurnAll(of, positions, clockwise); });
}

Act MovePicturesTo(int32_t gallery, const std::vector<int32_t>& positions, int32_t target)
{
    return BetweenGalleries(NameFor(StringId::ActMovePictureTo, StringId::ActMovePicturesTo,
                                    static_cast<qsizetype>(positions.size())),
                            gallery, target,
                            [positions](CGallery& from, CGallery& to) { MoveTo(from, positions, to); });
}

Act CopyPicturesTo(int32_t gallery, const std::vector<int32_t>& positions, int32_t target)
{
    return BetweenGalleries(NameFor(StringId::ActCopyPictureTo, StringId::ActCopyPicturesTo,
                                    static_cast<qsizetype>(positions.size())),
                            gallery, target,
                            [positions](CGallery& from, CGallery& to) { CopyTo(from, positions, to); });
}

Act RelocateFiles(const std::vector<FileMove>& moves)
{
    Act act{
        .name = Text(StringId::ActFindMissing), .galleries = {}, .apply = [moves](CGalleryProject& project) {
            project.Relocate(moves);
        }};
    for (const FileMove& move : moves) {
        act.galleries.insert(move.gallery);
    }
    return act;
}

void ShowPicture(CGallery& gallery, int32_t position)
{
    try {
        gallery.SetCurrentPicture(position);
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
    }
}
