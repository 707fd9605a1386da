// How the work on a project grows with its pictures.
//
//     bench_scale [PICTURES ...]
//
// For 1,000, 5,000, 10,000 and 20,000 pictures (or as many as named) in 200 galleries: seconds to open the
// project, milliseconds to save it and of each operation on pictures, and pages written per second and core
// while their images are known from the deployment before: by the clock, and by the processor's time alone,
// from which other work on the machine takes nothing. All pictures are links to one small file.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <thread>
#include <unistd.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/StopSignal.h"
#include "common/TempFolder.h"
#include "content/DeploymentRecord.h"
#include "content/PageGeneration.h"
#include "document/project/GalleryProject.h"
#include "imaging/Image.h"

namespace {

constexpr int galleryCount = 200;
constexpr int operationCount = 200;

double SecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class CNoProgress final : public CGenerationProgress {
public:
    void OnPageDone(int32_t, int32_t) override {}
};

// A project file of so many pictures, and one project open over it.
class CScaledProject {
public:
    explicit CScaledProject(int pictures)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString()))
    {
        MakeDirectoryPath(Path(QStringLiteral("Templates/One")));
        WriteFileAtomically(
            Path(QStringLiteral("Templates/one.xml")),
            "<template name=\"One\" folder=\"One\"><page file=\"index.html\" multipage=\"1\"/>"
            "<page file=\"picture.html\" multipage=\"1\"/></template>");
        QByteArray index =
            "<html><head><%pageheader %></head><body><%textspan name=\"Title\" property=\"gallery.title\" "
            "default=\"Title\"%>";
        for (int i = 0; i < 12; ++i) {
            const QByteArray id = "p" + QByteArray::number(i);
            index += "<%picture id=\"" + id + "\" width=\"160\" height=\"120\" href=\"<%=" + id +
                     ".#picture.html%>\"%>";
        }
        WriteFileAtomically(Path(QStringLiteral("Templates/One/index.html")), index + "</body></html>");
        WriteFileAtomically(
            Path(QStringLiteral("Templates/One/picture.html")),
            "<html><head><%pageheader %></head><body><%picture id=\"p\" width=\"800\" "
            "height=\"600\" href=\"index.html\"%><%textspan name=\"Title\" property=\"p.title\" "
            "default=\"Title\"%></body></html>");
        Make();
        project->New();
        AddPictures(pictures);
        project->Save(File());
    }

    double TimeOpening()
    {
        Make();
        return SecondsOf([&] { project->Open(File()); });
    }

    // Milliseconds, the time that the disk takes included.
    double TimeSaving()
    {
        double best = 1e9;
        for (int round = 0; round < 5; ++round) {
            best = std::min(best, SecondsOf([&] { project->Save(File()); }) * 1000);
        }
        return best;
    }

    // Milliseconds of one.
    double TimeOperation(const std::function<void(CGallery& gallery, int32_t position)>& operation)
    {
        std::vector<CGallery*> galleries;
        for (const auto& [index, gallery] : project->GetGalleries()) {
            if (gallery && index != project->GetRootGalleryIndex()) {
                galleries.push_back(gallery.get());
            }
        }
        const double seconds = SecondsOf([&] {
            for (int i = 0; i < operationCount; ++i) {
                operation(*galleries[static_cast<size_t>(i) % galleries.size()], i % 4);
            }
        });
        return seconds * 1000 / operationCount;
    }

    struct PagesPerSecond {
        double byClock;     // on one core
        double byProcessor; // of the processor's time
    };

    // When the images are there already.
    PagesPerSecond CountPagesPerSecond()
    {
        Deploy();
        int pages = 0;
        const std::clock_t start = std::clock();
        const double seconds = SecondsOf([&] { pages = Deploy(); });
        const double processor = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        return {pages / seconds / std::max(1u, std::thread::hardware_concurrency()), pages / processor};
    }

private:
    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }
    QString File() const { return Path(QStringLiteral("large.gallery")); }

    void Make()
    {
        project = std::make_unique<CGalleryProject>(CProjectEnvironment{.programFolder = Path(QString()),
                                                                        .picturesFolder = Path(QString()),
                                                                        .settings = settings.get(),
                                                                        .tempFolder = &tempFolder});
    }

    void AddPictures(int count)
    {
        const QString first = Path(QStringLiteral("one.jpg"));
        CImage::FromRgba(QSize(64, 48), QByteArray(64 * 48 * 4, '\x77'))
            .Save(first, {ImageEncoding::Format::Jpeg, 90});
        for (int i = 0; i < galleryCount; ++i) {
            CGallery& gallery =
                *project->FindGallery(project->AddChildGallery(project->GetRootGalleryIndex()));
            gallery.SetTemplate(gallery.GetLayout().GetTemplateKey());
            const QString folder = Path(QStringLiteral("photos/%1").arg(i));
            MakeDirectoryPath(folder);
            for (int j = 0; j < count / galleryCount; ++j) {
                const QString picture = JoinPath(folder, QStringLiteral("%1.jpg").arg(j));
                if (::link(first.toUtf8().constData(), picture.toUtf8().constData()) != 0) {
                    std::perror("link");
                    std::exit(1);
                }
                gallery.AddPicture(picture);
            }
        }
    }

    int Deploy()
    {
        CNoProgress progress;
        CDeploymentRecord record(Path(QStringLiteral("record")), Path(QStringLiteral("site")),
                                 std::chrono::milliseconds(0));
        project->SetPreviewMode(false);
        const int pages =
            GeneratePages(*project, {Path(QStringLiteral("site")), &record}, CStopSignal(), progress).pages;
        project->SetPreviewMode(true);
        record.Save();
        return pages;
    }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    std::unique_ptr<CGalleryProject> project;
};

void Measure(int pictures)
{
    CScaledProject scaled(pictures);
    const double open = scaled.TimeOpening();
    const double save = scaled.TimeSaving();
    const double rotate = scaled.TimeOperation(
        [](CGallery& gallery, int32_t position) { gallery.RotatePicture(position, true); });
    const double move = scaled.TimeOperation(
        [](CGallery& gallery, int32_t position) { gallery.MovePicture(position, position + 1); });
    const double text = scaled.TimeOperation([](CGallery& gallery, int32_t) {
        gallery.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("title"),
                                  CVariant(QStringLiteral("x")));
    });
    const double remove =
        scaled.TimeOperation([](CGallery& gallery, int32_t position) { gallery.RemovePicture(position); });
    scaled.TimeOpening();
    const auto [byClock, byProcessor] = scaled.CountPagesPerSecond();
    std::printf("%8d  %8.3f  %8.1f  %8.3f  %8.3f  %8.3f  %8.3f  %10.0f  %10.0f\n", pictures, open, save,
                rotate, move, text, remove, byClock, byProcessor);
    std::fflush(stdout);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    std::vector<int> counts;
    for (int i = 1; i < argumentCount; ++i) {
        counts.push_back(std::atoi(arguments[i]));
    }
    if (counts.empty()) {
        counts = {1000, 5000, 10000, 20000};
    }
    std::printf(
        "pictures    open s   save ms  rotate ms  move ms   text ms  remove ms  pages/s core  by cpu time\n");
    for (const int count : counts) {
        Measure(count);
    }
    return 0;
}
