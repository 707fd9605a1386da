#include "shell/panes/galleries/GalleryCovers.h"

#include <QFile>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "document/cover/CoverCache.h"
#include "document/project/GalleryProject.h"
#include "effects/FileNames.h"
#include "effects/ImageEffectResize.h"
#include "effects/ImageEffectSource.h"

namespace {

CImageEffectResize ScaledInto(QSize box)
{
    return CImageEffectResize(box, {.shrinkOnly = true, .crop = false});
}

QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

CGalleryCovers::CGalleryCovers(Listener listener)
    : listener(std::move(listener)),
      target(CEventLoopTarget<Result>::Create([this](const Result& result) { OnResult(result); }))
{}

QString CGalleryCovers::GetPath(CGallery& gallery, QSize box)
{
    return ScaledInto(box).GetResultFileName(gallery.GetCover().GetName());
}

bool CGalleryCovers::IsReady(CGallery& gallery, QSize box) const
{
    const auto found = revisions.find(GetPath(gallery, box));
    return found != revisions.end() && found->second == gallery.GetCover().GetRevision();
}

void CGalleryCovers::Order(CGalleryProject& newProject, const std::vector<int32_t>& galleries, QSize newBox)
{
    ++*order;
    project = &newProject;
    box = newBox;
    wanted = {galleries.begin(), galleries.end()};
    failed.clear();
    Continue();
}

void CGalleryCovers::Stop()
{
    ++*order;
    project = nullptr;
    wanted.clear();
}

// Covers that show other covers come behind those, so that this is asked again with each file that comes.
void CGalleryCovers::Continue()
{
    for (auto next = wanted.begin(); next != wanted.end();) {
        CGallery* const gallery = project->FindGallery(*next);
        next = gallery && Begin(*gallery) ? std::next(next) : wanted.erase(next);
    }
}

// False if the gallery's picture can't be made.
bool CGalleryCovers::Begin(CGallery& gallery)
{
    CGalleryCover* const unmade = gallery.GetCover().FindUnmade();
    CGalleryCover& next = unmade ? *unmade : gallery.GetCover();
    if (failed.count(next.GetGalleryIndex()) != 0) {
        return false;
    }
    if (begun.count({next.GetGalleryIndex(), !unmade}) != 0) {
        return true;
    }
    Work work;
    work.order = *order;
    work.gallery = next.GetGalleryIndex();
    if (unmade) {
        CGalleryCover::Recipe recipe = next.HandOut();
        work.revision = recipe.revision;
        work.pictures = std::move(recipe.pictures);
        work.cache = &gallery.GetManager().GetCoverCache();
        // Its own name, until it is known that it still counts.
        work.path = WithSuffix(next.GetName(), QStringLiteral("~%1").arg(++fileCount));
    } else {
        work.revision = next.GetRevision();
        work.path = GetPath(gallery, box);
        work.cover = next.GetName();
        work.box = box;
    }
    Post(std::move(work));
    return true;
}

void CGalleryCovers::Post(Work work)
{
    begun.insert({work.gallery, !work.cover.isEmpty()});
    workers.Post(
        [work = std::move(work), current = order, receiver = std::weak_ptr<CMessageTarget<Result>>(target)] {
            PostTo(receiver, *current == work.order ? Perform(work) : Result{.work = work});
        });
}

CGalleryCovers::Result CGalleryCovers::Perform(const Work& work)
{
    Result result{.work = work};
    try {
        if (work.cover.isEmpty()) {
            result.key = work.cache->MakeCover(work.path, work.pictures);
        } else {
            const QByteArray before = BytesOf(work.path);
            CImageEffectSource source(work.cover);
            ScaledInto(work.box).Apply(source);
            source.Save(work.path);
            result.isChanged = BytesOf(work.path) != before;
        }
        result.isDone = true;
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
    } catch (const std::exception& failure) {
        Trace(Widen(failure.what()));
    }
    return result;
}

void CGalleryCovers::OnResult(const Result& result)
{
    const Work& work = result.work;
    const bool isScaled = !work.cover.isEmpty();
    const bool wasFinished = wanted.empty();
    begun.erase({work.gallery, isScaled});
    CGallery* const gallery = project ? project->FindGallery(work.gallery) : nullptr;
    if (!gallery) {
        if (!isScaled) {
            QFile::remove(work.path);
        }
    } else if (!result.isDone) {
        if (work.order == *order) {
            failed.insert(work.gallery);
        }
    } else if (isScaled) {
        OnScaled(*gallery, result);
    } else {
        gallery->GetCover().Accept(work.revision, {.file = work.path, .key = result.key});
    }
    if (project) {
        Continue();
    }
    if (!wasFinished && wanted.empty()) {
        listener.finished();
    }
}

void CGalleryCovers::OnScaled(CGallery& gallery, const Result& result)
{
    const Work& work = result.work;
    revisions[work.path] = work.revision;
    if (work.order == *order && work.revision == gallery.GetCover().GetRevision()) {
        wanted.erase(work.gallery);
        listener.arrived(work.gallery, result.isChanged);
    }
}
