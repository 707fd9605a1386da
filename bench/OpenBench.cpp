// How long it takes to open a large project beside what the reading of its XML alone takes.
//
//     bench_open [GALLERIES PICTURES_OF_EACH [missing]]
//
// With "missing" the pictures are taken away first, and a thousand folders with other files lie beside the
// project: what is looked for then is found nowhere.
//
// Makes a project of 200 galleries with 100 pictures each (or as many as named) below one root, opens it and
// reads its file. Prints seconds, their ratio, and how many files the opening made; the best of three rounds
// counts.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "common/xmldomutils.h"
#include "document/project/GalleryProject.h"

namespace {

constexpr int Rounds = 3;

double SecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class CLargeProject {
public:
    CLargeProject()
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString()))
    {
        MakeDirectoryPath(Path(QStringLiteral("Templates/One")));
        WriteFileAtomically(
            Path(QStringLiteral("Templates/one.xml")),
            "<template name=\"One\" folder=\"One\"><page file=\"index.html\" multipage=\"1\"/></template>");
        WriteFileAtomically(Path(QStringLiteral("Templates/One/index.html")),
                            "<%picture id=\"a\" width=\"1\" height=\"1\" href=\"\"%>");
    }

    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }

    std::unique_ptr<CGalleryProject> Make() const
    {
        return std::make_unique<CGalleryProject>(CProjectEnvironment{.programFolder = Path(QString()),
                                                                     .picturesFolder = Path(QString()),
                                                                     .settings = settings.get(),
                                                                     .tempFolder = &tempFolder});
    }

    void Write(int galleries, int pictures) const
    {
        const auto project = Make();
        project->New();
        for (int i = 0; i < galleries; ++i) {
            CGallery& gallery =
                *project->FindGallery(project->AddChildGallery(project->GetRootGalleryIndex()));
            gallery.SetTemplate(gallery.GetLayout().GetTemplateKey());
            const QString folder = Path(QStringLiteral("photos/%1").arg(i));
            MakeDirectoryPath(folder);
            for (int j = 0; j < pictures; ++j) {
                const QString picture = JoinPath(folder, QStringLiteral("%1.jpg").arg(j));
                ReplaceFile(picture, "x", Durability::Plain);
                gallery.AddPicture(picture);
            }
        }
        project->Save(File());
    }

    // The photos go; in their place come folders with as many files of other names.
    void LoseAllPictures() const
    {
        constexpr int folderCount = 1000;
        constexpr int filesOfEach = 20;
        QDir().rename(Path(QStringLiteral("photos")), Path(QStringLiteral(".photos")));
        for (int i = 0; i < folderCount; ++i) {
            const QString folder = Path(QStringLiteral("beside/%1/%2").arg(i % 30).arg(i));
            MakeDirectoryPath(folder);
            for (int j = 0; j < filesOfEach; ++j) {
                ReplaceFile(JoinPath(folder, QStringLiteral("other%1.jpg").arg(j)), "x", Durability::Plain);
            }
        }
    }

    QString File() const { return Path(QStringLiteral("large.gallery")); }
    size_t CountTemporaryFiles() const { return ListDirectory(tempFolder.GetPath()).size(); }

private:
    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    mutable CTempFolder tempFolder;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const int galleries = argumentCount >= 3 ? std::atoi(arguments[1]) : 200;
    const int pictures = argumentCount >= 3 ? std::atoi(arguments[2]) : 100;
    const CLargeProject large;
    large.Write(galleries, pictures);
    if (argumentCount == 4) {
        large.LoseAllPictures();
    }
    const size_t filesBefore = large.CountTemporaryFiles();
    double open = 1e9;
    double parse = 1e9;
    double save = 1e9;
    size_t absent = 0;
    for (int round = 0; round < Rounds; ++round) {
        const auto project = large.Make();
        open = std::min(open, SecondsOf([&] { project->Open(large.File()); }));
        absent = project->GetAbsentFiles().size();
        save = std::min(save, SecondsOf([&] { project->Save(large.File()); }));
        parse = std::min(parse, SecondsOf([&] { LoadDocument(large.File()); }));
    }
    std::printf("%d galleries with %d pictures each\n", galleries, pictures);
    std::printf("opening %.3f s, parsing the XML alone %.3f s, ratio %.1f, files made %zu\n", open, parse,
                open / parse, large.CountTemporaryFiles() - filesBefore);
    std::printf("saving %.3f s, %zu files not there\n", save, absent);
    return 0;
}
