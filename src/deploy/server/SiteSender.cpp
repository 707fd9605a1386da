#include "deploy/server/SiteSender.h"

#include <algorithm>
#include <utility>

#include <QBuffer>
#include <QDateTime>
#include <QFile>

#include "common/ProgramIdentity.h"
#include "deploy/server/ContentHash.h"
#include "ftpengine/messages/ServerWords.h"
#include "resources/StringTable.h"

namespace {

CSendTally::Setting TallyFor(const CSiteSender::Setting& setting, const SitePlan& plan)
{
    return {.totalFiles = static_cast<int32_t>(plan.sends.size()),
            .totalBytes = plan.CountBytes(),
            .onProgress = setting.onProgress,
            .now = setting.now ? setting.now : [] {
                return CSendTally::Clock::now();
            }};
}

template <class Act>
void TolerateRefusal(const Act& act)
{
    try {
        act();
    } catch (const FTPReply& reply) {
        if (IsBreak(reply)) {
            throw;
        }
    }
}

// Hashes the bytes on their way from the disk to the network.
class CHashedFile final : public QFile {
public:
    using QFile::QFile;

    int64_t GetRead() const { return read; }
    QByteArray GetHash() const { return hash.Get(); }

private:
    qint64 readData(char* bytes, qint64 most) override
    {
        const qint64 count = QFile::readData(bytes, most);
        if (count > 0) {
            hash.Add(bytes, static_cast<std::size_t>(count));
            read += count;
        }
        return count;
    }

    CContentHash hash;
    int64_t read = 0;
};

SendFailure FailureOf(SendFailure::Kind kind, const QString& path)
{
    return {.kind = kind, .path = path, .status = 0, .reply = {}, .log = {}};
}

} // namespace

CSiteSender::CSiteSender(const Setting& setting, const SitePlan& plan)
    : setting(setting),
      plan(plan),
      run(MakeRunName()),
      tally(TallyFor(setting, plan)),
      isManifestTaken(plan.isManifestThere),
      known(plan.opened)
{}

void CSiteSender::Run()
{
    if (plan.IsEmpty() && plan.isManifestCurrent && plan.temporaries.isEmpty()) {
        return;
    }
    BeginNotes();
    try {
        RunSteps();
    } catch (const SendFailure& reason) {
        // Without a connection there is no place for it, and nobody wants to wait for another one.
        if (reason.kind != SendFailure::Kind::Network && reason.kind != SendFailure::Kind::NotOpened) {
            TryToKeepManifest();
        }
        throw;
    }
}

void CSiteSender::BeginNotes()
{
    std::set<QString> stillStored;
    for (const PlannedFile& send : plan.sends) {
        if (send.isStored) {
            stillStored.insert(send.file.path);
        }
    }
    setting.journal.BeginRun(run, stillStored);
    for (const auto& [path, file] : plan.named) {
        setting.journal.NoteSent(path, file);
    }
}

void CSiteSender::RunSteps()
{
    MakeDirectories(plan.directories);
    if (!plan.sends.empty()) {
        // From here on the manifest doesn't say of any file that it is whole which may not be.
        WriteManifest();
    }
    for (size_t begin = 0; begin < plan.sends.size();) {
        size_t end = begin;
        while (end < plan.sends.size() && plan.sends[end].step == plan.sends[begin].step) {
            ++end;
        }
        SendStep(begin, end);
        begin = end;
    }
    if (setting.onTidy && plan.CountRemoved() > 0) {
        setting.onTidy();
    }
    RemoveFiles(plan.removedPages);
    // A page that the server has kept still shows its pictures.
    if (HasRemovedAll()) {
        RemoveFiles(plan.removedAssets);
    }
    RemoveTemporaries();
    RemoveEmptyDirectories();
    if (!plan.IsEmpty() || !plan.isManifestCurrent) {
        WriteManifest();
    }
    const CMutexLock lock(mutex);
    warnings += notRemoved;
}

// Level by level: servers make one at a time.
void CSiteSender::MakePlace()
{
    const QString own = setting.place.directory;
    for (qsizetype end = own.indexOf(QLatin1Char('/'), 1); end > 0;
         end = own.indexOf(QLatin1Char('/'), end + 1)) {
        // One that is there already may be out of bounds itself.
        setting.crew.Run(CSessionCrew::Job{own, [above = own.left(end)](CRemoteSession& session) {
                                               TolerateRefusal([&] { session.MakeDirectory(above); });
                                           }});
    }
    if (!own.isEmpty() && !own.endsWith(QLatin1Char('/'))) {
        setting.crew.Run(CSessionCrew::Job{own, [own](CRemoteSession& session) {
                                               session.MakeDirectory(own);
                                           }});
    }
}

// Those of one level at once, since the one above has to be there.
void CSiteSender::MakeDirectories(const QStringList& directories)
{
    if (directories.contains(QString())) {
        MakePlace();
    }
    std::map<qsizetype, std::vector<CSessionCrew::Job>> levels;
    for (const QString& directory : directories) {
        if (!directory.isEmpty()) {
            levels[directory.count(QLatin1Char('/'))].push_back(
                {directory, [path = setting.place.PathOf(directory)](CRemoteSession& session) {
                     session.MakeDirectory(path);
                 }});
        }
    }
    for (auto& [level, jobs] : levels) {
        setting.crew.Run(std::move(jobs));
    }
}

void CSiteSender::SendStep(size_t begin, size_t end)
{
    std::vector<CSessionCrew::Job> jobs;
    for (size_t i = begin; i < end; ++i) {
        const auto sending = std::make_shared<Sending>(Sending{plan.sends[i], false, 0});
        jobs.push_back({sending->planned.file.path, [this, sending](CRemoteSession& session) {
                            SendFile(session, *sending);
                        }});
    }
    setting.crew.Run(std::move(jobs));
}

void CSiteSender::SendFile(CRemoteSession& session, Sending& sending)
{
    if (!sending.mayHaveName || !HasName(session, sending)) {
        if (!sending.planned.isStored) {
            Store(session, sending);
        }
        GiveName(session, sending);
    }
    NoteSent(sending.planned.file);
}

// Brings the file to the server under its temporary name.
void CSiteSender::Store(CRemoteSession& session, Sending& sending)
{
    const LocalFile& file = sending.planned.file;
    if (setting.journal.IsStored(file.path)) {
        setting.journal.NoteUnstored(file.path);
    }
    SendBytes(session, sending);
    setting.journal.NoteStored(file.path, {file.size, file.hash});
    sending.planned.isStored = true;
}

void CSiteSender::SendBytes(CRemoteSession& session, Sending& sending)
{
    LocalFile& file = sending.planned.file;
    CHashedFile source(file.source);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || source.size() != file.size) {
        throw FailureOf(SendFailure::Kind::LocalFile, source.fileName());
    }
    // Those of a try before.
    tally.TakeBack(std::exchange(sending.counted, 0));
    const QString temporary = TemporaryPathFor(setting.journal.GetSender(), file.path);
    session.Send(source, setting.place.PathOf(temporary), [&](int64_t bytes) {
        sending.counted += bytes;
        tally.AddBytes(file.path, bytes);
    });
    if (source.GetRead() != file.size) {
        throw FailureOf(SendFailure::Kind::LocalFile, source.fileName());
    }
    // What has arrived is known by what was read, whatever happens to the file.
    file.hash = source.GetHash();
}

void CSiteSender::GiveName(CRemoteSession& session, Sending& sending)
{
    const QString path = sending.planned.file.path;
    const QString temporary = TemporaryPathFor(setting.journal.GetSender(), path);
    sending.mayHaveName = true;
    try {
        session.Rename(setting.place.PathOf(temporary), setting.place.PathOf(path));
    } catch (const FTPReply&) {
        sending.mayHaveName = false;
        throw;
    }
}

// After a connection that broke while the file was renamed: it has its name if the temporary one is gone.
bool CSiteSender::HasName(CRemoteSession& session, Sending& sending)
{
    const LocalFile& file = sending.planned.file;
    const QString temporary = NameOf(TemporaryPathFor(setting.journal.GetSender(), file.path));
    bool isAtName = false;
    sending.planned.isStored = false;
    for (const RemoteEntry& entry : session.List(setting.place.PathOf(DirectoryOf(file.path)))) {
        const bool isWhole = !entry.isDirectory && entry.size.value_or(file.size) == file.size;
        sending.planned.isStored = sending.planned.isStored || (isWhole && entry.name == temporary);
        isAtName = isAtName || (isWhole && entry.name == NameOf(file.path));
    }
    sending.mayHaveName = false;
    return !sending.planned.isStored && isAtName;
}

std::map<QString, QByteArray> CSiteSender::GetSentHashes() const
{
    const CMutexLock lock(mutex);
    std::map<QString, QByteArray> hashes;
    for (const PlannedFile& send : plan.sends) {
        const auto sent = known.find(send.file.path);
        if (sent != known.end() && sent->second.IsWhole()) {
            hashes[send.file.path] = sent->second.hash;
        }
    }
    return hashes;
}

void CSiteSender::NoteSent(const LocalFile& file)
{
    ManifestFile noted{.size = file.size,
                       .hash = file.hash,
                       .isSeen = false,
                       .time = QDateTime::currentSecsSinceEpoch(),
                       .rest = {}};
    setting.journal.NoteSent(file.path, noted);
    {
        const CMutexLock lock(mutex);
        noted.rest = known[file.path].rest;
        known[file.path] = noted;
    }
    tally.AddFile(file.path);
}

void CSiteSender::RemoveFiles(const QStringList& paths)
{
    std::vector<CSessionCrew::Job> jobs;
    for (const QString& path : paths) {
        jobs.push_back({path, [this, path](CRemoteSession& session) {
                            RemoveFile(session, path);
                        }});
    }
    setting.crew.Run(std::move(jobs));
}

// What the server doesn't let go of stays listed, for the next run: the site is complete without that.
void CSiteSender::RemoveFile(CRemoteSession& session, const QString& path)
{
    try {
        session.RemoveFile(setting.place.PathOf(path));
    } catch (const FTPReply& reply) {
        if (IsBreak(reply)) {
            throw;
        }
        if (IsThere(session, path)) {
            const CMutexLock lock(mutex);
            notRemoved += Text(StringId::LeftoverNotRemoved, path, CleanServerWords(reply.text));
            return;
        }
    }
    setting.journal.NoteRemoved(path);
    const CMutexLock lock(mutex);
    known.erase(path);
    removed.insert(path);
}

bool CSiteSender::HasRemovedAll()
{
    const CMutexLock lock(mutex);
    return notRemoved.isEmpty();
}

bool CSiteSender::IsThere(CRemoteSession& session, const QString& path) const
{
    const std::vector<RemoteEntry> entries = session.List(setting.place.PathOf(DirectoryOf(path)));
    return std::any_of(entries.begin(), entries.end(),
                       [name = NameOf(path)](const RemoteEntry& entry) { return entry.name == name; });
}

void CSiteSender::RemoveTemporaries()
{
    std::vector<CSessionCrew::Job> jobs;
    for (const QString& path : plan.temporaries) {
        jobs.push_back({path, [serverPath = setting.place.PathOf(path)](CRemoteSession& session) {
                            // It may have got its name in this run.
                            TolerateRefusal([&] { session.RemoveFile(serverPath); });
                        }});
    }
    setting.crew.Run(std::move(jobs));
}

// Those that the removed files have left. The server refuses what isn't empty.
void CSiteSender::RemoveEmptyDirectories()
{
    std::set<QString, std::greater<>> emptied; // those below come before those above
    {
        const CMutexLock lock(mutex);
        for (const QString& path : removed) {
            for (QString above = DirectoryOf(path); !above.isEmpty(); above = DirectoryOf(above)) {
                emptied.insert(above);
            }
        }
        for (const auto& [path, file] : known) {
            for (QString above = DirectoryOf(path); !above.isEmpty(); above = DirectoryOf(above)) {
                emptied.erase(above);
            }
        }
    }
    for (const QString& directory : emptied) {
        setting.crew.Run(
            CSessionCrew::Job{directory, [path = setting.place.PathOf(directory)](CRemoteSession& session) {
                                  TolerateRefusal([&] { session.RemoveDirectory(path); });
                              }});
    }
}

void CSiteSender::WriteManifest()
{
    SiteManifest manifest{.program = GetProgramVersion(),
                          .project = setting.projectKey,
                          .run = run,
                          .files = {},
                          .rest = plan.manifestRest};
    {
        const CMutexLock lock(mutex);
        manifest.files = known;
    }
    bool isTaken = false;
    const QByteArray bytes = manifest.Format();
    setting.crew.Run(CSessionCrew::Job{ManifestFolder, [&](CRemoteSession& session) {
                                           isTaken = PutManifest(session, bytes);
                                       }});
    setting.journal.NoteManifest(manifest, isTaken);
}

// False if the server doesn't take it; some take no names that begin with ".".
bool CSiteSender::PutManifest(CRemoteSession& session, const QByteArray& bytes)
{
    const QString path = ManifestPathFor(setting.projectKey);
    const QString temporary = TemporaryPathFor(setting.journal.GetSender(), path);
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    try {
        if (!isManifestTaken) {
            session.MakeDirectory(setting.place.PathOf(ManifestFolder));
        }
        session.Send(source, setting.place.PathOf(temporary), {});
        session.Rename(setting.place.PathOf(temporary), setting.place.PathOf(path));
    } catch (const FTPReply& reply) {
        // A full server is no reason to go on without one.
        if (IsBreak(reply) || reply.code == RefusalCode::Incomplete || isManifestTaken) {
            throw;
        }
        return false;
    }
    isManifestTaken = true;
    return true;
}

// So that another computer knows, too, what has arrived. This one has its journal.
void CSiteSender::TryToKeepManifest()
{
    try {
        if (!plan.sends.empty()) {
            WriteManifest();
        }
    } catch (const SendFailure&) {
    } catch (const SendCancelled&) {
    }
}
