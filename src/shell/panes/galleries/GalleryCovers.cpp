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
    return ScaledInto(box).GetResultFileName(gallery.GetCoverName());
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

// Covers that show other covers come after those, so that this is asked again with each file that comes.
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
    CGallery* const unmade = gallery.GetCover().FindUnmade();
    CGallery& next = unmade ? *unmade : gallery;
    if (failed.count(next.GetIndex()) != 0) {
        return false;
    }
    if (begun.count({next.GetIndex(), !unmade}) != 0) {
        return true;
    }
    Work work;
    work.order = *order;
    work.gallery = next.GetIndex();
    const QString cover = next.GetCoverName();
    if (unmade) {
        CGalleryCover::Recipe recipe = next.GetCover().HandOut();
        work.revision = recipe.revision;
        work.pictures = std::move(recipe.pictures);
        work.cache = &next.GetManager().GetCoverCache();
        // Its own name, until it is known that it still counts.
        work.path = WithSuffix(cover, QStringLiteral("~%1").arg(++fileCount));
    } else {
        work.revision = next.GetCover().GetRevision();
        work.path = GetPath(next, box);
        work.cover = cover;
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
