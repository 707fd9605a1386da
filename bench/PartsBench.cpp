// Pieces that run often, by Google Benchmark.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/StopSignal.h"
#include "common/TempFolder.h"
#include "content/ContentGeneratorFolder.h"
#include "content/ImageProduction.h"
#include "deploy/server/LocalSite.h"
#include "deploy/server/SitePlan.h"
#include "document/galleries/GalleryIterator.h"
#include "document/project/GalleryProject.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectTextStamp.h"
#include "ftpengine/messages/FTPDirectoryContent.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

// A project of 1,000 pictures whose files nobody opens, with a page of each kind of element.
class CProject {
public:
    CProject() : settings(CreateIniSettings(Path("user"), Path("machine"))), tempFolder(Path(""))
    {
        MakeDirectoryPath(Path("Templates/One"));
        WriteFileAtomically(Path("Templates/one.xml"), "<template name=\"One\" folder=\"One\"><page "
                                                       "file=\"index.html\" multipage=\"1\"/></template>");
        QByteArray page = "<html><head><%pageheader %></head><body><h1><%=gallery.name%></h1>";
        for (int i = 0; i < 12; ++i) {
            const QByteArray id = "p" + QByteArray::number(i);
            page += "<%if <%=" + id + ".file_name%><%picture id=\"" + id +
                    "\" width=\"160\" height=\"120\" href=\"<%=" + id +
                    ".#index.html%>\"%><%textspan name=\"Title\" property=\"" + id +
                    ".title\" default=\"Title\"%>%>";
        }
        WriteFileAtomically(Path("Templates/One/index.html"), page + "</body></html>");
        project = std::make_unique<CGalleryProject>(CProjectEnvironment{.programFolder = Path(""),
                                                                        .picturesFolder = Path(""),
                                                                        .settings = settings.get(),
                                                                        .tempFolder = &tempFolder});
        project->New();
        for (int i = 0; i < 1000; ++i) {
            const QString picture = Path("p%1.jpg").arg(i);
            ReplaceFile(picture, "x", Durability::Plain);
            project->GetRootGallery()->AddPicture(picture);
        }
        project->Save(File());
    }

    CGalleryProject& Get() { return *project; }
    QString File() const { return Path("large.gallery"); }
    QString Path(const char* name) const { return scratch.path() + QLatin1Char('/') + QLatin1String(name); }

private:
    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    std::unique_ptr<CGalleryProject> project;
};

CProject& TheProject()
{
    static CProject project;
    return project;
}

class CNobody final : public CImageProduction::Listener {
public:
    void OnPageDone() override {}
};

const QString PageName = QStringLiteral("index.html");

void ParsePage(benchmark::State& state)
{
    const CGalleryTemplate layout(TheProject().Path("Templates/one.xml"));
    for (auto _ : state) {
        CCompoundTemplateSection tree;
        layout.LoadPage(PageName, tree);
        benchmark::DoNotOptimize(tree);
    }
}
BENCHMARK(ParsePage);

void GeneratePage(benchmark::State& state)
{
    const CGalleryTemplate layout(TheProject().Path("Templates/one.xml"));
    CCompoundTemplateSection tree;
    layout.LoadPage(PageName, tree);
    CNobody nobody;
    CStopSignal stop;
    CImageProduction production(nobody, stop);
    CContentGeneratorFolder generator({.targetFolder = TheProject().Path("site"), .bannerServer = {}},
                                      production);
    CGalleryIterator iterator;
    iterator.Init(*TheProject().Get().GetRootGallery());
    for (auto _ : state) {
        iterator.SetPageIndex(3);
        iterator.Reset();
        tree.Bind(iterator, generator);
        iterator.SetPageIndex(3);
        benchmark::DoNotOptimize(tree.GenerateToString(iterator, generator));
    }
}
BENCHMARK(GeneratePage);

void ReadProject(benchmark::State& state)
{
    for (auto _ : state) {
        TheProject().Get().Load(TheProject().File());
    }
}
BENCHMARK(ReadProject);

void WriteProject(benchmark::State& state)
{
    const QString copy = TheProject().Path("copy.gallery");
    for (auto _ : state) {
        TheProject().Get().Save(copy);
    }
}
BENCHMARK(WriteProject);

void NameResultOfChain(benchmark::State& state)
{
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRename>());
    chain.Add(std::make_shared<CImageEffectRotate>(1));
    chain.Add(std::make_shared<CImageEffectResize>(QSize(800, 600), CImageEffectResize::Options{}));
    chain.Add(std::make_shared<CImageEffectTextStamp>(QStringLiteral("(c) somebody"), 10));
    const QString path = QStringLiteral("/photos/Winter in the mountains/DSC 0815.JPG");
    for (auto _ : state) {
        benchmark::DoNotOptimize(chain.GetResultFileName(path));
    }
}
BENCHMARK(NameResultOfChain);

void ParseListing(benchmark::State& state)
{
    QString listing;
    for (int i = 0; i < 1000; ++i) {
        listing += QStringLiteral("-rw-r--r--   1 photo    users    %1 Nov 20 14:34 picture %2.jpg\r\n")
                       .arg(100000 + i)
                       .arg(i);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(CFTPDirectoryContent(QString(), listing));
    }
}
BENCHMARK(ParseListing);

// What is left to do here when a site of 5,000 files has not changed: its hashes, the manifest as it comes
// from the server, the comparison.
void CompareUnchangedSite(benchmark::State& state)
{
    const QTemporaryDir scratch;
    const QString site = scratch.path() + QStringLiteral("/site/");
    const QString hashes = scratch.path() + QStringLiteral("/hashes");
    const CStopSignal stop;
    SiteSources sources;
    for (int i = 0; i < 5000; ++i) {
        const QString path = QStringLiteral("%1/pictures/picture%2.jpg").arg(i / 100).arg(i);
        sources[path] = site + path;
        MakeDirectoryPath(ExtractFolder(sources[path]));
        ReplaceFile(sources[path], QByteArray(4096, 'x'), Durability::Plain);
        // Hashes of files that were just written aren't kept.
        const timespec times[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
        ::utimensat(AT_FDCWD, QFile::encodeName(sources[path]).constData(), times, 0);
    }
    const auto isNeeded = [](const LocalFile&) {
        return true;
    };
    CLocalSite first(sources, hashes);
    first.ReadHashes(isNeeded, stop);
    first.SaveHashes();
    SiteManifest manifest;
    RemoteSite remote;
    for (const LocalFile& file : first.GetFiles()) {
        manifest.files[file.path] = {
            .size = file.size, .hash = file.hash, .isSeen = false, .time = 0, .rest = {}};
        remote.files[file.path] = {file.size, 1};
    }
    remote.isManifestThere = true;
    const QByteArray bytes = manifest.Format();
    for (auto _ : state) {
        CLocalSite local(sources, hashes);
        local.ReadHashes(isNeeded, stop);
        remote.manifest = SiteManifest::Parse(bytes);
        const SitePlan plan = MakeSitePlan({.local = local.GetFiles(),
                                            .remote = remote,
                                            .stored = {},
                                            .sender = QStringLiteral("12345678"),
                                            .now = 0,
                                            .removeLeftovers = true});
        if (!plan.isManifestCurrent) {
            state.SkipWithError("something has changed");
        }
    }
}
BENCHMARK(CompareUnchangedSite)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
