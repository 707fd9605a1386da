#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <QSize>
#include <QString>

#include "common/MessageTarget.h"
#include "common/WorkerPool.h"
#include "document/cover/CoverComposition.h"

class CGallery;
class CCoverCache;
class CGalleryProject;

// Makes the pictures of the galleries view: covers scaled into their cells, on threads of its own, so that no
// photograph is decoded on the screen's thread. Owned by the view and used on the screen's thread, where it
// reads the document only while it is called or a file has come.
class CGalleryCovers final {
public:
    // A picture is there; isChanged: with other bytes than before. Neither is called from inside Order.
    struct Listener {
        std::function<void(int32_t gallery, bool isChanged)> arrived;
        std::function<void()> finished; // all that could be made has come
    };
    explicit CGalleryCovers(Listener listener);

    // The galleries whose pictures are wanted from now on, each in that box. Covers that are not made yet
    // are, and every picture is written anew, even if it is there. The project is borrowed until the next
    // order or Stop; what has been ordered before and has not begun is dropped.
    void Order(CGalleryProject& project, const std::vector<int32_t>& galleries, QSize box);
    // No file comes from now on, and the document is not looked at, until the next order.
    void Stop();

    // Where the picture is, or will be.
    static QString GetPath(CGallery& gallery, QSize box);
    // Whether the picture is there and shows what the cover shows at the moment.
    bool IsReady(CGallery& gallery, QSize box) const;
    bool IsFinished() const { return wanted.empty(); }

private:
    struct Work {
        int order = 0;
        int32_t gallery = 0;
        int64_t revision = 0;
        QString path;                       // to be written
        std::vector<CoverPicture> pictures; // of a cover
        CCoverCache* cache = nullptr;       // for a cover; the project's, which outlives the workers
        QString cover;                      // to be scaled; empty: a cover is to be made
        QSize box;
    };
    struct Result {
        Work work;
        QByteArray key{}; // of a cover, for later runs; see CCoverCache::MakeCover
        bool isDone = false;
        bool isChanged = false;
    };
    using Key = std::pair<int32_t, bool>; // gallery, and whether its cover is scaled

    void Continue();
    bool Begin(CGallery& gallery);
    void Post(Work work);
    void OnResult(const Result& result);
    void OnScaled(CGallery& gallery, const Result& result);
    static Result Perform(const Work& work);

    const Listener listener;
    CGalleryProject* project = nullptr; // null while stopped
    QSize box;
    std::set<int32_t> wanted;             // that have not come yet
    std::set<Key> begun;                  // posted and not back
    std::set<int32_t> failed;             // covers that can't be made, in this order
    std::map<QString, int64_t> revisions; // of the pictures, by path
    int64_t fileCount = 0;
    // Shared with the work: of the order that counts.
    const std::shared_ptr<std::atomic<int>> order = std::make_shared<std::atomic<int>>(0);
    std::shared_ptr<CEventLoopTarget<Result>> target;
    CWorkerPool workers; // goes first
};
