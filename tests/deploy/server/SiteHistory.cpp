#include "SiteHistory.h"

#include <algorithm>
#include <cstdio>

#include <QFile>
#include <QRegularExpression>

#include "deploy/server/ContentHash.h"
#include "deploy/server/ServerLook.h"
#include "deploy/server/SiteJournal.h"
#include "deploy/server/SiteSender.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

const QString ProjectKey = QStringLiteral("0123456789abcdef0123456789abcdef");
const QString Front = QStringLiteral("index.html");

bool IsPage(const QString& path)
{
    return path.endsWith(QStringLiteral(".html"));
}

bool IsOwnName(const QString& path)
{
    return !path.startsWith(ManifestFolder) && SenderOfTemporary(path).isEmpty();
}

// Of a page or an asset of this site, complete.
bool IsWhole(const QString& path, const QByteArray& bytes)
{
    return bytes.startsWith(path.toUtf8() + '\n') && bytes.endsWith("\nEND");
}

QStringList LinksOf(const QString& page, const QByteArray& bytes)
{
    static const QRegularExpression form(QStringLiteral("^L:(.*)$"), QRegularExpression::MultilineOption);
    QStringList links;
    auto found = form.globalMatch(QString::fromUtf8(bytes));
    const QString directory = DirectoryOf(page);
    while (found.hasNext()) {
        const QString link = found.next().captured(1);
        links += link.startsWith(QLatin1Char('/')) ? link.mid(1)
                 : directory.isEmpty()             ? link
                                                   : directory + QLatin1Char('/') + link;
    }
    return links;
}

} // namespace

CSiteHistory::CSiteHistory(const Options& options)
    : options(options), random(options.seed), faultRandom(options.seed + 1)
{
    server.mostSessions = Chance(25) ? 1 : 100;
    server.tellsSizes = !Chance(15);
    server.tellsTimes = !Chance(15);
    server.takesDotNames = !Chance(10);
    server.renamesOver = !Chance(10);
    server.onOperation = [this](const CMemoryServer::Operation& operation) {
        return FaultFor(operation);
    };
    server.onChange = [this] {
        LookAsVisitor();
    };
    server.onNamed = [this](const QString& oldPath, const QString& newPath) {
        OnNamed(oldPath, newPath);
    };
    server.onLost = [this](const QString& path) {
        tampered.insert(path);
    };
    server.onSend = [this](const QString& path, const QByteArray& bytes) {
        OnSend(path, bytes);
    };
    server.onConfirmed = [this](const QString& path) {
        confirmed[path] = server.files[path].bytes;
    };
    for (int i = 0; i < 3; ++i) {
        pictures[i] = 1;
    }
    WriteSite();
}

std::string CSiteHistory::Tell(int steps)
{
    for (int step = 0; step < steps && failure.empty(); ++step) {
        if (options.isTold) {
            std::printf("%s\n", told.c_str());
        }
        switch (Random(8)) {
        case 0:
        case 1:
            Edit();
            break;
        case 2:
            Tamper();
            break;
        case 3:
            GoToAnotherComputer();
            break;
        case 4:
            AddStranger();
            break;
        case 5:
            LoseManifest();
            break;
        default:
            DeployWithTrouble();
            break;
        }
    }
    if (failure.empty()) {
        DeployUntilDone();
        CheckTree();
    }
    return failure;
}

void CSiteHistory::Edit()
{
    told += "edit ";
    isEdited = true;
    std::map<int, int>& list = Chance(60) ? pictures : gallery;
    const int number = Random(7);
    switch (Random(5)) {
    case 0:
        list.erase(number);
        break;
    case 1:
        ++styleVersion;
        break;
    case 2:
        ++textVersion;
        break;
    default:
        ++list[number];
        break;
    }
    WriteSite();
}

QByteArray CSiteHistory::PageOf(const QString& path, const QStringList& links) const
{
    QByteArray bytes = path.toUtf8() + "\ntext " + QByteArray::number(textVersion) + '\n';
    for (const QString& link : links) {
        bytes += "L:" + link.toUtf8() + '\n';
    }
    return bytes + "\nEND";
}

QByteArray CSiteHistory::AssetOf(const QString& path, int version) const
{
    // Of another size with each version, as pictures are.
    return path.toUtf8() + '\n' + QByteArray(40 + version, 'x') + "\nEND";
}

// A front page, a page for each picture, and a gallery of its own with the same.
void CSiteHistory::WriteSite()
{
    site.clear();
    const QString style = QStringLiteral("Blue/style.css");
    site[style] = AssetOf(style, styleVersion);
    const auto addGallery = [this](const QString& folder, const std::map<int, int>& list, QStringList links) {
        for (const auto& [number, version] : list) {
            const QString picture = folder + QStringLiteral("pictures/x%1.jpg").arg(number);
            const QString page = folder + QStringLiteral("p%1.html").arg(number);
            const auto next = std::next(list.find(number));
            const int nextNumber = next == list.end() ? list.begin()->first : next->first;
            site[picture] = AssetOf(picture, version);
            site[page] = PageOf(page, {QLatin1Char('/') + picture, QStringLiteral("/Blue/style.css"),
                                       QStringLiteral("p%1.html").arg(nextNumber), Front,
                                       QStringLiteral("/index.html")});
            links += QStringLiteral("p%1.html").arg(number);
        }
        const QString front = folder + Front;
        site[front] = PageOf(front, links + QStringList(QStringLiteral("/Blue/style.css")));
    };
    if (!gallery.empty()) {
        addGallery(QStringLiteral("2/"), gallery, {});
    }
    addGallery(QString(), pictures,
               gallery.empty() ? QStringList() : QStringList(QStringLiteral("2/index.html")));
    for (const auto& [path, bytes] : site) {
        scratch.Write(QStringLiteral("site/") + path, bytes);
    }
}

QString CSiteHistory::Computer(const char* name) const
{
    return scratch.Path(QStringLiteral("computer%1/%2").arg(computer).arg(QLatin1String(name)));
}

CSiteHistory::End CSiteHistory::Deploy(bool overwrite)
{
    std::vector<LocalFile> local;
    for (const auto& [path, bytes] : site) {
        local.push_back({.path = path,
                         .source = scratch.Path(QStringLiteral("site/") + path),
                         .size = bytes.size(),
                         .modified = 0,
                         .hash = CContentHash::Of(bytes)});
    }
    abort = std::make_shared<CEvent>();
    if (server.takesDotNames && !server.Find(ManifestPathFor(ProjectKey))) {
        confirmed.clear(); // a server that renames in two steps was left between them
    }
    try {
        CSessionCrew crew({.open = server.MakeOpener(abort),
                           .abort = abort,
                           .mostSessions = options.sessions,
                           .onRetry = {},
                           .pause = [](std::chrono::milliseconds) {},
                           .now = {}});
        CSiteJournal journal(Computer("journal"));
        const ServerPlace place{QString()};
        const RemoteSite remote = LookAtServer(crew, {place, ProjectKey, local}, journal);
        const SitePlan plan = MakeSitePlan({.local = local,
                                            .remote = remote,
                                            .stored = journal.GetStored(),
                                            .sender = journal.GetSender(),
                                            .now = server.clock,
                                            .removeLeftovers = true});
        if (!plan.strangers.isEmpty() && !overwrite) {
            return End::Doubts;
        }
        CSiteSender sender({.place = place,
                            .projectKey = ProjectKey,
                            .crew = crew,
                            .journal = journal,
                            .onProgress = {},
                            .now = {}},
                           plan);
        sender.Run();
        crew.Quit();
        return End::Done;
    } catch (const Killed&) {
        return End::Killed;
    } catch (const SendCancelled&) {
        return End::Cancelled;
    } catch (const SendFailure&) {
        return End::Failed;
    }
}

void CSiteHistory::DeployWithTrouble()
{
    static const char* const names[] = {"done ", "killed ", "failed ", "cancelled ", "doubts "};
    isTroubled = true;
    killAt = Chance(40) ? server.operations + 1 + Random(70) : 0;
    cancelAt = Chance(10) ? server.operations + 1 + Random(70) : 0;
    const int operationsBefore = server.operations;
    const int64_t bytesBefore = server.sentBytes;
    const End end = Deploy(Chance(70));
    told += std::string("deploy:") + names[static_cast<int>(end)];
    if (end == End::Doubts && server.sentBytes != bytesBefore) {
        Fail(QStringLiteral("something was sent in spite of doubts"));
    }
    isComplete = end == End::Done;
    isEdited = isEdited && !isComplete;
    told += std::to_string(server.operations - operationsBefore) + " ";
    server.isDead = false;
    server.openSessions = 0;
    isTroubled = false;
    killAt = cancelAt = 0;
}

void CSiteHistory::DeployUntilDone()
{
    told += "at last ";
    if (Deploy(true) != End::Done) {
        Fail(QStringLiteral("an undisturbed run has failed"));
        return;
    }
    // The temporary files of computers that never came back.
    server.clock += 7 * 24 * 60 * 60;
    if (Deploy(true) != End::Done) {
        Fail(QStringLiteral("a second undisturbed run has failed"));
        return;
    }
    const int64_t bytes = server.sentBytes;
    if (Deploy(false) != End::Done) {
        Fail(QStringLiteral("a run with nothing to do has failed"));
    }
    if (server.sentBytes != bytes) {
        Fail(QStringLiteral("a run with nothing to do has sent something"));
    }
}

void CSiteHistory::GoToAnotherComputer()
{
    if (!server.takesDotNames) {
        return; // only the first one knows what is whose there
    }
    told += "computer ";
    computer = Random(3);
    if (!isComplete) {
        confirmed.clear(); // the other one knows the manifest only
    }
}

void CSiteHistory::Tamper()
{
    std::vector<QString> own;
    for (const auto& [path, file] : server.files) {
        if (site.contains(path) && !IsExcused(path)) {
            own.push_back(path);
        }
    }
    if (own.empty()) {
        return;
    }
    const QString path = own[static_cast<size_t>(Random(static_cast<int>(own.size())))];
    told += "tamper:" + path.toStdString() + " ";
    // While a run is unfinished nobody knows whether other pages lead there already.
    if (Chance(50) && (isComplete || !IsPage(path))) {
        server.Remove(path);
    } else {
        const bool keepsSize = isComplete && server.tellsTimes && server.takesDotNames && Chance(50);
        const qsizetype size = server.files[path].bytes.size();
        server.Put(path, QByteArray(keepsSize ? size : size + 7, 'z'));
    }
    tampered.insert(path);
    confirmed.erase(path);
}

// Without one nobody else knows what the site has no longer, and a replaced file of the same size is taken
// for the project's own. So it is lost when the site is as it is to be.
void CSiteHistory::LoseManifest()
{
    if (!isComplete || isEdited || !tampered.empty() || !others.empty()) {
        return;
    }
    told += "no-manifest ";
    server.Remove(ManifestPathFor(ProjectKey));
    confirmed.clear();
    if (Deploy(false) != End::Done) {
        Fail(QStringLiteral("a run without a manifest has failed"));
    }
    CheckTree();
}

void CSiteHistory::AddStranger()
{
    static const char* const places[] = {"notes.txt", "p5.html", "pictures/x5.jpg", "2/index.html",
                                         "pictures/mine.jpg"};
    const QString path = QString::fromLatin1(places[Random(std::size(places))]);
    // What was under way counts as the project's own.
    const bool isFree = !server.Find(path) && (isComplete || server.operations == 0);
    if (isFree) {
        told += "stranger:" + path.toStdString() + " ";
        others[path] = "mine " + QByteArray::number(Random(1000));
        server.Put(path, others[path]);
    }
}

Fault CSiteHistory::FaultFor(const CMemoryServer::Operation& operation)
{
    const Fault fault = DrawFault(operation);
    if (options.isTold) {
        static const char* const verbs[] = {
            "Open", "List", "MakeDirectory", "Rename",   "RemoveFile", "RemoveDirectory",
            "Send", "Read", "GetSize",       "KeepAlive"};
        std::printf("%d %s %s %s fault %d\n", operation.number, verbs[static_cast<int>(operation.verb)],
                    qPrintable(operation.path), qPrintable(operation.newPath), static_cast<int>(fault));
    }
    return fault;
}

Fault CSiteHistory::DrawFault(const CMemoryServer::Operation& operation)
{
    if (operation.verb == Verb::Send && isTroubled && IsOwnName(operation.path)) {
        ADD_FAILURE() << "a file is sent under its own name: " << operation.path.toStdString();
    }
    if (!isTroubled) {
        return Fault::None;
    }
    const auto draw = [this](int below) {
        return static_cast<int>(faultRandom() % static_cast<uint32_t>(below));
    };
    if (killAt != 0 && operation.number >= killAt) {
        static const Fault kills[] = {Fault::KillBefore, Fault::KillInside, Fault::KillAfter};
        return kills[draw(3)];
    }
    if (cancelAt != 0 && operation.number == cancelAt) {
        return Fault::Cancel;
    }
    const bool isRefusable =
        operation.verb != Verb::List && operation.verb != Verb::Read && operation.verb != Verb::GetSize &&
        (!operation.path.startsWith(ManifestFolder) || server.Find(ManifestPathFor(ProjectKey)));
    switch (draw(240)) {
    case 0:
    case 1:
    case 2:
        return Fault::CutBefore;
    case 3:
    case 4:
    case 5:
        return Fault::CutAfter;
    case 6:
    case 7:
        return Fault::CutInside;
    case 8:
        return Fault::Goodbye;
    case 9:
        return isRefusable ? Fault::Refuse : Fault::None;
    case 10:
        return isRefusable && operation.verb == Verb::Send ? Fault::NoSpace : Fault::None;
    case 11:
    case 12:
        return operation.verb == Verb::Send && server.tellsSizes ? Fault::StoreLess : Fault::None;
    default:
        return Fault::None;
    }
}

void CSiteHistory::OnNamed(const QString& oldPath, const QString& newPath)
{
    tampered.erase(newPath);
    others.erase(newPath);
    lastName[oldPath] = newPath;
    if (confirmed.contains(oldPath)) {
        confirmed[newPath] = confirmed[oldPath];
        confirmed.erase(oldPath);
    }
}

void CSiteHistory::OnSend(const QString& path, const QByteArray& bytes)
{
    if (path.startsWith(ManifestFolder)) {
        return;
    }
    const auto isThere = [&](const QString& place) {
        const auto* const file = server.Find(place);
        const auto found = confirmed.find(place);
        return file && file->bytes == bytes && found != confirmed.end() && found->second == bytes;
    };
    const auto name = lastName.find(path);
    if (isThere(path) || (name != lastName.end() && isThere(name->second))) {
        Fail(QStringLiteral("sent twice: ") + QString::fromUtf8(bytes.left(bytes.indexOf('\n'))));
    }
}

void CSiteHistory::LookAsVisitor()
{
    for (const auto& [path, file] : server.files) {
        if (!IsOwnName(path) || IsExcused(path)) {
            continue;
        }
        if (!IsWhole(path, file.bytes)) {
            Fail(QStringLiteral("not whole: ") + path);
        }
        if (IsPage(path)) {
            LookAtLinks(path, file.bytes);
        }
    }
    LookFromFront();
}

void CSiteHistory::LookAtLinks(const QString& page, const QByteArray& bytes)
{
    for (const QString& link : LinksOf(page, bytes)) {
        if (!IsPage(link) && !IsExcused(link) && !server.Find(link)) {
            Fail(page + QStringLiteral(" shows what isn't there: ") + link);
        }
    }
}

void CSiteHistory::LookFromFront()
{
    if (!server.Find(Front) || IsExcused(Front)) {
        return;
    }
    std::set<QString> seen{Front};
    QStringList waiting{Front};
    while (!waiting.isEmpty()) {
        const QString page = waiting.takeLast();
        for (const QString& link : LinksOf(page, server.Find(page)->bytes)) {
            if (!IsPage(link) || IsExcused(link) || !seen.insert(link).second) {
                continue;
            }
            if (!server.Find(link)) {
                Fail(page + QStringLiteral(" leads to what isn't there: ") + link);
                return;
            }
            waiting += link;
        }
    }
}

void CSiteHistory::CheckTree()
{
    for (const auto& [path, bytes] : site) {
        const auto* const file = server.Find(path);
        if (!file || file->bytes != bytes) {
            Fail(QStringLiteral("not as on this computer: ") + path);
        }
    }
    for (const auto& [path, bytes] : others) {
        const auto* const file = server.Find(path);
        if (!file || file->bytes != bytes) {
            Fail(QStringLiteral("somebody else's file was changed: ") + path);
        }
    }
    for (const auto& [path, file] : server.files) {
        // Temporary files of computers that never came back go when they are old.
        const bool isYoung = !server.tellsTimes || server.clock - file.modified < 3 * 24 * 60 * 60;
        const bool isOnItsWay = !SenderOfTemporary(path).isEmpty() && isYoung;
        if (!site.contains(path) && !IsExcused(path) && !isOnItsWay && path != ManifestPathFor(ProjectKey)) {
            Fail(QStringLiteral("left on the server: ") + path);
        }
    }
}

void CSiteHistory::Fail(const QString& what)
{
    if (failure.empty()) {
        failure = what.toStdString() + " after: " + told;
    }
}
