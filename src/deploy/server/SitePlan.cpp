#include "deploy/server/SitePlan.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "deploy/server/SiteNames.h"

namespace {

// Temporary files of other computers go when nobody can be at work with them any more. The server's clock may
// be of another time zone.
constexpr int64_t abandonedAge = 2 * 24 * 60 * 60; // seconds

SiteStep StepOf(const QString& path, bool isNew)
{
    switch (KindOfSiteFile(path)) {
    case SiteFileKind::Asset:
        return isNew ? SiteStep::NewAssets : SiteStep::ChangedAssets;
    case SiteFileKind::Page:
        return isNew ? SiteStep::NewPages : SiteStep::ChangedPages;
    case SiteFileKind::Entry:
        break;
    }
    if (DirectoryOf(path).isEmpty()) {
        return SiteStep::Front;
    }
    return isNew ? SiteStep::NewEntries : SiteStep::ChangedEntries;
}

class CPlanner final {
public:
    explicit CPlanner(const PlanInput& input) : input(input) {}

    SitePlan Make()
    {
        for (const LocalFile& file : input.local) {
            PlanFile(file);
        }
        if (input.remote.manifest) {
            PlanRemovals();
            plan.manifestRest = input.remote.manifest->rest;
        }
        PlanTemporaries();
        PlanDirectories();
        std::sort(plan.sends.begin(), plan.sends.end(), [](const PlannedFile& a, const PlannedFile& b) {
            return std::tie(a.step, a.file.path) < std::tie(b.step, b.file.path);
        });
        plan.isManifestThere = input.remote.isManifestThere;
        plan.isManifestCurrent = IsManifestCurrent();
        return std::move(plan);
    }

private:
    const RemoteFile* FindRemote(const QString& path) const
    {
        const auto found = input.remote.files.find(path);
        return found == input.remote.files.end() ? nullptr : &found->second;
    }

    const ManifestFile* FindListed(const QString& path) const
    {
        if (!input.remote.manifest) {
            return nullptr;
        }
        const auto found = input.remote.manifest->files.find(path);
        return found == input.remote.manifest->files.end() ? nullptr : &found->second;
    }

    // The server still has what the manifest says. A server that doesn't tell a size or time is believed.
    // What was sent after the manifest is younger in any case.
    bool IsAsListed(const QString& path, const ManifestFile& listed, const RemoteFile& remote) const
    {
        const bool isChangedLater = remote.modified && input.remote.manifestTime &&
                                    *remote.modified > *input.remote.manifestTime &&
                                    !input.remote.amended.contains(path);
        return remote.size.value_or(listed.size) == listed.size && !isChangedLater;
    }

    void PlanFile(const LocalFile& file)
    {
        const RemoteFile* const remote = FindRemote(file.path);
        const ManifestFile* const listed = FindListed(file.path);
        if (listed && listed->IsWhole() && remote && IsAsListed(file.path, *listed, *remote) &&
            listed->hash == file.hash && listed->size == file.size) {
            Keep(file.path, *listed);
            return;
        }
        if (listed && remote && HasGotItsName(file, *listed, *remote)) {
            const ManifestFile named{.size = file.size,
                                     .hash = file.hash,
                                     .isSeen = false,
                                     .time = remote->modified.value_or(0),
                                     .rest = listed->rest};
            plan.named[file.path] = named;
            Keep(file.path, named);
            return;
        }
        const bool isFormerWork =
            !input.remote.isManifestThere && !listed && remote && remote->size == file.size;
        if (isFormerWork && KindOfSiteFile(file.path) == SiteFileKind::Asset) {
            Keep(file.path, {.size = file.size,
                             .hash = file.hash,
                             .isSeen = false,
                             .time = remote->modified.value_or(0),
                             .rest = {}});
            return;
        }
        if (remote && !listed && !isFormerWork) {
            plan.strangers += file.path;
        }
        Send(file, remote == nullptr);
    }

    // It had come to the server, was under way when the program was ended, and its temporary name is gone.
    // What is there under its own name came after the manifest that tells of its being under way.
    bool HasGotItsName(const LocalFile& file, const ManifestFile& listed, const RemoteFile& remote) const
    {
        const auto stored = input.stored.find(file.path);
        const bool isYoung =
            !remote.modified || !input.remote.manifestTime || *remote.modified >= *input.remote.manifestTime;
        return input.remote.isLastOurs && !listed.IsWhole() && stored != input.stored.end() &&
               stored->second.hash == file.hash && remote.size == file.size && isYoung &&
               !FindRemote(TemporaryPathFor(input.sender, file.path));
    }

    void Keep(const QString& path, const ManifestFile& listed)
    {
        plan.opened[path] = listed;
        ++plan.unchanged;
    }

    void Send(const LocalFile& file, bool isNew)
    {
        const auto stored = input.stored.find(file.path);
        const RemoteFile* const temporary = FindRemote(TemporaryPathFor(input.sender, file.path));
        const bool isStored = stored != input.stored.end() && stored->second.hash == file.hash && temporary &&
                              temporary->size == file.size;
        const ManifestFile* const listed = FindListed(file.path);
        // Pages lead to what somebody has removed: whatever that leads to has to be there first.
        const bool isSeen = !isNew || (listed && (listed->IsWhole() || listed->isSeen));
        plan.sends.push_back({file, StepOf(file.path, !isSeen), isNew, isStored});
        plan.opened[file.path] = {.size = file.size,
                                  .hash = {},
                                  .isSeen = isSeen,
                                  .time = 0,
                                  .rest = listed ? listed->rest : QJsonObject()};
    }

    // What somebody has put in the place of a file of ours is his.
    void PlanRemovals()
    {
        for (const auto& [path, listed] : input.remote.manifest->files) {
            const RemoteFile* const remote = FindRemote(path);
            const bool isOurs = remote && (!listed.IsWhole() || IsAsListed(path, listed, *remote));
            if (plan.opened.contains(path) || !isOurs) {
                continue;
            }
            plan.opened[path] = listed;
            if (input.removeLeftovers) {
                (KindOfSiteFile(path) == SiteFileKind::Asset ? plan.removedAssets : plan.removedPages) +=
                    path;
            }
        }
    }

    void PlanTemporaries()
    {
        std::set<QString> needed;
        for (const PlannedFile& send : plan.sends) {
            if (send.isStored) {
                needed.insert(TemporaryPathFor(input.sender, send.file.path));
            }
        }
        for (const auto& [path, remote] : input.remote.files) {
            const QString sender = SenderOfTemporary(path);
            const bool isAbandoned = remote.modified && input.now - *remote.modified > abandonedAge;
            if (!sender.isEmpty() && (sender == input.sender || isAbandoned) && !needed.contains(path)) {
                plan.temporaries += path;
            }
        }
    }

    void PlanDirectories()
    {
        std::vector<LocalFile> files;
        for (const PlannedFile& send : plan.sends) {
            files.push_back(send.file);
        }
        // Upper ones come before those below: they are the beginnings of their paths.
        for (const QString& directory : DirectoriesOf(files, {})) {
            if (!files.empty() && !input.remote.directories.contains(directory)) {
                plan.directories += directory;
            }
        }
    }

    bool IsManifestCurrent() const
    {
        const auto isSame = [](const auto& a, const auto& b) {
            return a.first == b.first && a.second.size == b.second.size && a.second.hash == b.second.hash;
        };
        return input.remote.isManifestThere && input.remote.amended.empty() && plan.IsEmpty() &&
               std::equal(plan.opened.begin(), plan.opened.end(), input.remote.manifest->files.begin(),
                          input.remote.manifest->files.end(), isSame);
    }

    const PlanInput& input;
    SitePlan plan;
};

} // namespace

int32_t SitePlan::CountNew() const
{
    return static_cast<int32_t>(
        std::count_if(sends.begin(), sends.end(), [](const PlannedFile& send) { return send.isNew; }));
}

int64_t SitePlan::CountBytes() const
{
    return std::accumulate(
        sends.begin(), sends.end(), int64_t{0},
        [](int64_t bytes, const PlannedFile& send) { return bytes + (send.isStored ? 0 : send.file.size); });
}

bool NeedsHash(const LocalFile& file, const RemoteSite& remote, const QString& sender)
{
    const auto isCandidate = [&](const QString& path) {
        const auto found = remote.files.find(path);
        return found != remote.files.end() && found->second.size.value_or(file.size) == file.size;
    };
    return isCandidate(file.path) || isCandidate(TemporaryPathFor(sender, file.path));
}

SitePlan MakeSitePlan(const PlanInput& input)
{
    return CPlanner(input).Make();
}

std::set<QString> DirectoriesOf(const std::vector<LocalFile>& local, const ManifestFiles& listed)
{
    std::set<QString> directories{QString()};
    const auto add = [&directories](const QString& path) {
        for (QString above = DirectoryOf(path); directories.insert(above).second;) {
            above = DirectoryOf(above);
        }
    };
    for (const LocalFile& file : local) {
        add(file.path);
    }
    for (const auto& [path, file] : listed) {
        add(path);
    }
    return directories;
}
