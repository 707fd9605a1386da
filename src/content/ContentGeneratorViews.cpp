#include "content/ContentGeneratorViews.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/PictureMenu.h"
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

QString CContentGeneratorViews::GetImageUrl(const QString& filePath)
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
