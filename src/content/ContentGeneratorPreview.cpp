#include "content/ContentGeneratorPreview.h"

#include "content/PictureMenuCommandGenerator.h"

namespace {

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

} // namespace

CContentGeneratorPreview::CContentGeneratorPreview(const QString& temporaryFolder)
    : pictureMenu(temporaryFolder, PictureRows()),
      imageReferenceMenu(temporaryFolder, ReferenceRows()),
      textSpanMenu(temporaryFolder, TextSpanRows()),
      textReferenceMenu(temporaryFolder, ReferenceRows())
{}

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
    CPreviewCommandGenerator commands;
    commands.argument1 = &reference.name;
    commands.argument2 = &reference.hrefProperty;
    commands.argument3 = &reference.altProperty;
    imageReferenceMenu.WriteMenuImages(out, reference.id, commands);
}

void CContentGeneratorPreview::WriteImageReferenceAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}

void CContentGeneratorPreview::BeforeTextReference(std::ostream& out,
                                                   const TextReferenceAttributes& reference)
{
    CPreviewCommandGenerator commands;
    commands.argument1 = &reference.name;
    commands.argument2 = &reference.hrefProperty;
    commands.argument3 = &reference.text;
    textReferenceMenu.WriteMenuImages(out, reference.id, commands);
}

void CContentGeneratorPreview::WriteTextReferenceAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}
