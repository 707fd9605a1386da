#include "Check.h"
#include "Workshop.h"
#include "common/FileSystem.h"
#include "document/catalogue/Definitions.h"

namespace {

void ReadLayout(const QString& path)
{
    try {
        CGalleryTemplate layout(path);
        Check(layout.GetFolder().isEmpty() || layout.GetFolder().endsWith(QLatin1Char('/')),
              "a layout's folder ends with a separator");
        for (const CGalleryTemplatePage& page : layout.GetPages()) {
            Check(layout.HasPage(page.file), "a layout has its pages");
            Check(layout.GetPage(page.file).file == page.file, "a page is found by its name");
        }
    } catch (const CExceptionBase& failure) {
        CheckTexts(failure);
    }
}

void ReadStyle(const QString& path)
{
    try {
        const CGalleryStyle style(path);
        // A folder that leads out has none.
        Check(style.directory.isEmpty() || style.directory.startsWith(ExtractFolder(path)),
              "a style's folder lies beside its definition");
    } catch (const CExceptionBase& failure) {
        CheckTexts(failure);
    }
}

} // namespace

// Bytes of a definition file, read as that of a layout and as that of a style.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static const CWorkshop workshop;
    const QString path =
        workshop.Write(QStringLiteral("definitions/input.xml"), {reinterpret_cast<const char*>(bytes), size});
    ReadLayout(path);
    ReadStyle(path);
    return 0;
}
