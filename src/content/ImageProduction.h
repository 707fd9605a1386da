#pragma once

#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "common/ThreadSafety.h"
#include "common/WorkerPool.h"
#include "content/DeploymentRecord.h"
#include "content/ImageRequest.h"

class CStopSignal;

// Makes the images that the pages of a run ask for. The walk asks page by page; what one gallery has asked
// for is then grouped by source picture and made by one worker per core: each source is opened once and
// decoded once for all its sizes. The files are as if each had been made in the order of asking: where two
// requests go to one file, the last one wins.
//
// Begin, Ask, End, Start and Finish are called on the generation thread. Memory grows with the count of
// requests by their names alone; pictures are held only by the workers, one each.
class CImageProduction final : public CImageOrders {
public:
    // Called when a page's file and all its images are written, one call at a time, on any thread of the run.
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void OnPageDone() = 0;
    };

    // All are borrowed and outlive this object. A failure sets stop, so that the walk ends too. record:
    // images that it knows to come out the same are not made again, but count as made; may be null.
    CImageProduction(Listener& listener, CStopSignal& stop, CDeploymentRecord* record = nullptr);
    // Waits for the workers, which begin no further source.
    ~CImageProduction() = default;
    CImageProduction(const CImageProduction&) = delete;
    CImageProduction& operator=(const CImageProduction&) = delete;

    // All requests between the two belong to one page.
    void BeginPage();
    void Ask(const ImageRequest& request) override;
    void EndPage();

    // Hands all that has been asked for since the last call to the workers.
    void StartAsked();
    // Starts what is left and waits for the workers. Rethrows the first failure of a worker.
    void Finish();
    // What a worker failed with first; null if none did.
    std::exception_ptr GetFailure() const { return workers.GetFailure(); }

    int GetImageCount() const;
    // One text for each source that was published in part, in the order of asking.
    QStringList GetWarnings() const;

private:
    using Origin = CDeploymentRecord::Origin;
    struct Page {
        int open = 1; // the page's own file, plus its images that are not made yet; under the mutex only
    };
    struct Image {
        ImageRequest request;
        std::vector<std::shared_ptr<Page>> pages;
    };
    struct Source {
        QString path;
        size_t number = 0; // in the order of asking
        std::vector<Image> images;
    };

    void MakeNext();
    Source TakeNext();
    void MakeAll(const Source& source);
    // Those that have to be made; the others are done with.
    std::vector<const Image*> FindOutdated(const Source& source, const std::optional<Origin>& origin);
    void FinishImage(const Source& source, const Image& image, bool isWhole);
    void CloseOne(Page& page) VISTORAMA_REQUIRES(mutex);

    // Constant after construction.
    Listener& listener;
    CStopSignal& stop;
    CDeploymentRecord* const record;

    // Generation thread only.
    std::vector<Image> asked;
    std::map<QString, size_t> askedByResult; // position in asked
    std::shared_ptr<Page> currentPage;
    size_t sourceCount = 0;

    mutable CMutex mutex;
    std::deque<Source> waiting VISTORAMA_GUARDED_BY(mutex); // one for each work that is posted
    bool finishing VISTORAMA_GUARDED_BY(mutex) = false;
    int imageCount VISTORAMA_GUARDED_BY(mutex) = 0;
    std::map<size_t, QString> warnings VISTORAMA_GUARDED_BY(mutex); // by number of the source

    CWorkerPool workers; // goes first
};
