#include "document/project/AbsentFiles.h"

#include <chrono>

#include "document/galleries/Gallery.h"

namespace {

void ListAbsentPictures(const CGallery& gallery, std::vector<AbsentFile>& absent)
{
    const CPictureList& pictures = gallery.GetPictures();
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const auto* record = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position));
        if (record && !record->IsThere()) {
            absent.push_back({gallery.GetIndex(), record->GetPath(), false, record->GetTrace()});
        }
    }
}

void ListAbsentWatermarks(const CGallery& gallery, std::vector<AbsentFile>& absent)
{
    for (const QString& path : gallery.GetWatermarks()) {
        if (!IsFile(path)) {
            absent.push_back({gallery.GetIndex(), path, true, gallery.GetWatermarkTrace(path)});
        }
    }
}

bool MoveFile(CGallery& gallery, const FileMove& move)
{
    return move.isWatermark ? gallery.RelocateWatermark(move.oldPath, move.newPath)
                            : gallery.GetPictures().Relocate(move.oldPath, move.newPath);
}

} // namespace

std::vector<AbsentFile> ListAbsentFiles(const GalleriesByIndex& galleries)
{
    std::vector<AbsentFile> absent;
    for (const auto& [index, gallery] : galleries) {
        if (gallery) {
            ListAbsentPictures(*gallery, absent);
            ListAbsentWatermarks(*gallery, absent);
        }
    }
    return absent;
}

std::set<QString> ListPresentFiles(const GalleriesByIndex& galleries)
{
    std::set<QString> present;
    for (const auto& [index, gallery] : galleries) {
        for (int32_t position = 0; gallery && position < gallery->GetPictures().GetCount(); ++position) {
            const auto* record =
                dynamic_cast<const CFilePictureInfo*>(gallery->GetPictures().GetAt(position));
            if (record && record->IsThere()) {
                present.insert(record->GetPath());
            }
        }
    }
    return present;
}

int32_t MoveFiles(const GalleriesByIndex& galleries, const std::vector<FileMove>& moves)
{
    int32_t count = 0;
    std::set<CGallery*> touched;
    for (const FileMove& move : moves) {
        const auto found = galleries.find(move.gallery);
        CGallery* const gallery = found != galleries.end() ? found->second.get() : nullptr;
        if (gallery && MoveFile(*gallery, move)) {
            ++count;
            touched.insert(gallery);
        }
    }
    for (CGallery* gallery : touched) {
        gallery->UpdateCover(0);
    }
    return count;
}

std::vector<FileMove> CAbsentFileSearch::Find(const QString& folder, const CStopSignal& stop) const
{
    constexpr int anyDepth = 10'000;
    constexpr size_t mostFolders = 100'000;
    return MovesOf(
        MakeLostFiles().FindBelow({folder}, {.levels = anyDepth, .folders = mostFolders, .stop = &stop}));
}

std::vector<FileMove> CAbsentFileSearch::FindByItself(const QStringList& folders) const
{
    if (absent.empty()) {
        return {};
    }
    CLostFiles lost = MakeLostFiles();
    std::vector<FoundFile> found = lost.FindByTraces();
    // The person waits for the project.
    const std::vector<FoundFile> below = lost.FindBelow(folders, {.time = std::chrono::milliseconds(400)});
    found.insert(found.end(), below.begin(), below.end());
    return MovesOf(found);
}

CLostFiles CAbsentFileSearch::MakeLostFiles() const
{
    std::vector<LostFile> lost;
    for (const AbsentFile& file : absent) {
        lost.push_back({file.path, file.trace});
    }
    return CLostFiles(lost, present);
}

std::vector<FileMove> CAbsentFileSearch::MovesOf(const std::vector<FoundFile>& found) const
{
    std::map<QString, const FoundFile*> byPath;
    for (const FoundFile& file : found) {
        byPath[file.path] = &file;
    }
    std::vector<FileMove> moves;
    for (const AbsentFile& file : absent) {
        const auto match = byPath.find(file.path);
        if (match != byPath.end()) {
            moves.push_back({.gallery = file.gallery,
                             .oldPath = file.path,
                             .newPath = match->second->found,
                             .hasExactSize = match->second->hasExactSize,
                             .isWatermark = file.isWatermark});
        }
    }
    return moves;
}
