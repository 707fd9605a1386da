#include "shell/frame/GalleryCommands.h"

#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/PictureFiles.h"
#include "shell/dialogs/DlgAdvertisements.h"
#include "shell/dialogs/DlgImageWatermark.h"
#include "shell/dialogs/DlgTextStamp.h"

namespace {

bool EditAdvertisements(CGallery& gallery, QWidget* parent)
{
    auto& sections = gallery.GetVariables().GetAdvertisements()[gallery.GetLayout().GetTemplatePage()];
    CDlgAdvertisements dialog(sections, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    sections = dialog.GetSections();
    return true;
}

// A folder's listing leaves ".jpeg" out; one that is dropped by hand is meant.
bool IsDroppedPicture(const QString& path)
{
    return IsPictureFile(path) || path.endsWith(QStringLiteral(".jpeg"), Qt::CaseInsensitive);
}

} // namespace

bool EditGallery(CommandId command, CGallery& gallery, QWidget* parent)
{
    if (command == CommandId::ImageWatermark) {
        return CDlgImageWatermark(gallery.GetImageStamps(), parent).exec() == QDialog::Accepted;
    }
    if (command == CommandId::ImageSignature) {
        return CDlgTextStamp(gallery.GetTextStamps(), parent).exec() == QDialog::Accepted;
    }
    return EditAdvertisements(gallery, parent);
}

DroppedFiles SortDropped(const QStringList& paths)
{
    DroppedFiles files;
    for (const QString& path : paths) {
        if (FolderExists(path)) {
            for (const QString& picture : ListPictureFiles(path)) {
                files.pictures += picture;
            }
        } else if (path.endsWith(QStringLiteral(".gallery"), Qt::CaseInsensitive)) {
            files.project = files.project.isEmpty() ? path : files.project;
        } else if (IsDroppedPicture(path)) {
            files.pictures += path;
        }
    }
    return files;
}

int AddPictures(CGallery& gallery, const QStringList& pictures)
{
    const int before = gallery.GetPictures().GetCount();
    for (const QString& path : pictures) {
        gallery.AddPicture(path);
    }
    return gallery.GetPictures().GetCount() - before;
}
