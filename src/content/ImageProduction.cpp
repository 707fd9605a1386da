#include "content/ImageProduction.h"

#include "common/StopSignal.h"
#include "content/DeploymentRecord.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Image.h"
#include "resources/StringTable.h"

namespace {

CDeploymentRecord::Origin WithKey(CDeploymentRecord::Origin origin, const ImageRequest& request)
{
    origin.key = request.effect->GetKey();
    return origin;
}

} // namespace

CImageProduction::CImageProduction(Listener& listener, CStopSignal& stop, CDeploymentRecord* record)
    : listener(listener), stop(stop), record(record), workers(&stop)
{}

void CImageProduction::BeginPage()
{
    currentPage = std::make_shared<Page>();
}

void CImageProduction::Ask(const ImageRequest& request)
{
    const auto [entry, isNew] = askedByResult.try_emplace(request.resultPath, asked.size());
    if (isNew) {
        asked.emplace_back();
    }
    Image& image = asked[entry->second];
    image.request = request;
    if (currentPage && (image.pages.empty() || image.pages.back() != currentPage)) {
        image.pages.push_back(currentPage);
        const CMutexLock lock(mutex);
        ++currentPage->open;
    }
}

void CImageProduction::EndPage()
{
    const std::shared_ptr<Page> page = std::move(currentPage);
    const CMutexLock lock(mutex);
    CloseOne(*page);
}

void CImageProduction::StartAsked()
{
    std::map<QString, size_t> groups;
    std::deque<Source> sources;
    for (Image& image : asked) {
        const auto [group, isNew] = groups.try_emplace(image.request.sourcePath, sources.size());
        if (isNew) {
            sources.push_back({image.request.sourcePath, sourceCount++, {}});
        }
        sources[group->second].images.push_back(std::move(image));
    }
    asked.clear();
    askedByResult.clear();
    {
        const CMutexLock lock(mutex);
        std::move(sources.begin(), sources.end(), std::back_inserter(waiting));
    }
    for (size_t i = 0; i < sources.size(); ++i) {
        workers.Post([this] { MakeNext(); });
    }
}

void CImageProduction::Finish()
{
    StartAsked();
    {
        const CMutexLock lock(mutex);
        finishing = true;
    }
    workers.Finish();
}

void CImageProduction::MakeNext()
{
    MakeAll(TakeNext());
}

// In the order of asking; but of the last few the largest comes first, so that no worker
// begins it when the others have nothing left to do.
CImageProduction::Source CImageProduction::TakeNext()
{
    constexpr size_t lastOfEachWorker = 4;
    const CMutexLock lock(mutex);
    auto next = waiting.begin();
    if (finishing && waiting.size() <= lastOfEachWorker * CWorkerPool::GetUsualSize()) {
        std::map<int64_t, std::deque<Source>::iterator> bySize;
        for (auto source = waiting.begin(); source != waiting.end(); ++source) {
            const auto stamp = FileStamp::Of(source->path);
            bySize.try_emplace(stamp ? -stamp->size : 0, source);
        }
        next = bySize.begin()->second;
    }
    Source source = std::move(*next);
    waiting.erase(next);
    return source;
}

void CImageProduction::MakeAll(const Source& source)
{
    // Before the first byte is decoded: a change that comes later shows in the next run.
    const std::optional<Origin> origin = record ? record->FindOrigin(source.path) : std::nullopt;
    const std::vector<const Image*> outdated = FindOutdated(source, origin);
    if (outdated.empty()) {
        return;
    }
    const CImage picture = CImage::FromFile(source.path);
    // All chains before the first file: each tells the picture the size that it needs, and the decoder then
    // serves them all at once.
    std::vector<CImageEffectSource> results;
    for (const Image* const image : outdated) {
        results.emplace_back(picture, source.path);
        image->request.effect->Apply(results.back());
        if (results.back().GetImage().IsSameAs(picture)) {
            picture.AnnounceFullSize();
        }
    }
    for (size_t i = 0; i < results.size(); ++i) {
        if (stop.IsSet()) {
            return;
        }
        results[i].Save(outdated[i]->request.resultPath);
        const bool isWhole = picture.GetCondition().state != ImageCondition::State::InPart;
        if (origin) {
            const ImageRequest& request = outdated[i]->request;
            record->NoteImage(request.resultPath, {WithKey(*origin, request), isWhole});
        }
        FinishImage(source, *outdated[i], isWhole);
    }
}

std::vector<const CImageProduction::Image*>
CImageProduction::FindOutdated(const Source& source, const std::optional<Origin>& origin)
{
    std::vector<const Image*> outdated;
    for (const Image& image : source.images) {
        const CDeploymentRecord::Image* const current =
            origin ? record->FindCurrent(image.request.resultPath, WithKey(*origin, image.request)) : nullptr;
        if (current) {
            FinishImage(source, image, current->isWhole);
        } else {
            outdated.push_back(&image);
        }
    }
    return outdated;
}

void CImageProduction::FinishImage(const Source& source, const Image& image, bool isWhole)
{
    const CMutexLock lock(mutex);
    ++imageCount;
    if (!isWhole) {
        warnings[source.number] = Text(StringId::PicturePublishedInPart, source.path);
    }
    for (const std::shared_ptr<Page>& page : image.pages) {
        CloseOne(*page);
    }
}

// The mutex also makes the listener's calls come one at a time.
void CImageProduction::CloseOne(Page& page)
{
    if (--page.open == 0) {
        listener.OnPageDone();
    }
}

int CImageProduction::GetImageCount() const
{
    const CMutexLock lock(mutex);
    return imageCount;
}

QStringList CImageProduction::GetWarnings() const
{
    const CMutexLock lock(mutex);
    QStringList texts;
    for (const auto& [number, text] : warnings) {
        texts += text;
    }
    return texts;
}
