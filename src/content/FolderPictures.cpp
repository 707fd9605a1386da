#include "content/FolderPictures.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include <QDateTime>
#include <QFile>
#include <QLocale>

#include "common/Descriptor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/ThreadSafety.h"
#include "common/Trace.h"
#include "common/WorkerPool.h"
#include "content/ImageCache.h"
#include "document/pictures/PictureFiles.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"
#include "effects/ImageEffectTextStamp.h"
#include "imaging/pixels/DecodingStop.h"

namespace {

constexpr int progressStep = 5; // pictures; a page is changed for each step
constexpr int bottomCentred = 8;
constexpr int centred = 0;

QDateTime FromTime(int64_t seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds);
}

// When the file came into being, in the manner of the user's country. Not every file system knows it; then it
// is the time of the last change.
QString CreationTime(const QString& path, const QLocale& locale)
{
    struct statx status {};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_BTIME | STATX_MTIME, &status) != 0) {
        return QString();
    }
    const bool knowsBirth = (status.stx_mask & STATX_BTIME) != 0;
    return locale.toString(FromTime(knowsBirth ? status.stx_btime.tv_sec : status.stx_mtime.tv_sec),
                           QLocale::ShortFormat);
}

CImageEffectCompound CardChain(QSize card, const QString& text)
{
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRename>());
    chain.Add(std::make_shared<CImageEffectThumbnail>(card));
    chain.Add(std::make_shared<CImageEffectTextStamp>(text, bottomCentred));
    return chain;
}

// What stands for a picture that can't be read.
void SaveEmptyCard(const QString& name, QSize card, const QString& target)
{
    constexpr char grey = static_cast<char>(207); // as behind a picture
    QByteArray bytes(qsizetype(4) * card.width() * card.height(), grey);
    for (qsizetype i = 3; i < bytes.size(); i += 4) {
        bytes[i] = static_cast<char>(255);
    }
    CImageEffectSource source(CImage::FromRgba(card, bytes));
    CImageEffectTextStamp(name, centred).Apply(source);
    source.Save(target);
}

// One walk over a folder: hands the pictures to the threads and gathers their cards.
class CFolderWalk {
public:
    CFolderWalk(const std::vector<QString>& paths, QSize card, CFolderPicturesListener& listener)
        : paths(paths), card(card), listener(listener), pictures(paths.size()), isFinished(paths.size())
    {}

    void Run()
    {
        OnAllCores(paths.size(), [this](size_t at) {
            if (listener.IsWanted()) {
                Work(at);
            }
        });
    }

    FolderPictures Finish()
    {
        FolderPictures result;
        for (size_t i = 0; i < paths.size(); ++i) {
            if (!isFinished[i]) {
                result.unfinished += paths[i];
            }
        }
        result.pictures = std::move(pictures);
        return result;
    }

private:
    void Work(size_t at)
    {
        const CDecodingStop stop([this] { return !listener.IsWanted(); });
        pictures[at] = std::make_unique<CFilePictureInfo>(paths[at], 0);
        pictures[at]->SetThumbnailPath(MakeCard(at));
        if (listener.IsWanted()) {
            Note(at);
        }
    }

    // The path of the card.
    QString MakeCard(size_t at)
    {
        const QString& path = paths[at];
        const QString date = CreationTime(path, locale);
        const CImageEffectCompound chain = CardChain(card, date);
        const QString target = cache.PathFor(path, chain);
        isFinished[at] = true;
        if (FileExists(target)) {
            return target;
        }
        // Under a name of its own, so that it is tried again next time.
        const QString unfinished = WithSuffix(target, QStringLiteral("_unfinished"));
        try {
            CImageEffectSource source(path);
            const CImage picture = source.GetImage();
            chain.Apply(source);
            source.Save(unfinished);
            isFinished[at] = picture.GetCondition().state == ImageCondition::State::Whole;
            const bool isRenamed = isFinished[at] && QFile::rename(unfinished, target);
            cache.NoteMade(isRenamed ? target : unfinished);
            return isRenamed ? target : unfinished;
        } catch (const CExceptionBase& failure) {
            Trace(failure.GetCaption() + QLatin1Char(' ') + failure.GetDescription());
        }
        isFinished[at] = false;
        MakeEmptyCard(path, unfinished);
        return unfinished;
    }

    // If there is no place on the disk for it either, the row shows that its picture is missing.
    void MakeEmptyCard(const QString& path, const QString& target)
    {
        if (!listener.IsWanted()) {
            return;
        }
        try {
            SaveEmptyCard(ExtractLastName(path), card, target);
        } catch (const CExceptionBase& failure) {
            Trace(failure.GetCaption() + QLatin1Char(' ') + failure.GetDescription());
        }
    }

    void Note(size_t at)
    {
        const CMutexLock lock(mutex);
        ++count;
        cards.push_back({static_cast<int>(at), paths[at], pictures[at]->GetThumbnailPath()});
        if (count % progressStep == 0) {
            std::sort(cards.begin(), cards.end(),
                      [](const FolderCard& a, const FolderCard& b) { return a.position < b.position; });
            listener.OnProgress(count, cards);
            cards.clear();
        }
    }

    const std::vector<QString>& paths;
    const QSize card;
    CFolderPicturesListener& listener;
    const QLocale locale = QLocale::system();
    const CImageCache cache;

    // Each place belongs to the thread that works at the picture.
    std::vector<std::unique_ptr<CFilePictureInfo>> pictures;
    std::vector<char> isFinished;

    CMutex mutex;
    int count VISTORAMA_GUARDED_BY(mutex) = 0;
    std::vector<FolderCard> cards VISTORAMA_GUARDED_BY(mutex);
};

FolderPictures::State StateOf(const QString& folder)
{
    const CDescriptor directory(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.Get() >= 0) {
        return FolderPictures::State::Listed;
    }
    return errno == ENOENT || errno == ENOTDIR ? FolderPictures::State::Missing
                                               : FolderPictures::State::NotReadable;
}

} // namespace

FolderPictures FillPicturesCollection(const QString& folder, QSize card, CFolderPicturesListener& listener)
{
    const FolderPictures::State state = StateOf(folder);
    if (state != FolderPictures::State::Listed) {
        FolderPictures none;
        none.state = state;
        return none;
    }
    const std::vector<QString> paths = ListPictureFiles(WithTrailingSeparator(folder));
    CFolderWalk walk(paths, card, listener);
    walk.Run();
    return walk.Finish();
}
