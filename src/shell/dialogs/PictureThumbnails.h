#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <QImage>
#include <QSize>
#include <QString>

#include "common/MessageTarget.h"
#include "common/StopSignal.h"
#include "common/ThreadSafety.h"
#include "common/WorkerPool.h"

// Thumbnails of the picture files of a list, made on threads of their own: those of the rows on the screen
// first, then those around them. Only these are kept, so that memory doesn't grow with the list. Owned by the
// model of the list; called on the screen's thread.
class CPictureThumbnails final {
public:
    struct Source {
        QString path;         // empty: no thumbnail is made
        int quarterTurns = 0; // clockwise
    };
    using Listener = std::function<void(int row)>;

    // box: in pixels of the screen, which a thumbnail fits. made: called on the screen's thread.
    CPictureThumbnails(std::vector<Source> sources, QSize box, Listener made);
    // Ends what is being decoded at its next rows.
    ~CPictureThumbnails();

    // The rows on the screen, from 0.
    void Show(int first, int last);

    // Null if it isn't made yet, or not any more; an image without pixels for a picture that can't be shown.
    const QImage* Find(int row) const;

private:
    struct Thumbnail {
        int row = 0;
        QImage image;
    };

    void Keep(const Thumbnail& thumbnail);
    void ForgetFarOnes(int first, int last);
    // On the threads of the pool.
    void Work();
    std::optional<int> TakeNearest();

    // Constant after construction.
    const std::vector<Source> sources;
    const QSize box;
    const Listener made;
    std::shared_ptr<CEventLoopTarget<Thumbnail>> target;

    std::map<int, QImage> thumbnails; // by row; of the screen's thread

    CMutex mutex;
    std::set<int> wanted VISTORAMA_GUARDED_BY(mutex);
    std::set<int> underWay VISTORAMA_GUARDED_BY(mutex); // taken by a worker and not kept yet
    int firstShown VISTORAMA_GUARDED_BY(mutex) = 0;
    int lastShown VISTORAMA_GUARDED_BY(mutex) = 0;
    size_t workers VISTORAMA_GUARDED_BY(mutex) = 0; // that still take rows

    CStopSignal stop;
    CWorkerPool pool; // goes first
};
