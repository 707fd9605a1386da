// How long a deployment takes beside what its decoder alone needs, measured in one run on one machine.
//
//     bench_deploy FOLDER
//
// Deploys the photographs of the folder and of those below it, each at 160x120 and 800x600, and decodes each
// of them once at the same reduction, on as many threads. Prints seconds and their ratio; the best of three
// rounds counts.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/StopSignal.h"
#include "common/TempFolder.h"
#include "content/PageGeneration.h"
#include "document/GalleryProject.h"
#include "document/PictureFiles.h"
#include "imaging/ImageFile.h"

namespace {

constexpr QSize Box(800, 600); // the larger of the two sizes
constexpr int Rounds = 3;

double SecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::vector<QString> FindPhotographs(const QString& folder)
{
    std::vector<QString> paths = ListPictureFiles(folder);
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        if (entry.isDirectory && !entry.isHidden) {
            const std::vector<QString> below = FindPhotographs(JoinPath(folder, entry.name));
            paths.insert(paths.end(), below.begin(), below.end());
        }
    }
    return paths;
}

class CNoProgress final : public CGenerationProgress {
public:
    void OnPageDone(int32_t, int32_t) override {}
};

// A project of the photographs in a folder of its own.
class CBenchProject {
public:
    explicit CBenchProject(const std::vector<QString>& photographs)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString()))
    {
        MakeDirectoryPath(Path(QStringLiteral("Templates/Two")));
        WriteFileAtomically(
            Path(QStringLiteral("Templates/two.xml")),
            "<template name=\"Two\" folder=\"Two\"><page file=\"index.html\" multipage=\"1\"/></template>");
        WriteFileAtomically(Path(QStringLiteral("Templates/Two/index.html")),
                            "<%picture id=\"a\" width=\"160\" height=\"120\" href=\"\"%>"
                            "<%picture id=\"a\" width=\"800\" height=\"600\" href=\"\"%>");
        project = std::make_unique<CGalleryProject>(CProjectEnvironment{
            .programFolder = Path(QString()),
            .picturesFolder = Path(QString()),
            .settings = settings.get(),
            .tempFolder = &tempFolder,
        });
        project->New();
        for (const QString& path : photographs) {
            project->GetRootGallery()->AddPicture(path);
        }
    }

    int Deploy()
    {
        RemoveDirectoryTree(Path(QStringLiteral("site")));
        CNoProgress progress;
        return GeneratePages(*project, Path(QStringLiteral("site")), CStopSignal(), progress).images;
    }

private:
    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    std::unique_ptr<CGalleryProject> project;
};

// The scale at which an upright picture fits the box; never enlarged.
double ScaleInBox(QSize size)
{
    return std::min({1.0, double(Box.width()) / size.width(), double(Box.height()) / size.height()});
}

void DecodeAll(const std::vector<QString>& photographs)
{
    std::atomic<size_t> next = 0;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
        workers.emplace_back([&] {
            for (size_t at = next++; at < photographs.size(); at = next++) {
                const ImageHeader header = ReadImageHeader(photographs[at]);
                const QSize upright = CImage::FromFile(photographs[at]).GetSize();
                DecodeImage(photographs[at], header, ChooseShrink(header, ScaleInBox(upright)));
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
}

double Megapixels(const std::vector<QString>& photographs)
{
    double pixels = 0;
    for (const QString& path : photographs) {
        const QSize size = CImage::FromFile(path).GetSize();
        pixels += double(size.width()) * size.height();
    }
    return pixels / 1e6;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    if (argumentCount != 2) {
        std::fputs("Usage: bench_deploy FOLDER\n", stderr);
        return 2;
    }
    const std::vector<QString> photographs = FindPhotographs(QString::fromLocal8Bit(arguments[1]));
    CBenchProject project(photographs);
    double deploy = 1e9;
    double decode = 1e9;
    int images = 0;
    for (int round = 0; round < Rounds; ++round) {
        deploy = std::min(deploy, SecondsOf([&] { images = project.Deploy(); }));
        decode = std::min(decode, SecondsOf([&] { DecodeAll(photographs); }));
    }
    std::printf("%zu photographs, %.1f megapixels, %d images at 160x120 and 800x600\n", photographs.size(),
                Megapixels(photographs), images);
    std::printf("deployment %.2f s, decoding alone %.2f s, ratio %.2f\n", deploy, decode, deploy / decode);
    return 0;
}
