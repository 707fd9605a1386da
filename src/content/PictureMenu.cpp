#include "content/PictureMenu.h"

#include "common/FileSystem.h"
#include "common/Text.h"
#include "content/PictureMenuCommandGenerator.h"
#include "effects/FileNames.h"
#include "imaging/SvgImage.h"
#include "resources/Resources.h"

namespace {

// The buttons are drawn on 24 by 24 pixels; a strip has four times as many, so that it is sharp on screens of
// every density. Pages show it 24 pixels high.
constexpr int stripDensity = 4;

CImage LoadButton(int32_t bitmap)
{
    return RenderSvg(FindResource(QString::number(bitmap), QStringLiteral("svg")), stripDensity);
}

// The path of the strip; the file is made if it is missing, once per machine.
QString MakeStrip(const QString& folder, const std::vector<int32_t>& bitmaps)
{
    QString path = folder + QStringLiteral("menu");
    for (const int32_t bitmap : bitmaps) {
        path += QLatin1Char('_') + QString::number(bitmap);
    }
    path += QStringLiteral(".bmp");
    const auto format = GetEncoderClsid(QStringLiteral("bmp"));
    if (FileExists(path) || !format) {
        return path;
    }
    std::vector<CImage> buttons;
    for (const int32_t bitmap : bitmaps) {
        buttons.push_back(LoadButton(bitmap));
    }
    // A strip that can't be written is missing from the page, which is no reason to lose the page.
    SideBySide(buttons).Save(path, {.format = *format, .quality = 100});
    return path;
}

} // namespace

CPictureMenu::CPictureMenu(const QString& temporaryFolder, const std::vector<Row>& rows)
{
    std::vector<int32_t> bitmaps;
    for (const Row& row : rows) {
        bitmaps.push_back(row.bitmap);
    }
    stripPath = MakeStrip(temporaryFolder, bitmaps);
    for (size_t i = 0; i < rows.size(); ++i) {
        bitmaps[i] = rows[i].litBitmap;
        items.push_back({.command = rows[i].bitmap,
                         .stripPath = MakeStrip(temporaryFolder, bitmaps),
                         .tooltip = Text(rows[i].tooltip)});
        bitmaps[i] = rows[i].bitmap;
    }
}

void CPictureMenu::WriteMenuImages(std::ostream& out, const std::string& id,
                                   const CPictureMenuCommandGenerator& generator) const
{
    WriteImage(out, id, {.path = stripPath, .command = QString(), .tooltip = QString()});
    for (const CPictureMenuItem& item : items) {
        QString command;
        generator.GenerateCommand(item.command, id, command);
        WriteImage(out, id, {.path = item.stripPath, .command = command, .tooltip = item.tooltip});
    }
}

void CPictureMenu::WriteImage(std::ostream& out, const std::string& id, const Strip& strip)
{
    out << "<img id=\"" << id << "_menu\" src=\"" << Narrow(AddressOfFile(strip.path))
        << "\" style=\"position:absolute;display:none\" onmousemove=\"activateMenu(" << id
        << "_menu);\" onmouseleave=\"hideMenu(" << id << "_menu);\"";
    if (!strip.command.isEmpty()) {
        out << " onclick=\"window.external." << Narrow(strip.command) << ";\" ";
    }
    if (!strip.tooltip.isEmpty()) {
        out << " alt=\"" << Narrow(strip.tooltip) << "\" ";
    }
    out << ">\n";
}

void CPictureMenu::WriteMenuAttributes(std::ostream& out, const std::string& id)
{
    out << " onmouseenter=\"showMenu(" << id << "_menu);\" onmouseleave=\"hideMenu(" << id << "_menu);\"";
}
