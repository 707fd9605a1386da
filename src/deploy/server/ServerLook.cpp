#include "deploy/server/ServerLook.h"

#include "common/ThreadSafety.h"
#include "deploy/server/SiteJournal.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

constexpr int64_t largestManifest = 64 * 1024 * 1024; // bytes; some hundred thousand files

// "Not there, or not allowed": a directory of which nothing is known.
bool IsMissing(const FTPReply& reply)
{
    return reply.code == 550 || reply.code == 450;
}

class CLooker final {
public:
    CLooker(CSessionCrew& crew, const ServerLook& look) : crew(crew), look(look) {}

    RemoteSite Look(const CSiteJournal& journal)
    {
        ReadManifest();
        RemoteSite found;
        found.manifest = SiteManifest::Parse(manifestBytes.value_or(QByteArray()));
        found.isManifestThere = found.manifest.has_value();
        if (found.manifest) {
            found.amended = journal.Amend(*found.manifest);
            found.isLastOurs = journal.Follows(found.manifest->run);
        } else {
            found.manifest = journal.FindSubstitute();
            found.isLastOurs = journal.IsOnlyRecord();
        }
        ListAll(found.manifest ? found.manifest->files : ManifestFiles());
        const CMutexLock lock(mutex);
        found.files = std::move(files);
        found.directories = std::move(directories);
        const auto manifest = found.files.find(ManifestPathFor(look.projectKey));
        if (manifest != found.files.end() && found.isManifestThere) {
            found.manifestTime = manifest->second.modified;
        }
        return found;
    }

private:
    void ReadManifest()
    {
        const QString path = ManifestPathFor(look.projectKey);
        bool isTooLong = false;
        crew.Run(CSessionCrew::Job{path, [this, path, &isTooLong](CRemoteSession& session) {
                                       if (isTooLong) {
                                           return;
                                       }
                                       try {
                                           manifestBytes =
                                               session.Read(look.place.PathOf(path), largestManifest);
                                       } catch (int status) {
                                           isTooLong = status == EngineStatus::MessageTooLong;
                                           throw;
                                       } catch (const FTPReply& reply) {
                                           if (!IsMissing(reply)) {
                                               throw;
                                           }
                                       }
                                   }});
    }

    // Level by level: what the listing above doesn't show isn't asked for. Where the manifest has files,
    // something is to be expected, whatever the listing above shows.
    void ListAll(const ManifestFiles& listed)
    {
        const std::set<QString> wanted = DirectoriesOf(look.local, listed);
        std::set<QString> next = DirectoriesOf({}, listed);
        if (manifestBytes) {
            next.insert(ManifestFolder);
        }
        std::set<QString> asked;
        while (!next.empty()) {
            std::vector<CSessionCrew::Job> jobs;
            for (const QString& directory : next) {
                asked.insert(directory);
                jobs.push_back({directory, [this, directory](CRemoteSession& session) {
                                    List(session, directory);
                                }});
            }
            crew.Run(std::move(jobs));
            const CMutexLock lock(mutex);
            next.clear();
            for (const QString& directory : wanted) {
                if (directories.contains(directory) && !asked.contains(directory)) {
                    next.insert(directory);
                }
            }
        }
    }

    void List(CRemoteSession& session, const QString& directory)
    {
        std::vector<RemoteEntry> entries;
        try {
            entries = session.List(look.place.PathOf(directory));
        } catch (const FTPReply& reply) {
            if (!IsMissing(reply)) {
                throw;
            }
            const CMutexLock lock(mutex);
            directories.erase(directory);
            return;
        }
        const CMutexLock lock(mutex);
        // Some servers list a directory that isn't there as one without entries.
        if (!entries.empty()) {
            directories.insert(directory);
        }
        for (const RemoteEntry& entry : entries) {
            const QString path = directory.isEmpty() ? entry.name : directory + QLatin1Char('/') + entry.name;
            if (entry.isDirectory) {
                directories.insert(path);
            } else {
                files[path] = {entry.size, entry.modified};
            }
        }
    }

    CSessionCrew& crew;
    const ServerLook& look;
    std::optional<QByteArray> manifestBytes;

    CMutex mutex;
    std::map<QString, RemoteFile> files VISTORAMA_GUARDED_BY(mutex);
    std::set<QString> directories VISTORAMA_GUARDED_BY(mutex);
};

} // namespace

RemoteSite LookAtServer(CSessionCrew& crew, const ServerLook& look, const CSiteJournal& journal)
{
    return CLooker(crew, look).Look(journal);
}
