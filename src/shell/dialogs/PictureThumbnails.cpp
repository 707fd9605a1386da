#include "shell/dialogs/PictureThumbnails.h"

#include <algorithm>

#include "effects/EffectGeometry.h"
#include "imaging/Image.h"
#include "imaging/pixels/DecodingStop.h"

namespace {

constexpr int RowsAhead = 100; // on either side of those on the screen
constexpr int RowsKept = 300;  // likewise; more, so that going back and forth makes none anew

// Without pixels if the file has no picture to give.
QImage MakeThumbnail(const CPictureThumbnails::Source& source, QSize box)
{
    const CImage picture = CImage::FromFile(source.path);
    if (picture.GetSize().isEmpty()) {
        return {};
    }
    const QSize room = source.quarterTurns % 2 != 0 ? box.transposed() : box;
    const QSize size =
        FitsInto(picture.GetSize(), room) ? picture.GetSize() : FittedSize(picture.GetSize(), room);
    const CImage thumbnail = picture.Resampled(size.expandedTo(QSize(1, 1))).Rotated(source.quarterTurns);
    const QByteArray bytes = thumbnail.GetRgba();
    if (bytes.isEmpty()) {
        return {};
    }
    const QSize made = thumbnail.GetSize();
    return QImage(reinterpret_cast<const uchar*>(bytes.constData()), made.width(), made.height(),
                  made.width() * 4, QImage::Format_RGBA8888)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

CPictureThumbnails::CPictureThumbnails(std::vector<Source> sources, QSize box, Listener made)
    : sources(std::move(sources)),
      box(box),
      made(std::move(made)),
      target(CEventLoopTarget<Thumbnail>::Create([this](const Thumbnail& thumbnail) { Keep(thumbnail); })),
      pool(&stop)
{}

CPictureThumbnails::~CPictureThumbnails()
{
    stop.Set();
}

void CPictureThumbnails::Show(int first, int last)
{
    ForgetFarOnes(first, last);
    const int end = std::min(last + RowsAhead + 1, static_cast<int>(sources.size()));
    const CMutexLock lock(mutex);
    firstShown = first;
    lastShown = last;
    wanted.clear();
    for (int row = std::max(0, first - RowsAhead); row < end; ++row) {
        const bool isThere = thumbnails.count(row) != 0 || underWay.count(row) != 0;
        if (!isThere && !sources[static_cast<size_t>(row)].path.isEmpty()) {
            wanted.insert(wanted.end(), row);
        }
    }
    while (workers < std::min(wanted.size(), CWorkerPool::GetUsualSize())) {
        ++workers;
        pool.Post([this] { Work(); });
    }
}

const QImage* CPictureThumbnails::Find(int row) const
{
    const auto found = thumbnails.find(row);
    return found == thumbnails.end() ? nullptr : &found->second;
}

void CPictureThumbnails::Keep(const Thumbnail& thumbnail)
{
    {
        const CMutexLock lock(mutex);
        underWay.erase(thumbnail.row);
    }
    thumbnails[thumbnail.row] = thumbnail.image;
    made(thumbnail.row);
}

void CPictureThumbnails::ForgetFarOnes(int first, int last)
{
    thumbnails.erase(thumbnails.begin(), thumbnails.lower_bound(first - RowsKept));
    thumbnails.erase(thumbnails.upper_bound(last + RowsKept), thumbnails.end());
}

void CPictureThumbnails::Work()
{
    const CDecodingStop decodingStop([this] { return stop.IsSet(); });
    while (const std::optional<int> row = TakeNearest()) {
        target->Post({*row, MakeThumbnail(sources[static_cast<size_t>(*row)], box)});
    }
}

// From the first on the screen downwards; outside of the screen the nearer one of both sides.
std::optional<int> CPictureThumbnails::TakeNearest()
{
    const CMutexLock lock(mutex);
    if (wanted.empty() || stop.IsSet()) {
        --workers;
        return std::nullopt;
    }
    auto nearest = wanted.lower_bound(firstShown);
    if (nearest == wanted.end() || (nearest != wanted.begin() && *nearest > lastShown &&
                                    firstShown - *std::prev(nearest) < *nearest - lastShown)) {
        --nearest;
    }
    const int row = *nearest;
    wanted.erase(nearest);
    underWay.insert(row);
    return row;
}
