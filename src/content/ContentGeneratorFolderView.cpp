#include "content/ContentGeneratorFolderView.h"

#include "common/Text.h"
#include "content/PictureMenuCommandGenerator.h"
#include "template/contracts/ImageIterator.h"

namespace {

const std::vector<CPictureMenu::Row>& PictureRows()
{
    static const std::vector<CPictureMenu::Row> rows = {
        {282, 289, StringId::AddPicture},
        {283, 290, StringId::AddAllPictures},
    };
    return rows;
}

} // namespace

CContentGeneratorFolderView::CContentGeneratorFolderView(const QString& temporaryFolder)
    : pictureMenu(temporaryFolder, PictureRows())
{}

void CContentGeneratorFolderView::GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                                                  std::ostream& out)
{
    const std::string& id = picture.id;
    QString path;
    iterator.GetPicturePath(path);
    out << "<tr id=\"" << id << "_row\"><td colspan=2>";
    BeforePicture(out, id);
    if (!picture.href.empty()) {
        // The doubled quote at the end of the tag is odd, but settled; a browser reads over it.
        out << "<a  onclick=\"hideObject(" << id << "_row);\" href=\"" << picture.href << "\" id=\"" << id
            << "_href\"\">";
    }
    out << "<img id=\"" << id << "\" src=\"" << Narrow(GetImageUrl(path)) << '"';
    if (picture.alt) {
        out << " alt=\"" << *picture.alt << '"';
    }
    WritePictureAttributes(out, id);
    out << "/>" << (picture.href.empty() ? "" : "</a>") << "</td></tr>";
}

void CContentGeneratorFolderView::WritePictureMenu(std::ostream& out, const std::string& id)
{
    pictureMenu.WriteMenuImages(out, id, CFolderViewCommandGenerator());
}
