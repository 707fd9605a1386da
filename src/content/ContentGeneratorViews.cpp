#include "content/ContentGeneratorViews.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/AbsentCard.h"
#include "content/PictureMenuCommandGenerator.h"
#include "document/pictures/PictureInfo.h"
#include "template/contracts/ImageIterator.h"

namespace {

// A JavaScript string in an HTML script element. "<" must not begin the end tag of the element.
std::string ScriptString(const QString& text)
{
    std::string result = "\"";
    for (const char unit : Narrow(text)) {
        if (unit == '"' || unit == '\\') {
            result += '\\';
            result += unit;
        } else if (unit == '<') {
            result += "\\x3C";
        } else if (unit == '\n') {
            result += "\\n";
        } else if (unit == '\r') {
            result += "\\r";
        } else {
            result += unit;
        }
    }
    return result + '"';
}

const std::vector<CPictureMenu::Row>& PictureRows()
{
    static const std::vector<CPictureMenu::Row> rows = {
        {278, 295, StringId::MoveUp},
        {281, 288, StringId::MoveDown},
        {280, 287, StringId::Delete},
        {285, 292, StringId::RotateClockwise},
        {286, 293, StringId::RotateCounterClockwise},
    };
    return rows;
}

// There is nothing to turn.
const std::vector<CPictureMenu::Row>& AbsentPictureRows()
{
    static const std::vector<CPictureMenu::Row> rows = {
        {310, 311, StringId::FindPicture},
        {278, 295, StringId::MoveUp},
        {281, 288, StringId::MoveDown},
        {280, 287, StringId::Delete},
    };
    return rows;
}

// A gallery's cover is made when it is asked for.
bool IsAbsent(const CImageIterator& iterator)
{
    const auto* const picture = dynamic_cast<const CFilePictureInfo*>(iterator.GetCurrentPicture());
    return picture && (!picture->IsThere() || !FileExists(picture->GetPath()));
}

const std::vector<CPictureMenu::Row>& TextSpanRows()
{
    static const std::vector<CPictureMenu::Row> rows = {{277, 294, StringId::EditText}};
    return rows;
}

const std::vector<CPictureMenu::Row>& ReferenceRows()
{
    static const std::vector<CPictureMenu::Row> rows = {{284, 291, StringId::EditReference}};
    return rows;
}

const std::vector<CPictureMenu::Row>& FolderRows()
{
    static const std::vector<CPictureMenu::Row> rows = {
        {282, 289, StringId::AddPicture},
        {283, 290, StringId::AddAllPictures},
    };
    return rows;
}

// textProperty: of what the reference shows.
template <class ReferenceAttributes>
CPreviewCommandGenerator ReferenceCommands(const ReferenceAttributes& reference,
                                           const std::string& textProperty)
{
    CPreviewCommandGenerator commands;
    commands.argument1 = &reference.name;
    commands.argument2 = &reference.hrefProperty;
    commands.argument3 = &textProperty;
    return commands;
}

} // namespace

void CContentGeneratorViews::GeneratePageHeader(CImageIterator& iterator, std::ostream& out)
{
    WriteResourceScript(QStringLiteral("Preview"), out);
    CContentGeneratorBase::GeneratePageHeader(iterator, out);
}

void CContentGeneratorViews::GenerateBanner(const std::string&, const std::string&, std::ostream&) {}

void CContentGeneratorViews::WriteAdvertisementBody(const QString&, std::ostream&) {}

void CContentGeneratorViews::WriteCurrentUrl(CImageIterator& iterator, std::ostream& out)
{
    out << ScriptString(iterator.GetGalleryFileStem());
}

QString CContentGeneratorViews::GetImageUrl(const QString& filePath) const
{
    return AddressOfFile(filePath);
}

void CContentGeneratorViews::BeforePicture(std::ostream& out, const std::string& id)
{
    WritePictureMenu(out, id);
}

void CContentGeneratorViews::WritePictureAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}

void CContentGeneratorViews::ProduceImage(const ImageRequest& request)
{
    try {
        CContentGeneratorBase::ProduceImage(request);
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetCaption() + QLatin1Char(' ') + failure.GetDescription());
    }
}

CContentGeneratorPreview::CContentGeneratorPreview(const QString& temporaryFolder)
    : pictureMenu(temporaryFolder, PictureRows()),
      absentPictureMenu(temporaryFolder, AbsentPictureRows()),
      imageReferenceMenu(temporaryFolder, ReferenceRows()),
      textSpanMenu(temporaryFolder, TextSpanRows()),
      textReferenceMenu(temporaryFolder, ReferenceRows())
{}

void CContentGeneratorPreview::GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                                               std::ostream& out)
{
    if (!IsAbsent(iterator)) {
        CContentGeneratorViews::GeneratePicture(iterator, picture, out);
        return;
    }
    QString path;
    iterator.GetPicturePath(path);
    const QSize slot(ParseInteger(picture.width), ParseInteger(picture.height));
    out << "<div align=\"center\" valign=\"center\" width=\"" << picture.width << "\" height=\""
        << picture.height << "\" >";
    absentPictureMenu.WriteMenuImages(out, picture.id, CPreviewCommandGenerator());
    out << "<a href=\"" << picture.href << "\"><img id=\"" << picture.id << "\" data-absent"
        << " src=\"" << MakeAbsentCard(ExtractLastName(path), slot) << '"';
    if (picture.alt) {
        out << " alt=\"" << *picture.alt << '"';
    }
    WritePictureAttributes(out, picture.id);
    out << "/></a></div>";
}

void CContentGeneratorPreview::WritePictureMenu(std::ostream& out, const std::string& id)
{
    pictureMenu.WriteMenuImages(out, id, CPreviewCommandGenerator());
}

void CContentGeneratorPreview::BeforeTextSpan(std::ostream& out, const std::string& spanId,
                                              const TextSpanAttributes& span)
{
    CPreviewCommandGenerator commands;
    commands.argument1 = &span.name;
    commands.argument2 = &span.property;
    commands.multiline = span.multiline;
    textSpanMenu.WriteMenuImages(out, spanId, commands);
}

void CContentGeneratorPreview::WriteTextSpanAttributes(std::ostream& out, const std::string& spanId)
{
    CPictureMenu::WriteMenuAttributes(out, spanId);
}

void CContentGeneratorPreview::BeforeImageReference(std::ostream& out,
                                                    const ImageReferenceAttributes& reference)
{
    imageReferenceMenu.WriteMenuImages(out, reference.id,
                                       ReferenceCommands(reference, reference.altProperty));
}

void CContentGeneratorPreview::WriteImageReferenceAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}

void CContentGeneratorPreview::BeforeTextReference(std::ostream& out,
                                                   const TextReferenceAttributes& reference)
{
    textReferenceMenu.WriteMenuImages(out, reference.id, ReferenceCommands(reference, reference.text));
}

void CContentGeneratorPreview::WriteTextReferenceAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}

CContentGeneratorFolderView::CContentGeneratorFolderView(const QString& temporaryFolder)
    : pictureMenu(temporaryFolder, FolderRows())
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
        // Odd on purpose: the quote at the end of the tag is doubled. Browsers read over it.
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
