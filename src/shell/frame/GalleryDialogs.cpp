#include "shell/frame/GalleryDialogs.h"

#include "document/galleries/Gallery.h"
#include "shell/dialogs/DlgAdvertisements.h"
#include "shell/dialogs/DlgImageWatermark.h"
#include "shell/dialogs/DlgTextStamp.h"

namespace {

bool EditAdvertisements(CGallery& gallery, QWidget* parent)
{
    auto& sections = gallery.GetTexts().advertisements[gallery.GetLayout().GetTemplatePage()];
    CDlgAdvertisements dialog(sections, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    sections = dialog.GetSections();
    return true;
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
