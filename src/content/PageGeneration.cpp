#include "content/PageGeneration.h"

#include <atomic>

#include "common/StopSignal.h"
#include "common/TempFolder.h"
#include "content/ContentGeneratorFolder.h"
#include "content/GalleryWalk.h"
#include "content/ImageProduction.h"
#include "content/PagesGenerator.h"
#include "document/project/GalleryProject.h"

namespace {

// Turns finished pages into progress. The image production calls it one page at a time.
class CPageTally final : public CImageProduction::Listener {
public:
    explicit CPageTally(CGenerationProgress& progress) : progress(progress) {}

    void SetTotal(int32_t pages) { total = pages; }
    int32_t GetDone() const { return done; }

    void OnPageDone() override { progress.OnPageDone(++done, total); }

private:
    CGenerationProgress& progress;
    std::atomic<int32_t> done = 0;
    int32_t total = 0;
};

// The second walk. Whatever it throws gives way to a worker's failure that came before it.
void WritePages(CGalleryWalk& walk, CPagesGenerator& writer, CImageProduction& production)
{
    try {
        walk.Run(writer);
    } catch (...) {
        if (const std::exception_ptr earlier = production.GetFailure()) {
            std::rethrow_exception(earlier);
        }
        throw;
    }
    production.Finish();
}

} // namespace

GenerationResult GeneratePages(CGalleryProject& project, const GenerationTarget& target,
                               const CStopSignal& stop, CGenerationProgress& progress)
{
    CStopSignal runStop(&stop);
    if (target.record) {
        target.record->SetRunFolder(project.GetTempFolder().GetPath());
    }
    CPageTally tally(progress);
    CImageProduction production(tally, runStop, target.record);
    CContentGeneratorFolder generator(
        {.targetFolder = target.folder, .bannerServer = project.GetBannerServer()}, production);
    CGalleryWalk walk(project, generator, runStop);

    int32_t total = 0;
    CPagesCounter counter(total);
    if (walk.Run(counter)) {
        tally.SetTotal(total);
        CPagesGenerator writer(
            {target.folder, generator, production, runStop, target.record, target.uncopied});
        WritePages(walk, writer, production);
    }
    return {
        .pages = tally.GetDone(), .images = production.GetImageCount(), .warnings = production.GetWarnings()};
}
