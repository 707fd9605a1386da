// How long a page of pictures takes to be on the screen again after a command.
//
//     bench_page [PICTURES]
//
// Shows a page of 20 pictures of the sample project (or as many as named) on a display of its own, scrolled
// down, and moves its pictures about. Prints milliseconds from the command to the page on the screen, how
// many of them went into the making of the page, and whether the scroll place was kept; the median of the
// rounds counts.

#include <cstdio>
#include <functional>

#include <QApplication>
#include <QDirIterator>
#include <QTemporaryDir>

#include "Measuring.h"
#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "editing/PictureActs.h"
#include "shell/frame/EditingDesk.h"
#include "shell/panes/pages/ViewPages.h"
#include "support/VirtualDisplay.h"

namespace {

constexpr int rounds = 21;

// A program folder with one layout of one page, and a project of pictures of the sample.
class CPictureProject {
public:
    explicit CPictureProject(int pictures)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString())),
          project({.programFolder = Path(QString()),
                   .picturesFolder = Path(QString()),
                   .settings = settings.get(),
                   .tempFolder = &tempFolder})
    {
        MakeDirectoryPath(Path(QStringLiteral("Templates/One")));
        QByteArray page = "<!DOCTYPE html><head><%pageheader%></head><body>";
        for (int i = 0; i < pictures; ++i) {
            page += "<%picture id=\"photo" + QByteArray::number(i) +
                    "\" width=\"400\" height=\"300\" href=\"\"%>";
        }
        WriteFileAtomically(
            Path(QStringLiteral("Templates/one.xml")),
            "<template name=\"One\" folder=\"One\"><page file=\"index.html\" multipage=\"1\"/></template>");
        WriteFileAtomically(Path(QStringLiteral("Templates/One/index.html")), page);
        project.New();
        AddPictures(pictures);
    }

    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }
    CGalleryProject& Get() { return project; }

private:
    void AddPictures(int count)
    {
        CGallery& gallery = *project.GetRootGallery();
        gallery.SetTemplate(gallery.GetLayout().GetTemplateKey());
        QDirIterator files(QStringLiteral(SAMPLE_FOLDER), {QStringLiteral("*.jpg")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext() && gallery.GetPictures().GetCount() < count) {
            gallery.AppendPicture(files.next(), 0);
        }
    }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    CGalleryProject project;
};

void Run(int pictures)
{
    CPictureProject project(pictures);
    CEditingDesk desk(project.Get(), {.changed = [] {},
                                      .edited =
                                          [](const Edited&) {
                                          }});
    CViewPages view({.desk = desk, .browser = {}, .openRecent = {}});
    desk.AddView(view);
    view.resize(1000, 800);
    view.show();
    int shown = 0;
    view.GetHTMLView().SetShownCallback([&] { ++shown; });
    const auto runUntilShown = [&](int count) {
        RunUntil([&] { return shown >= count; });
    };
    desk.BeginAnew();
    runUntilShown(1);
    view.GetHTMLView().RunScript(QStringLiteral("window.scrollTo(0, 500)"));
    std::vector<double> whole;
    std::vector<double> made;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        desk.Do(MovePictureDown(project.Get().GetCurrentGalleryIndex(), round % (pictures - 1)));
        made.push_back(Milliseconds(start));
        runUntilShown(2 + round);
        whole.push_back(Milliseconds(start));
    }
    int place = -1;
    view.GetHTMLView().RunScript(QStringLiteral("window.scrollY"),
                                 [&](const QVariant& answer) { place = answer.toInt(); });
    RunUntil([&] { return place >= 0; });
    std::printf("%d pictures: on the screen again after %.1f ms (worst %.1f), %.1f of them to make the page, "
                "scroll place %s\n",
                pictures, Median(whole), *std::max_element(whole.begin(), whole.end()), Median(made),
                place == 500 ? "kept" : "lost");
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
    Run(argumentCount == 2 ? std::max(std::atoi(arguments[1]), 2) : 20);
    return 0;
}
