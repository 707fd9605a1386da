#include "content/ContentGeneratorViews.h"

#include "common/Text.h"
#include "content/PictureMenu.h"
#include "template/ImageIterator.h"

namespace {

bool EndsAddressOrAttribute(char unit)
{
    static const std::string_view ending = "%#?&\"'<>\\";
    return ending.find(unit) != std::string_view::npos || static_cast<unsigned char>(unit) < ' ';
}

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

QString ViewUrl(const QString& filePath)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string url;
    for (const char unit : Narrow(filePath)) {
        if (EndsAddressOrAttribute(unit)) {
            url += '%';
            url += digits[static_cast<unsigned char>(unit) >> 4];
            url += digits[static_cast<unsigned char>(unit) & 15];
        } else {
            url += unit;
        }
    }
    return Widen(url);
}

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
    return ViewUrl(filePath);
}

void CContentGeneratorViews::BeforePicture(std::ostream& out, const std::string& id)
{
    WritePictureMenu(out, id);
}

void CContentGeneratorViews::WritePictureAttributes(std::ostream& out, const std::string& id)
{
    CPictureMenu::WriteMenuAttributes(out, id);
}
