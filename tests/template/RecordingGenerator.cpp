#include "RecordingGenerator.h"

#include "template/contracts/ImageIterator.h"

namespace {

std::ostream& WriteList(std::ostream& out, std::initializer_list<std::string> arguments)
{
    const char* separator = "";
    for (const std::string& argument : arguments) {
        out << separator << argument;
        separator = "|";
    }
    return out;
}

} // namespace

void CRecordingGenerator::GeneratePageHeader(CImageIterator&, std::ostream& out)
{
    out << "{pageheader}";
}

void CRecordingGenerator::GenerateTextSpan(CImageIterator&, const TextSpanAttributes& span, std::ostream& out)
{
    out << "{textspan ";
    WriteList(out, {span.name, span.property, span.defaultText, std::to_string(span.maxChars),
                    span.multiline ? "multiline" : "line"})
        << '}';
}

void CRecordingGenerator::GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                                          std::ostream& out)
{
    QString path;
    out << "{picture ";
    WriteList(out, {picture.id, picture.href, picture.height, picture.width,
                    picture.hasImageReference ? "reference" : "own",
                    picture.alt ? "alt=" + *picture.alt : "no alt", Narrow(iterator.GetPicturePath(path))})
        << '}';
}

void CRecordingGenerator::GenerateNavigationTable(CImageIterator&, const NavigationTableAttributes& table,
                                                  std::ostream& out)
{
    out << "{navigationtable ";
    WriteList(out,
              {std::to_string(table.maxPagesCount), table.previousImage, table.nextImage, table.pageImage,
               table.pageImageSelected, table.firstImage, table.lastImage, table.previousPageAlt,
               table.nextPageAlt, table.pageAlt, table.firstPageAlt, table.lastPageAlt})
        << '}';
}

void CRecordingGenerator::GenerateImageReference(CImageIterator&, const ImageReferenceAttributes& reference,
                                                 std::ostream& out)
{
    out << "{imgref ";
    WriteList(out, {reference.id, reference.name, reference.src, reference.hrefProperty,
                    reference.defaultHref, reference.altProperty, reference.defaultAlt})
        << '}';
}

void CRecordingGenerator::GenerateTextReference(CImageIterator&, const TextReferenceAttributes& reference,
                                                std::ostream& out)
{
    out << "{textref ";
    WriteList(out, {reference.id, reference.name, reference.hrefProperty, reference.defaultHref,
                    reference.text, reference.defaultText})
        << '}';
}

void CRecordingGenerator::GenerateBanner(const std::string& width, const std::string& height,
                                         std::ostream& out)
{
    out << "{banner " << width << '|' << height << '}';
}

void CRecordingGenerator::GenerateAdvertisement(CImageIterator&, const std::string& name, std::ostream& out)
{
    out << "{advertisement " << name << '}';
}
