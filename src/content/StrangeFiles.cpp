#include "content/StrangeFiles.h"

#include <set>

#include "common/DirectoryProcessor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "content/ContentGeneratorFolder.h"
#include "content/DeploymentRecord.h"
#include "content/GalleryWalk.h"
#include "content/ImageRequest.h"
#include "content/PageGeneration.h"
#include "content/PagesGenerator.h"
#include "document/project/GalleryProject.h"

namespace {

// Stops at the first file that the record doesn't list.
class CUnlistedFileSearch final : public CDirectoryProcessor {
public:
    explicit CUnlistedFileSearch(const CDeploymentRecord& record) : record(record) {}

    bool HasFound() const { return hasFound; }

    Answer OnEnterDirectory(const QString&, const DirectoryEntry&) override
    {
        return hasFound ? Answer::Stop : Answer::Continue;
    }
    Answer OnFile(const QString& path, const DirectoryEntry&) override
    {
        hasFound = hasFound || !record.IsListed(path);
        return hasFound ? Answer::Stop : Answer::Continue;
    }

private:
    const CDeploymentRecord& record;
    bool hasFound = false;
};

// Notes where the images of a run would go.
class COrderedPaths final : public CImageOrders {
public:
    void Ask(const ImageRequest& request) override { paths += request.resultPath; }

    QStringList paths;
};

class CStrangeFileLister final : public CPagesMaker {
public:
    struct Run {
        const QString& targetFolder;
        CContentGeneratorFolder& generator;
        const CStopSignal& stop;
        const CDeploymentRecord& record;
        COrderedPaths& images;
    };
    explicit CStrangeFileLister(const Run& run)
        : CPagesMaker({run.targetFolder, run.generator, run.stop}), run(run)
    {}

    const QStringList& GetFiles() const { return files; }

protected:
    void TakeStyle(const QString& directory, const QString& copy) override
    {
        for (const FileCopy& file : ListCopies(directory, copy)) {
            if (IsStrange(file.copy) && !IsFileOf(file.copy, ReadWholeFile(file.source))) {
                Add(file.copy);
            }
        }
    }
    void TakePage(const QString& path, const QByteArray& page) override
    {
        if (IsStrange(path) && !IsFileOf(path, page)) {
            Add(path);
        }
        for (const QString& image : std::exchange(run.images.paths, {})) {
            if (IsStrange(image)) {
                Add(image);
            }
        }
    }

private:
    bool IsStrange(const QString& path) const { return FileExists(path) && !run.record.IsListed(path); }
    void Add(const QString& path)
    {
        if (known.insert(path).second) {
            files += path;
        }
    }

    const Run run;
    QStringList files;
    std::set<QString> known;
};

} // namespace

QStringList FindStrangeFiles(CGalleryProject& project, const GenerationTarget& target,
                             const CStopSignal& stop)
{
    CUnlistedFileSearch unlisted(*target.record);
    ProcessDirectory(target.folder, unlisted);
    if (!unlisted.HasFound()) {
        return {};
    }
    COrderedPaths images;
    CContentGeneratorFolder generator(
        {.targetFolder = target.folder, .bannerServer = project.GetBannerServer(), .makesFolders = false},
        images);
    CGalleryWalk walk(project, generator, stop);
    CStrangeFileLister lister({target.folder, generator, stop, *target.record, images});
    walk.Run(lister);
    return lister.GetFiles();
}
