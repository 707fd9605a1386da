// How fast the folder view shows a folder of photographs, beside what the image workers alone need for the
// same cards, measured in one run on one machine.
//
//     bench_folder [PHOTOGRAPHS] [LARGE]
//
// Makes a folder of 500 photographs of 12 megapixels (or as many as named) by links to eight different ones,
// and one of 5,000 pictures (LARGE) whose cards are made before. Prints the time to the first thumbnails on
// the screen and to the whole list, thumbnails per second as a share of what the same work does without a
// view, the time that a change of the folder takes to stop the work, the time to the list of the large
// folder, and the longest frame while it is scrolled.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include "Measuring.h"
#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "content/FolderPictures.h"
#include "document/project/GalleryProject.h"
#include "imaging/Image.h"
#include "shell/frame/EditingDesk.h"
#include "shell/panes/folder/FolderPages.h"
#include "shell/panes/folder/ViewFolder.h"
#include "support/VirtualDisplay.h"

namespace {

constexpr QSize PhotographSize(4000, 3000);
constexpr QSize LargeSize(6000, 4000);
constexpr int differentPhotographs = 8;
constexpr int viewWidth = 340;
constexpr int stopRounds = 10;

using Clock = std::chrono::steady_clock;

// Smooth shapes and grain: as hard to decode as a photograph.
void MakePhotograph(const QString& path, QSize size, unsigned seed, ImageEncoding::Format format)
{
    std::mt19937 random(seed);
    QByteArray bytes(qsizetype(size.width()) * size.height() * 4, '\xff');
    auto* pixel = reinterpret_cast<uint8_t*>(bytes.data());
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x, pixel += 4) {
            const int shape = (x * int(seed + 1) / 23 + y / 17) % 160;
            const int grain = int(random() % 25);
            for (int c = 0; c < 3; ++c) {
                pixel[c] = uint8_t(std::min(shape + grain + 20 * c, 255));
            }
        }
    }
    CImage::FromRgba(size, bytes).Save(path, {format, 90});
}

void MakeFolder(const QString& folder, int count, QSize size,
                ImageEncoding::Format format = ImageEncoding::Format::Jpeg)
{
    MakeDirectoryPath(folder);
    QStringList sources;
    for (int i = 0; i < std::min(differentPhotographs, count); ++i) {
        sources += QStringLiteral("%1/source%2").arg(folder).arg(i);
        MakePhotograph(sources.back(), size, unsigned(i), format);
    }
    for (int i = 0; i < count; ++i) {
        QFile::link(sources[i % sources.size()],
                    QStringLiteral("%1/%2.jpg").arg(folder).arg(i, 5, 10, QLatin1Char('0')));
    }
}

class CNoView final : public CFolderPicturesListener {
public:
    bool IsWanted() const override { return true; }
    void OnProgress(int, const std::vector<FolderCard>&) override {}
};

// The folder view over an empty project, as the frame has it.
class CBenchView {
public:
    CBenchView()
        : settings(CreateIniSettings(Path("user"), Path("machine"))),
          tempFolder(WithTrailingSeparator(scratch.path())),
          project({.programFolder = WithTrailingSeparator(scratch.path()),
                   .picturesFolder = scratch.path(),
                   .settings = settings.get(),
                   .tempFolder = &tempFolder}),
          desk(project, {.changed = [] {},
                         .edited =
                             [](const Edited&) {
                             }}),
          view({.desk = desk, .browser = {}})
    {
        desk.AddView(view);
        view.resize(viewWidth, 600);
        view.show();
        RunUntil([&] { return view.GetHTMLView().isVisible(); });
        Ask(QStringLiteral("1"));
    }

    void Open(const QString& folder)
    {
        const auto start = Clock::now();
        view.SetFolder(folder);
        changeTime = Milliseconds(start);
    }
    CViewFolder& Get() { return view; }
    // How long the last change of the folder held up the screen's thread, in milliseconds.
    double GetChangeTime() const { return changeTime; }

    QVariant Ask(const QString& expression)
    {
        std::optional<QVariant> answer;
        if (view.GetFolder().isEmpty()) {
            desk.BeginAnew();
        }
        view.GetHTMLView().RunScript(expression, [&](const QVariant& value) { answer = value; });
        RunUntil([&] { return answer.has_value(); });
        return answer.value_or(QVariant());
    }
    void WaitInPage(const QString& condition)
    {
        while (!Ask(condition).toBool()) {
        }
    }

private:
    QString Path(const char* name) const { return JoinPath(scratch.path(), QString::fromLatin1(name)); }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    CGalleryProject project;
    double changeTime = 0;
    CEditingDesk desk;
    CViewFolder view;
};

const QString seen = QStringLiteral(
    "[...document.querySelectorAll('td img:not([id$=_menu])')].some(i => i.complete && i.naturalWidth > 0)");

double MeasureWorkers(const QString& folder)
{
    CNoView listener;
    const auto start = Clock::now();
    FillPicturesCollection(folder, CardSize(viewWidth), listener);
    return Milliseconds(start);
}

void MeasureFirstVisit(CBenchView& view, const QString& folder, double workers, int count)
{
    const auto start = Clock::now();
    view.Open(folder);
    RunUntil([&] { return view.GetChangeTime() > 0; });
    view.WaitInPage(seen);
    const double first = Milliseconds(start);
    RunUntil([&] { return view.Get().IsLoaded(); });
    view.Ask(QStringLiteral("1"));
    const double all = Milliseconds(start);
    std::printf(
        "%d photographs of 12 megapixels: first thumbnails after %.0f ms, all after %.1f s, %.1f a second\n",
        count, first, all / 1000, count / all * 1000);
    std::printf("the image workers alone: %.1f s, %.1f a second   ratio %.2f\n", workers / 1000,
                count / workers * 1000, all / workers);
}

// The work in progress has ended when the other folder is begun with.
void MeasureStop(CBenchView& view, const QStringList& folders, const char* what)
{
    double worst = 0;
    view.Open(folders[0]);
    for (int round = 1; round <= stopRounds; ++round) {
        QTimer pause;
        pause.setSingleShot(true);
        pause.start(150 + 37 * round); // at different places of the work
        RunUntil([&] { return !pause.isActive(); });
        view.Open(folders[round % folders.size()]);
        RunUntil([&] { return view.GetChangeTime() > 0; });
        worst = std::max(worst, view.GetChangeTime());
    }
    std::printf("a change of the folder stops the work at %s after %.1f ms at most\n", what, worst);
}

void MeasureLarge(CBenchView& view, const QString& folder, int count)
{
    const auto start = Clock::now();
    view.Open(folder);
    RunUntil([&] { return view.GetChangeTime() > 0; });
    RunUntil([&] { return view.Get().IsLoaded(); });
    const double made = Milliseconds(start);
    view.Ask(QStringLiteral("1"));
    std::printf("%d pictures with cards: list asked for after %.0f ms, on the screen after %.0f ms\n", count,
                made, Milliseconds(start));
    view.Ask(QStringLiteral("window.frames_ = []; (function scroll(last) { requestAnimationFrame(now => { if "
                            "(last) frames_.push(now - "
                            "last); document.scrollingElement.scrollTop += 400; if (frames_.length < 300) "
                            "scroll(now); }); })(0)"));
    view.WaitInPage(QStringLiteral("frames_.length >= 300"));
    std::printf(
        "scrolled by 400 pixels a frame: median frame %.0f ms, longest %.0f ms; %d pictures in the page\n",
        view.Ask(QStringLiteral("frames_.sort((a, b) => a - b)[150]")).toDouble(),
        view.Ask(QStringLiteral("frames_[299]")).toDouble(),
        view.Ask(QStringLiteral("document.querySelectorAll('td a img').length")).toInt());
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QTemporaryDir home;
    const int photographs = argumentCount > 1 ? std::max(std::atoi(arguments[1]), 10) : 500;
    const int large = argumentCount > 2 ? std::max(std::atoi(arguments[2]), 10) : 5000;
    const QString folder = home.path() + QStringLiteral("/photographs");
    const QString largeFolder = home.path() + QStringLiteral("/large");
    MakeFolder(folder, photographs, PhotographSize);
    const QString otherFolder = home.path() + QStringLiteral("/others");
    const QString slowFolder = home.path() + QStringLiteral("/slow");
    MakeFolder(otherFolder, photographs, PhotographSize);
    MakeFolder(slowFolder, 4, LargeSize, ImageEncoding::Format::Png);
    MakeFolder(largeFolder, large, QSize(400, 300));

    const CVirtualDisplay display;
    PutDisplayIntoEnvironment(display.GetName());
    PrepareHTMLViews();
    QApplication application(argumentCount, arguments);
    // A cache for each measurement: what is measured makes all its cards.
    const auto useCache = [&](const char* name) {
        qputenv("XDG_CACHE_HOME", (home.path() + QLatin1Char('/') + QString::fromLatin1(name)).toUtf8());
    };
    useCache("workers");
    const double workers = MeasureWorkers(folder);
    useCache("view");
    CBenchView view;
    MeasureFirstVisit(view, folder, workers, photographs);
    useCache("stop");
    MeasureStop(view, {folder, otherFolder}, "JPEG photographs of 12 megapixels");
    MeasureStop(view, {slowFolder, folder, slowFolder, otherFolder}, "PNG photographs of 24 megapixels");
    useCache("view");
    MeasureWorkers(largeFolder);
    MeasureLarge(view, largeFolder, large);
    return 0;
}
