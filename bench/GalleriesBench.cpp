// How long the galleries view takes to be on the screen again when another gallery is chosen, and how much of
// that the window waits for.
//
//     bench_galleries [GALLERIES [PICTURE_FOLDER]]
//
// Makes a project of 200 galleries (or as many as named), each with four pictures of the sample (or of the
// folder), and goes through them. Prints medians in milliseconds: of the time in which the window does
// nothing else, of the time to the page, and of the time to its last cover; first for covers that nobody has
// seen yet, then for covers that are there; and the same for a project of 10 galleries, whose times are the
// baseline of the ratio.

#include <cstdio>

#include <QApplication>
#include <QDirIterator>
#include <QTemporaryDir>

#include "Measuring.h"
#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "shell/frame/EditingDesk.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "support/VirtualDisplay.h"

namespace {

constexpr int rounds = 25;

// A root with children, which have children, nine of each.
class CTreeProject {
public:
    CTreeProject(int galleries, const QString& pictures)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString())),
          project({.programFolder = Path(QString()),
                   .picturesFolder = Path(QString()),
                   .settings = settings.get(),
                   .tempFolder = &tempFolder})
    {
        project.New();
        QStringList files;
        QDirIterator found(pictures, {QStringLiteral("*.jpg")}, QDir::Files, QDirIterator::Subdirectories);
        while (found.hasNext()) {
            files += found.next();
        }
        for (int i = 0; i < galleries; ++i) {
            CGallery& gallery = *project.FindGallery(i == 0 ? 0 : project.AddChildGallery((i - 1) / 9));
            for (int picture = 0; picture < 4 && !files.isEmpty(); ++picture) {
                gallery.AppendPicture(files[(4 * i + picture) % files.size()], 0);
            }
        }
    }

    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }
    CGalleryProject& Get() { return project; }

private:
    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    CGalleryProject project;
};

struct Times {
    std::vector<double> blocked;
    std::vector<double> page;
    std::vector<double> covers;
};

bool HasAllCovers(CHTMLView& view)
{
    bool isAnswered = false;
    bool hasAll = false;
    view.RunScript(QStringLiteral("[...document.images].every(i => !i.src.startsWith('data:'))"),
                   [&](const QVariant& answer) {
                       isAnswered = true;
                       hasAll = answer.toBool();
                   });
    RunUntil([&] { return isAnswered; });
    return hasAll;
}

Times Walk(CEditingDesk& desk, CViewGalleries& view, const int& shown)
{
    Times times;
    const int galleries = static_cast<int>(desk.GetProject().GetGalleries().size());
    for (int round = 0; round < rounds; ++round) {
        const int before = shown;
        const auto start = std::chrono::steady_clock::now();
        desk.ChooseGallery((1 + round * 7) % galleries); // never the one that is shown
        times.blocked.push_back(Milliseconds(start));
        RunUntil([&] { return shown > before; });
        times.page.push_back(Milliseconds(start));
        while (!HasAllCovers(view.GetHTMLView())) {
        }
        times.covers.push_back(Milliseconds(start));
    }
    return times;
}

void Print(const char* what, const Times& times)
{
    std::printf("  %-12s window busy %6.1f (worst %6.1f), page %6.1f, last cover %6.1f\n", what,
                Median(times.blocked), *std::max_element(times.blocked.begin(), times.blocked.end()),
                Median(times.page), Median(times.covers));
}

Times Run(int galleries, const QString& pictures)
{
    CTreeProject project(galleries, pictures);
    CEditingDesk desk(project.Get(), {.changed = [] {},
                                      .edited =
                                          [](const Edited&) {
                                          }});
    CViewGalleries view({.addDropped = [](const QStringList&, int32_t) {},
                         .tell = [](const CExceptionBase&) {},
                         .desk = desk,
                         .browser = {}});
    desk.AddView(view);
    int shown = 0;
    view.GetHTMLView().SetShownCallback([&] { ++shown; });
    view.resize(360, 480);
    view.show();
    desk.BeginAnew();
    RunUntil([&] { return shown > 0; });
    std::printf("%d galleries:\n", galleries);
    Print("new covers", Walk(desk, view, shown));
    Times again = Walk(desk, view, shown);
    Print("known covers", again);
    return again;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QTemporaryDir home;
    qputenv("XDG_CACHE_HOME", home.path().toUtf8());
    const CVirtualDisplay display;
    PutDisplayIntoEnvironment(display.GetName());
    PrepareHTMLViews();
    QApplication application(argumentCount, arguments);
    const int galleries = argumentCount > 1 ? std::max(std::atoi(arguments[1]), 10) : 200;
    const QString pictures =
        argumentCount > 2 ? QString::fromUtf8(arguments[2]) : QStringLiteral(SAMPLE_FOLDER);
    const Times few = Run(10, pictures);
    const Times many = Run(galleries, pictures);
    std::printf("ratio of the pages with known covers: %.2f\n", Median(many.page) / Median(few.page));
    return 0;
}
