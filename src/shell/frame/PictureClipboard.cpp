#include "shell/frame/PictureClipboard.h"

#include <memory>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "document/galleries/Gallery.h"
#include "editing/PictureActs.h"
#include "editing/PictureClip.h"
#include "shell/drag/DropWatcher.h"
#include "shell/frame/GalleryCommands.h"

namespace {

const QString clipType = QStringLiteral("application/x-vistorama-clip");
// What file managers of the GNOME family look for beside the list of addresses.
const QString filesType = QStringLiteral("x-special/gnome-copied-files");

std::unique_ptr<QMimeData> DescribeFiles(const QStringList& paths)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> addresses;
    // Never "cut": the files stay where they are.
    QByteArray lines = "copy";
    for (const QString& path : paths) {
        addresses += QUrl::fromLocalFile(path);
        lines += '\n' + addresses.back().toEncoded();
    }
    data->setUrls(addresses);
    data->setData(filesType, lines);
    return data;
}

} // namespace

int CopyToClipboard(const CGallery& gallery, const std::vector<int32_t>& positions)
{
    const QByteArray clip = WriteClip(gallery, positions);
    QStringList paths;
    for (const CFilePictureInfo& picture : ReadClip(clip)) {
        paths += picture.GetPath();
    }
    if (!paths.isEmpty()) {
        std::unique_ptr<QMimeData> data = DescribeFiles(paths);
        data->setData(clipType, clip);
        QGuiApplication::clipboard()->setMimeData(data.release());
    }
    return static_cast<int>(paths.size());
}

int CopyToClipboard(const QStringList& paths)
{
    if (!paths.isEmpty()) {
        QGuiApplication::clipboard()->setMimeData(DescribeFiles(paths).release());
    }
    return static_cast<int>(paths.size());
}

std::optional<Act> PasteFromClipboard(const CGallery& gallery, int32_t position)
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (!data) {
        return std::nullopt;
    }
    const std::vector<CFilePictureInfo> pictures = ReadClip(data->data(clipType));
    if (!pictures.empty()) {
        return PastePictures(gallery.GetIndex(), pictures, position);
    }
    const QStringList files = SortDropped(DroppedPaths(*data)).pictures;
    return files.isEmpty() ? std::nullopt
                           : std::optional(AddPicturesBefore(gallery.GetIndex(), files, position));
}
