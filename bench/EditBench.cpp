// How long the screen's thread is busy with one act on many pictures.
//
//     bench_edit [PICTURES]
//
// Makes a project with 2,000 pictures (or as many as named) in one gallery, each with texts, and an empty
// gallery beside it. Prints for each act the milliseconds of doing it, of taking it back and of doing it
// anew, as the history does them, and the longest of the three as a share of the time that the reading of the
// project takes. The median of five rounds counts. A history begins anew with each act, so that it knows
// nothing of the galleries yet.

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "Measuring.h"
#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "editing/EditHistory.h"
#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"
#include "editing/PictureClip.h"
#include "editing/SortOrder.h"
#include "editing/TextActs.h"
#include "imaging/Image.h"

namespace {

constexpr int Rounds = 5;

class CLargeGallery {
public:
    explicit CLargeGallery(int count)
        : count(count),
          settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString()))
    {
        MakeDirectoryPath(Path(QStringLiteral("Templates/One")));
        WriteFileAtomically(
            Path(QStringLiteral("Templates/one.xml")),
            "<template name=\"One\" folder=\"One\"><page file=\"index.html\" multipage=\"1\"/></template>");
        WriteFileAtomically(Path(QStringLiteral("Templates/One/index.html")),
                            "<%picture id=\"a\" width=\"1\" height=\"1\" href=\"\"%>");
        MakeDirectoryPath(Path(QStringLiteral("photos")));
        CImage::FromRgba(QSize(64, 48), QByteArray(64 * 48 * 4, '\x77'))
            .Save(Path(QStringLiteral("one.jpg")), {ImageEncoding::Format::Jpeg, 90});
        Open();
        large = AddGallery();
        other = AddGallery();
        for (const QString& path : MakeFiles(QStringLiteral("a"))) {
            project->FindGallery(large)->AddPicture(path);
        }
        WriteTexts();
        project->Save(File());
    }

    // Links to one file, in no order of their names.
    QStringList MakeFiles(const QString& prefix) const
    {
        constexpr int step = 7919; // a prime
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            const int number = i * step % count;
            paths += Path(QStringLiteral("photos/%1%2_%3.jpg").arg(prefix).arg(number).arg(i));
            if (::link(Path(QStringLiteral("one.jpg")).toUtf8().constData(),
                       paths.back().toUtf8().constData()) != 0) {
                std::perror("link");
                std::exit(1);
            }
        }
        return paths;
    }

    double TimeReading()
    {
        std::vector<double> times;
        for (int round = 0; round < Rounds; ++round) {
            Make();
            const auto start = std::chrono::steady_clock::now();
            project->Open(File());
            times.push_back(Milliseconds(start));
        }
        return Median(times);
    }

    CGalleryProject& GetProject() { return *project; }

    const int count;
    int32_t large = 0;
    int32_t other = 0;

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

    void Open()
    {
        Make();
        project->New();
    }

    int32_t AddGallery()
    {
        const int32_t index = project->AddChildGallery(project->GetRootGalleryIndex());
        CGallery& gallery = *project->FindGallery(index);
        gallery.SetTemplate(gallery.GetLayout().GetTemplateKey());
        return index;
    }

    void WriteTexts()
    {
        CPictureList& pictures = project->FindGallery(large)->GetPictures();
        for (int32_t i = 0; i < pictures.GetCount(); ++i) {
            CPictureInfo& picture = *pictures.GetAt(i);
            picture.SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("Title %1").arg(i)));
            picture.SetVariable(
                QStringLiteral("description"),
                CVariant(QStringLiteral("A description of picture %1</br>in two lines").arg(i)));
        }
    }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    std::unique_ptr<CGalleryProject> project;
};

struct Times {
    std::vector<double> done;
    std::vector<double> undone;
    std::vector<double> redone;
};

// What a person asks for, with the making of the act.
using MakeAct = std::function<Act()>;

void Measure(const char* name, CGalleryProject& project, double reading, const MakeAct& makeAct)
{
    Times times;
    for (int round = 0; round < Rounds; ++round) {
        CEditHistory history(project, [](const Edited&) {});
        const auto timed = [](std::vector<double>& list, const std::function<void()>& work) {
            const auto start = std::chrono::steady_clock::now();
            work();
            list.push_back(Milliseconds(start));
        };
        timed(times.done, [&] {
            if (!history.Do(makeAct())) {
                std::fprintf(stderr, "%s has changed nothing\n", name);
                std::exit(1);
            }
        });
        timed(times.undone, [&] { history.GetStack().undo(); });
        timed(times.redone, [&] { history.GetStack().redo(); });
        history.GetStack().undo();
    }
    const double done = Median(times.done);
    const double undone = Median(times.undone);
    const double redone = Median(times.redone);
    std::printf("%-28s  %8.1f  %8.1f  %8.1f  %8.2f\n", name, done, undone, redone,
                std::max({done, undone, redone}) / reading);
    std::fflush(stdout);
}

std::vector<int32_t> Every(int step, int count)
{
    std::vector<int32_t> positions;
    for (int32_t i = 0; i < count; i += step) {
        positions.push_back(i);
    }
    return positions;
}

std::vector<TextChange> TextsOfAll(int count)
{
    std::vector<TextChange> changes;
    for (int32_t i = 0; i < count; ++i) {
        for (const char* name : {"title", "description"}) {
            changes.push_back({.place = {.owner = TextPlace::Owner::Picture,
                                         .name = QString::fromLatin1(name),
                                         .position = i},
                               .text = CVariant(QStringLiteral("Another text %1").arg(i))});
        }
    }
    return changes;
}

void MeasureActs(CLargeGallery& large, double reading)
{
    CGalleryProject& project = large.GetProject();
    const int32_t from = large.large;
    const int32_t to = large.other;
    const std::vector<int32_t> all = Every(1, large.count);
    const std::vector<int32_t> half = Every(2, large.count);
    const QStringList files = large.MakeFiles(QStringLiteral("b"));
    const QByteArray clip = WriteClip(*project.FindGallery(from), all);
    const auto measure = [&](const char* name, const MakeAct& makeAct) {
        Measure(name, project, reading, makeAct);
    };
    measure("delete half", [&] { return RemovePictures(project, from, half); });
    measure("delete all", [&] { return RemovePictures(project, from, all); });
    measure("turn all", [&] { return TurnPictures(from, all, true); });
    measure("turn one", [&] { return TurnPictures(from, {0}, true); });
    measure("sort by name", [&] {
        return SortPictures(from, OrderBy(*project.FindGallery(from), SortKey::Name,
                                          [](const QString&) { return QDateTime(); }));
    });
    measure("reverse",
            [&] { return SortPictures(from, OrderBy(*project.FindGallery(from), SortKey::Reverse, {})); });
    measure("move half to the end", [&] { return MovePicturesBefore(from, half, large.count); });
    measure("move half to a gallery", [&] { return MovePicturesTo(from, half, to); });
    measure("copy half to a gallery", [&] { return CopyPicturesTo(from, half, to); });
    measure("add as many", [&] { return AddPictures(from, files); });
    measure("add as many in the middle", [&] { return AddPicturesBefore(from, files, large.count / 2); });
    measure("paste all", [&] { return PastePictures(to, ReadClip(clip), 0); });
    measure("titles and descriptions",
            [&] { return EditPictureTexts(project, from, TextsOfAll(large.count)); });
    measure("delete the gallery", [&] { return RemoveGalleryAct(project, from); });
    measure("duplicate the gallery", [&] { return DuplicateGalleryAct(project, from); });
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    CLargeGallery large(argumentCount >= 2 ? std::atoi(arguments[1]) : 2000);
    const double reading = large.TimeReading();
    std::printf("%d pictures; reading the project takes %.1f ms\n", large.count, reading);
    std::printf("%-28s  %8s  %8s  %8s  %8s\n", "act", "done ms", "undo ms", "redo ms", "of reading");
    MeasureActs(large, reading);
    return 0;
}
