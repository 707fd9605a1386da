#include "shell/panes/folder/FolderLoader.h"

#include "common/Exceptions.h"
#include "common/Text.h"

CFolderLoader::CFolderLoader(Listener newListener)
    : listener(std::move(newListener)),
      progressTarget(CEventLoopTarget<FolderProgress>::Create(
          [this](const FolderProgress& progress) { listener.progressed(progress); })),
      filledTarget(CEventLoopTarget<int>::Create([this](int) { listener.filled(); }))
{
    Start();
}

CFolderLoader::~CFolderLoader()
{
    Quit();
}

void CFolderLoader::Choose(const QString& folder, QSize card)
{
    Cancel();
    isWorking = false;
    job = {.number = job.number + 1, .folder = folder, .card = card};
}

void CFolderLoader::Request()
{
    isWorking = true;
    CBackgroundWorker::Request();
}

void CFolderLoader::DoWork()
{
    FilledFolder result{.number = job.number, .found = {}, .failure = {}};
    try {
        result.found = FillPicturesCollection(job.folder, job.card, *this);
    } catch (const CExceptionBase& failure) {
        result.failure = failure.GetCaption() + QLatin1Char('\n') + failure.GetDescription();
    } catch (const std::exception& failure) {
        result.failure = Widen(failure.what());
    }
    if (!IsRunning()) {
        return;
    }
    const int number = result.number;
    {
        const CMutexLock lock(pictureLock);
        filled = std::move(result);
    }
    filledTarget->Post(number);
}

void CFolderLoader::OnProgress(int count, const std::vector<FolderCard>& cards)
{
    progressTarget->Post({job.number, count, cards});
}

std::optional<FilledFolder> CFolderLoader::Take(const QString& folder)
{
    const CMutexLock lock(pictureLock);
    // Another folder may have been chosen already, and its notice be under way.
    if (!isWorking || filled.number != job.number || job.folder != folder) {
        return std::nullopt;
    }
    isWorking = false;
    return std::exchange(filled, {});
}
