#include <QFile>

#include "Check.h"
#include "Workshop.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "imaging/Image.h"

namespace {

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t donePages, int32_t totalPages) override
    {
        // Pages without places for pictures are not counted, but done.
        Check(donePages > 0 && totalPages >= 0, "pages are counted from one");
    }
};

void WritePicture(const QString& path)
{
    QByteArray bytes;
    for (int i = 0; i < 8 * 6; ++i) {
        bytes += "\x33\x66\x99\xff";
    }
    const ImageSaveResult result =
        CImage::FromRgba({8, 6}, bytes).Save(path, {ImageEncoding::Format::Jpeg, 80});
    Check(result.status == ImageSaveResult::Status::Saved, "a picture can be made");
}

// Two galleries, one below the other, with five pictures and some variables.
class CGalleryWorkshop : public CWorkshop {
public:
    CGalleryWorkshop() : project(GetEnvironment())
    {
        project.New();
        project.AddChildGallery(project.GetRootGalleryIndex());
        for (const auto& [index, gallery] : project.GetGalleries()) {
            gallery->SetTemplate(gallery->GetLayout().GetTemplateKey());
        }
        for (int i = 0; i < 5; ++i) {
            const QString path = Path(QStringLiteral("photos/%1.jpg").arg(i));
            WritePicture(path);
            project.GetRootGallery()->AddPicture(path);
        }
        Check(Generate("<html><%=page.number%></html>"), "a page without errors is generated");
    }

    // False for a page with an error.
    bool Generate(std::string_view page)
    {
        Write(QStringLiteral("program/Templates/Plain/picture.html"), page);
        const CStopSignal stop;
        CNoProgress progress;
        try {
            GeneratePages(project, {.folder = Path(QStringLiteral("site/"))}, stop, progress);
            return true;
        } catch (const CExceptionBase& failure) {
            CheckTexts(failure);
            return false;
        }
    }

private:
    CGalleryProject project;
};

} // namespace

// Bytes of a layout's page, generated for each picture of a gallery as a deployment does it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static CGalleryWorkshop workshop;
    workshop.Generate({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
