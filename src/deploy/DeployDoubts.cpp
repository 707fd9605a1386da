#include "deploy/DeployDoubts.h"

#include <algorithm>
#include <set>

#include "document/files/FileTrace.h"
#include "document/galleries/Gallery.h"
#include "document/project/GalleryProject.h"
#include "effects/WatermarkFile.h"
#include "resources/StringTable.h"

namespace {

bool IsPublished(const CGalleryProject& project, const CGallery& gallery)
{
    return gallery.GetIndex() == project.GetRootGalleryIndex() || !gallery.GetParentIndexes().empty();
}

void FindPictures(const CGallery& gallery, DeployDoubts& doubts)
{
    const CPictureList& pictures = gallery.GetPictures();
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const auto* file = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position));
        if (file && !IsFile(file->GetPath())) {
            doubts.absentPictures.push_back({gallery.GetIndex(), file->GetPath()});
        }
    }
}

// Each file of a gallery once.
void FindWatermarks(const CGallery& gallery, DeployDoubts& doubts)
{
    for (const CImageStampParams& stamp : gallery.GetImageStamps()) {
        const UnusableFile file{gallery.GetIndex(), stamp.file};
        auto& known = doubts.unreadableWatermarks;
        if (!stamp.file.isEmpty() && std::find(known.begin(), known.end(), file) == known.end() &&
            !IsReadableWatermark(stamp.file)) {
            known.push_back(file);
        }
    }
}

void TakeOut(CGallery& gallery, const std::set<QString>& absent)
{
    for (int32_t position = gallery.GetPictures().GetCount(); position-- > 0;) {
        const auto* file = dynamic_cast<const CFilePictureInfo*>(gallery.GetPictures().GetAt(position));
        if (file && absent.contains(file->GetPath())) {
            gallery.RemovePicture(position);
        }
    }
}

// One on each line, and how many more there are.
QString FirstOf(const QStringList& paths)
{
    constexpr qsizetype most = 10;
    QString text = paths.mid(0, most).join(QLatin1Char('\n'));
    if (paths.size() > most) {
        text += QLatin1Char('\n') + Text(StringId::AndMoreFiles, static_cast<int>(paths.size() - most));
    }
    return text;
}

QStringList PathsOf(const std::vector<UnusableFile>& files)
{
    QStringList paths;
    for (const UnusableFile& file : files) {
        paths += file.path;
    }
    return paths;
}

} // namespace

DeployDoubts FindMissingFiles(const CGalleryProject& project)
{
    DeployDoubts doubts;
    for (const auto& [index, gallery] : project.GetGalleries()) {
        if (gallery && IsPublished(project, *gallery)) {
            FindPictures(*gallery, doubts);
            FindWatermarks(*gallery, doubts);
        }
    }
    return doubts;
}

void LeaveOut(const DeployDoubts& doubts, CGalleryProject& project)
{
    std::map<int32_t, std::set<QString>> absent;
    for (const UnusableFile& picture : doubts.absentPictures) {
        absent[picture.gallery].insert(picture.path);
    }
    for (const auto& [index, paths] : absent) {
        if (CGallery* const gallery = project.FindGallery(index)) {
            TakeOut(*gallery, paths);
        }
    }
    for (const UnusableFile& watermark : doubts.unreadableWatermarks) {
        CGallery* const gallery = project.FindGallery(watermark.gallery);
        for (CImageStampParams& stamp : gallery->GetImageStamps()) {
            if (stamp.file == watermark.path) {
                stamp.file.clear();
            }
        }
    }
}

QStringList WarningsOf(const DeployDoubts& doubts)
{
    QStringList warnings;
    for (const UnusableFile& picture : doubts.absentPictures) {
        warnings += Text(StringId::PictureLeftOut, picture.path);
    }
    for (const UnusableFile& watermark : doubts.unreadableWatermarks) {
        warnings += Text(StringId::WatermarkLeftOut, watermark.path);
    }
    return warnings;
}

DeployFailure MissingFilesError(const DeployDoubts& doubts)
{
    QStringList reasons;
    if (!doubts.absentPictures.empty()) {
        reasons += Text(StringId::PicturesNotThere, static_cast<int>(doubts.absentPictures.size())) +
                   QLatin1Char('\n') + FirstOf(PathsOf(doubts.absentPictures));
    }
    if (!doubts.unreadableWatermarks.empty()) {
        reasons +=
            Text(StringId::WatermarksNotReadable, static_cast<int>(doubts.unreadableWatermarks.size())) +
            QLatin1Char('\n') + FirstOf(PathsOf(doubts.unreadableWatermarks));
    }
    return {Text(StringId::NothingPublished), reasons.join(QLatin1Char('\n')),
            Text(StringId::FindOrLeaveOut)};
}

DeployFailure StrangeFilesError(const QString& targetFolder, const QStringList& files)
{
    return {Text(StringId::NothingPublished),
            Text(StringId::StrangeFilesInTarget, targetFolder, static_cast<int>(files.size())) +
                QLatin1Char('\n') + FirstOf(files),
            Text(StringId::ChooseTargetOrOverwrite)};
}

DeployFailure StrangeFilesOnServerError(const QStringList& files)
{
    return {Text(StringId::NothingPublished),
            Text(StringId::StrangeFilesOnServer, static_cast<int>(files.size())) + QLatin1Char('\n') +
                FirstOf(files),
            Text(StringId::ChooseDirectoryOrOverwrite)};
}
