#include "content/ContentGeneratorBase.h"

#include <algorithm>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "content/ImageCache.h"
#include "document/pictures/PictureInfo.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"
#include "resources/Resources.h"
#include "template/contracts/ImageIterator.h"
#include "template/contracts/NavigationWindow.h"
#include "template/parser/TemplateVariableName.h"

namespace {

// The chain of a picture in a page. The stamps come last: they keep their own size on the picture as shown.
std::shared_ptr<const CImageEffect> PageChain(CImageIterator& iterator, int32_t width, int32_t height)
{
    auto chain = std::make_shared<CImageEffectCompound>();
    chain->Add(std::make_shared<CImageEffectRename>());
    const CPictureInfo* picture = iterator.GetCurrentPicture();
    if (picture && picture->GetAngle() != 0) {
        chain->Add(std::make_shared<CImageEffectRotate>(picture->GetAngle()));
    }
    chain->Add(std::make_shared<CImageEffectResize>(
        QSize(width, height), CImageEffectResize::Options{.shrinkOnly = true, .crop = false}));
    chain->Add(std::make_shared<CImageEffectProxy>(iterator.GetEffectsForSize(width, height)));
    if (picture && !picture->GetNameSuffix().isEmpty()) {
        chain->Add(std::make_shared<CImageEffectNameSuffix>(picture->GetNameSuffix()));
    }
    return chain;
}

bool ConsistsOfBlanks(const QString& text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return character == QLatin1Char(' '); });
}

// maxChars counts UTF-16 units; a character that the cut would halve is left out. Nothing is left of a text
// that may have fewer than none.
QString Shortened(const QString& text, int32_t maxChars)
{
    QString kept = text.left(std::max(maxChars, 0));
    if (!kept.isEmpty() && kept.back().isHighSurrogate()) {
        kept.chop(1);
    }
    return kept + QStringLiteral("...");
}

} // namespace

void CContentGeneratorBase::GeneratePageHeader(CImageIterator& iterator, std::ostream& out)
{
    out << "\n<meta http-equiv=\"imagetoolbar\" content=\"no\">";
    WriteResourceScript(QStringLiteral("contextmenu"), out);
    out << "\n<script type=\"text/javascript\">\nfunction GetCurrentURL( ) {\n\t\treturn ";
    WriteCurrentUrl(iterator, out);
    out << ";\n}\n</script>\n";
}

void CContentGeneratorBase::GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                                            std::ostream& out)
{
    out << "<div align=\"center\" valign=\"center\" width=\"" << picture.width << "\" height=\""
        << picture.height << "\" >";
    BeforePicture(out, picture.id);
    out << "<a href=\"" << picture.href << "\"><img id=\"" << picture.id << "\" src=\"";
    QString path;
    iterator.GetPicturePath(path);
    const auto chain = PageChain(iterator, ParseInteger(picture.width), ParseInteger(picture.height));
    out << Narrow(GetImageName(path, chain, iterator.GetCurrentPicture())) << '"';
    if (picture.alt) {
        out << " alt=\"" << *picture.alt << '"';
    }
    WritePictureAttributes(out, picture.id);
    out << "/></a></div>";
}

void CContentGeneratorBase::GenerateTextSpan(CImageIterator& iterator, const TextSpanAttributes& span,
                                             std::ostream& out)
{
    const CTemplateVariableName name(Widen(span.property));
    const std::string spanId = Narrow(name.GetObjectName() + QLatin1Char('_') + name.GetVariableName());
    BeforeTextSpan(out, spanId, span);
    out << "<span id=\"" << spanId << '"';
    WriteTextSpanAttributes(out, spanId);
    out << '>';
    CVariant value;
    const bool found = iterator.GetVariable(name.GetObjectName(), name.GetVariableName(), value);
    out << (found ? TextSpanText(span, value) : span.defaultText) << "</span>";
}

std::string CContentGeneratorBase::TextSpanText(const TextSpanAttributes& span, const CVariant& value)
{
    QString text = VariantToString(value);
    if (span.maxChars != 0 && span.maxChars < text.size()) {
        text = Shortened(text, span.maxChars);
    }
    if (text.isEmpty()) {
        return span.defaultText;
    }
    if (ConsistsOfBlanks(text)) {
        // Odd on purpose: without the semicolon. Browsers read it, and the published bytes must not move.
        return Narrow(QStringLiteral("&nbsp").repeated(text.size()));
    }
    return Narrow(text);
}

void CContentGeneratorBase::GenerateNavigationTable(CImageIterator& iterator,
                                                    const NavigationTableAttributes& table, std::ostream& out)
{
    if (table.maxPagesCount == 0) {
        return;
    }
    const auto current = static_cast<uint32_t>(iterator.GetPageIndex());
    const auto total = static_cast<uint32_t>(iterator.GetPageCount());
    const auto maxPages = static_cast<uint32_t>(table.maxPagesCount);
    const uint32_t end = EndOfWindow(maxPages, current, total);
    const bool hasPrevious = current != 0;
    const bool hasNext = total != 0 && current != total - 1;

    out << "<table cellpadding=\"0\" cellspacing=\"0\" border=\"0\"><tr>\n";
    WriteNavigationCell(iterator, {table.firstImage, table.firstPageAlt, 0, hasPrevious}, out);
    WriteNavigationCell(
        iterator, {table.previousImage, table.previousPageAlt, hasPrevious ? current - 1 : 0, hasPrevious},
        out);
    for (uint32_t page = FirstPageOfWindow(maxPages, current, total); page < end; ++page) {
        const bool selected = page == current;
        WriteNavigationCell(
            iterator, {selected ? table.pageImageSelected : table.pageImage, table.pageAlt, page, !selected},
            out);
    }
    WriteNavigationCell(iterator, {table.nextImage, table.nextPageAlt, current + 1, hasNext}, out);
    WriteNavigationCell(iterator, {table.lastImage, table.lastPageAlt, total - 1, hasNext}, out);
    out << "</tr></table>\n";
}

void CContentGeneratorBase::WriteNavigationCell(CImageIterator& iterator, const NavigationCell& cell,
                                                std::ostream& out)
{
    out << "<td>";
    if (cell.enabled) {
        out << "<a href=\"" << Narrow(iterator.GetPageFileName(static_cast<int32_t>(cell.page))) << "\" >";
    }
    out << "<img src=\"" << cell.image << "\" ";
    if (cell.enabled) {
        out << "alt=\"" << NavigationAlt(iterator, cell) << "\" ";
    }
    out << "/>" << (cell.enabled ? "</a>" : "") << "</td>\n";
}

std::string CContentGeneratorBase::NavigationAlt(CImageIterator& iterator, const NavigationCell& cell)
{
    CVariant title;
    iterator.GetPageProperty(static_cast<int32_t>(cell.page), QStringLiteral("title"), title);
    QString alt = Widen(cell.alt);
    alt.replace(QStringLiteral("%title%"), VariantToString(title));
    alt.replace(QStringLiteral("%number%"), QString::number(cell.page + 1));
    return Narrow(alt);
}

void CContentGeneratorBase::GenerateImageReference(CImageIterator& iterator,
                                                   const ImageReferenceAttributes& reference,
                                                   std::ostream& out)
{
    const std::string href = GetPropertyOrDefault(iterator, reference.hrefProperty, reference.defaultHref);
    const std::string alt = GetPropertyOrDefault(iterator, reference.altProperty, reference.defaultAlt);
    BeforeImageReference(out, reference);
    out << "<a href=\"" << href << "\"><img src=\"" << reference.src << "\" alt=\"" << alt << "\" ";
    WriteImageReferenceAttributes(out, reference.id);
    out << "/></a>";
}

void CContentGeneratorBase::GenerateTextReference(CImageIterator& iterator,
                                                  const TextReferenceAttributes& reference, std::ostream& out)
{
    const std::string href = GetPropertyOrDefault(iterator, reference.hrefProperty, reference.defaultHref);
    const std::string text = GetPropertyOrDefault(iterator, reference.text, reference.defaultText);
    BeforeTextReference(out, reference);
    out << "<a href=\"" << href << "\" ";
    WriteTextReferenceAttributes(out, reference.id);
    out << " >" << text << "</a>";
}

void CContentGeneratorBase::GenerateAdvertisement(CImageIterator& iterator, const std::string& name,
                                                  std::ostream& out)
{
    CVariant value;
    const bool found = iterator.GetVariable(QStringLiteral("advertisement"), Widen(name), value);
    if (found && value.GetType() == CVariant::Type::String && !value.GetString().isNull()) {
        WriteAdvertisementBody(value.GetString(), out);
    }
}

QString CContentGeneratorBase::GetImageName(const QString& sourcePath,
                                            std::shared_ptr<const CImageEffect> effect, CPictureInfo* picture)
{
    const QString result = GetImagePath({.sourcePath = sourcePath, .effect = *effect, .picture = picture});
    if (IsImageOverwriteForced() || !FileExists(result)) {
        ProduceImage({sourcePath, std::move(effect), result});
    }
    return GetImageUrl(result);
}

QSize CContentGeneratorBase::StoreSourceSize(CImageIterator& iterator, const QString& id)
{
    QString path;
    const CImageEffectSource source(iterator.GetPicturePath(path));
    const QSize size = source.GetImage().GetSize();
    iterator.SetVariable(id, QStringLiteral("source_height"), CVariant(size.height()));
    iterator.SetVariable(id, QStringLiteral("source_width"), CVariant(size.width()));
    return size;
}

bool CContentGeneratorBase::IsImageOverwriteForced() const
{
    return false;
}

QString CContentGeneratorBase::GetImagePath(const WantedImage& image)
{
    return CImageCache().PathFor(image.sourcePath, image.effect);
}

QString CContentGeneratorBase::GetImageUrl(const QString& filePath) const
{
    return filePath;
}

void CContentGeneratorBase::BeforePicture(std::ostream&, const std::string&) {}
void CContentGeneratorBase::WritePictureAttributes(std::ostream&, const std::string&) {}
void CContentGeneratorBase::BeforeTextSpan(std::ostream&, const std::string&, const TextSpanAttributes&) {}
void CContentGeneratorBase::WriteTextSpanAttributes(std::ostream&, const std::string&) {}
void CContentGeneratorBase::BeforeImageReference(std::ostream&, const ImageReferenceAttributes&) {}
void CContentGeneratorBase::WriteImageReferenceAttributes(std::ostream&, const std::string&) {}
void CContentGeneratorBase::BeforeTextReference(std::ostream&, const TextReferenceAttributes&) {}
void CContentGeneratorBase::WriteTextReferenceAttributes(std::ostream&, const std::string&) {}

void CContentGeneratorBase::ProduceImage(const ImageRequest& request)
{
    MakeImage(request);
    CImageCache().NoteMade(request.resultPath);
}

void CContentGeneratorBase::WriteResourceScript(const QString& resourceName, std::ostream& out)
{
    out << "<script type=\"text/javascript\" >"
        << FindResource(resourceName, QStringLiteral("js")).toStdString() << "</script>";
}

std::string CContentGeneratorBase::GetPropertyOrDefault(CImageIterator& iterator, const std::string& property,
                                                        const std::string& defaultValue)
{
    const CTemplateVariableName name(Widen(property));
    CVariant value;
    const bool found = iterator.GetVariable(name.GetObjectName(), name.GetVariableName(), value);
    return found && !value.IsEmpty() ? Narrow(VariantToString(value)) : defaultValue;
}
