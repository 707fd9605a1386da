// How fast a deployment is beside what its decoder and encoder alone need, and beside vipsthumbnail, measured
// in one run on one machine.
//
//     bench_deploy [FOLDER]
//     bench_deploy --repeat [FOLDER]
//
// Deploys the photographs of the folder and of those below it, each at 160x120 and 800x600; without a folder,
// 24 photographs of 10 to 25 megapixels that it makes. The bound: each source decoded once at the reduction
// used and each result encoded once, on as many threads. Prints seconds, ratios and the peak of memory; the
// best of three rounds counts. Then, with --repeat this alone, what a second run costs that finds nothing
// changed: of the same project, and of a tree of galleries of four photographs each, which shows the covers
// of the galleries as well.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <jpeglib.h>
#include <random>
#include <thread>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "common/Settings.h"
#include "common/StopSignal.h"
#include "common/TempFolder.h"
#include "common/WorkerPool.h"
#include "content/DeploymentRecord.h"
#include "content/PageGeneration.h"
#include "document/pictures/PictureFiles.h"
#include "document/project/GalleryProject.h"
#include "imaging/Image.h"
#include "imaging/ImageFile.h"
#include "imaging/codecs/JpegDecoder.h"

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

// Each picture at two sizes. folder: of the program, with a trailing separator.
void WriteLayout(const QString& folder)
{
    MakeDirectoryPath(folder + QStringLiteral("Templates/Two"));
    WriteFileAtomically(
        folder + QStringLiteral("Templates/two.xml"),
        "<template name=\"Two\" folder=\"Two\"><page file=\"index.html\" multipage=\"1\"/></template>");
    WriteFileAtomically(folder + QStringLiteral("Templates/Two/index.html"),
                        "<%picture id=\"a\" width=\"160\" height=\"120\" href=\"\"%>"
                        "<%picture id=\"a\" width=\"800\" height=\"600\" href=\"\"%>");
}

// A project of the photographs in a folder of its own.
class CBenchProject {
public:
    explicit CBenchProject(const std::vector<QString>& photographs)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine")))),
          tempFolder(Path(QString()))
    {
        WriteLayout(Path(QString()));
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

    QString GetSite() const { return Path(QStringLiteral("site")); }

    void RemoveSite() const { RemoveDirectoryTree(GetSite()); }

    int Deploy()
    {
        CNoProgress progress;
        return GeneratePages(*project, {GetSite()}, CStopSignal(), progress).images;
    }

private:
    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    std::unique_ptr<CGalleryProject> project;
};

// Runs of one project, each as a program of its own makes it: with the document, its temporary folder and the
// record's file opened anew.
class CRepeatedProject {
public:
    enum class Shape { OneGallery, Tree };

    CRepeatedProject(const std::vector<QString>& photographs, Shape shape)
        : settings(CreateIniSettings(Path(QStringLiteral("user")), Path(QStringLiteral("machine"))))
    {
        WriteLayout(Path(QString()));
        CTempFolder tempFolder(Path(QString()));
        CGalleryProject project(EnvironmentWith(tempFolder));
        project.New();
        galleryCount = shape == Shape::Tree ? photographs.size() / 4 + 1 : 1;
        for (size_t i = 1; i < galleryCount; ++i) {
            project.AddChildGallery(static_cast<int32_t>((i - 1) / 2));
        }
        for (size_t i = 0; i < photographs.size(); ++i) {
            const size_t gallery = galleryCount > 1 ? 1 + i % (galleryCount - 1) : 0;
            project.FindGallery(static_cast<int32_t>(gallery))->AddPicture(photographs[i]);
        }
        project.Save(Path(QStringLiteral("bench.gallery")));
    }

    size_t GetGalleryCount() const { return galleryCount; }

    void Deploy()
    {
        constexpr auto restless = std::chrono::milliseconds(0); // the photographs may have been made just now
        CTempFolder tempFolder(Path(QString()));
        CProjectEnvironment environment = EnvironmentWith(tempFolder);
        environment.covers = {.folder = Path(QStringLiteral("covers")), .restless = restless};
        CGalleryProject project(environment);
        project.Open(Path(QStringLiteral("bench.gallery")));
        project.SetPreviewMode(false);
        const QString site = Path(QStringLiteral("site"));
        CDeploymentRecord record(Path(QStringLiteral("record")), site, restless);
        CNoProgress progress;
        GeneratePages(project, {site, &record}, CStopSignal(), progress);
        record.RemoveLeftovers();
        record.Save();
    }

private:
    QString Path(const QString& name) const { return scratch.path() + QLatin1Char('/') + name; }

    CProjectEnvironment EnvironmentWith(CTempFolder& tempFolder) const
    {
        return {.programFolder = Path(QString()),
                .picturesFolder = Path(QString()),
                .settings = settings.get(),
                .tempFolder = &tempFolder};
    }

    const QTemporaryDir scratch;
    const std::unique_ptr<CSettingsStore> settings;
    size_t galleryCount = 1;
};

// The scale at which an upright picture fits the box; never enlarged.
double ScaleInBox(QSize size)
{
    return std::min({1.0, double(Box.width()) / size.width(), double(Box.height()) / size.height()});
}

JpegPicture Decode(const QString& path, int shrink)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s can't be read\n", qPrintable(path));
        std::exit(1);
    }
    return DecodeJpeg(CFileBytes(file.handle()), shrink);
}

void DecodeAsUsed(const QString& photograph)
{
    const ImageHeader header = ReadImageHeader(photograph);
    const QSize upright = UprightSize(header.size, header.orientation);
    Decode(photograph, ChooseShrink(header, ScaleInBox(upright)));
}

// By libjpeg alone, with the settings of the results.
void Encode(const JpegPicture& picture)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &bytes, &length);
    info.image_width = static_cast<JDIMENSION>(picture.size.width());
    info.image_height = static_cast<JDIMENSION>(picture.size.height());
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    info.comp_info[0].h_samp_factor = 1;
    info.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        auto* row = const_cast<JSAMPLE*>(&picture.bytes[size_t(info.next_scanline) * info.image_width * 3]);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::free(bytes);
}

std::vector<JpegPicture> ReadResults(const QString& site)
{
    std::vector<JpegPicture> results;
    for (const QString& path : FindPhotographs(site)) {
        results.push_back(Decode(path, 1));
    }
    return results;
}

// Both sizes of every photograph, by as many processes as there are cores.
void RunVipsThumbnail(const std::vector<QString>& photographs, const QString& folder)
{
    OnAllCores(photographs.size(), [&](size_t at) {
        for (const char* const size : {"160x120", "800x600"}) {
            const QString target = QStringLiteral("%1/%2-%3.jpg[Q=100,strip]")
                                       .arg(folder, QString::number(at), QLatin1String(size));
            QProcess::execute(QStringLiteral("vipsthumbnail"),
                              {photographs[at], QStringLiteral("--size"), QLatin1String(size),
                               QStringLiteral("-o"), target});
        }
    });
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

// Smooth shapes, edges and grain: as hard to decode as a photograph.
void MakePhotograph(const QString& path, QSize size, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<double> phases(12);
    for (double& phase : phases) {
        phase = std::uniform_real_distribution(0.0, 6.28)(random);
    }
    QByteArray bytes(qsizetype(size.width()) * size.height() * 4, '\xff');
    auto* pixel = reinterpret_cast<uint8_t*>(bytes.data());
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x, pixel += 4) {
            const double u = x * 6.28 / size.width();
            const double v = y * 6.28 / size.height();
            const double shape = std::sin(2 * u + phases[0]) + std::sin(3 * v + phases[1]) +
                                 std::sin(u * v * 3 + phases[2]) +
                                 (std::sin(40 * u + 23 * v) > 0.6 ? 0.7 : 0);
            const int grain = int(random() % 25) - 12;
            for (int c = 0; c < 3; ++c) {
                pixel[c] = uint8_t(
                    std::clamp(128 + 28 * shape + 20 * std::sin(u + phases[3 + c]) + grain, 0.0, 255.0));
            }
        }
    }
    CImage::FromRgba(size, bytes).Save(path, {ImageEncoding::Format::Jpeg, 90});
}

void MakePhotographs(const QString& folder)
{
    const QSize sizes[] = {{4000, 2672}, {4608, 3456}, {5184, 3456},
                           {6000, 4000}, {3456, 4608}, {5472, 3648}};
    OnAllCores(24, [&](size_t at) {
        MakePhotograph(QStringLiteral("%1/%2.jpg").arg(folder).arg(at), sizes[at % std::size(sizes)],
                       unsigned(at));
    });
}

// One deployment in a process of its own: prints the peak of its memory in MB.
int DeployOnce(const std::vector<QString>& photographs)
{
    CBenchProject(photographs).Deploy();
    // Not getrusage: its peak counts from before the program was loaded.
    QFile status(QStringLiteral("/proc/self/status"));
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qsizetype peak = text.indexOf("VmHWM:");
    std::printf("%.0f", text.mid(peak + 6).trimmed().split(' ').value(0).toDouble() / 1024);
    return peak > 0 ? 0 : 1;
}

QByteArray MeasureMemory(const QString& program, const QString& folder)
{
    QProcess process;
    process.start(program, {QStringLiteral("--once"), folder});
    process.waitForFinished(-1);
    return process.readAllStandardOutput();
}

void Measure(const std::vector<QString>& photographs, const QByteArray& memory)
{
    CBenchProject project(photographs);
    const int images = project.Deploy();
    const std::vector<JpegPicture> results = ReadResults(project.GetSite());
    const QTemporaryDir thumbnails;
    double deploy = 1e9;
    double decode = 1e9;
    double encode = 1e9;
    double vips = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        project.RemoveSite();
        deploy = std::min(deploy, SecondsOf([&] { project.Deploy(); }));
        decode =
            std::min(decode, SecondsOf([&] {
                         OnAllCores(photographs.size(), [&](size_t at) { DecodeAsUsed(photographs[at]); });
                     }));
        encode = std::min(
            encode, SecondsOf([&] { OnAllCores(results.size(), [&](size_t at) { Encode(results[at]); }); }));
        vips = std::min(vips, SecondsOf([&] { RunVipsThumbnail(photographs, thumbnails.path()); }));
    }
    const double bound = decode + encode;
    std::printf("%zu photographs, %.1f megapixels, %d images at 160x120 and 800x600\n", photographs.size(),
                Megapixels(photographs), images);
    std::printf("deployment     %6.2f s   peak of memory %s MB\n", deploy, memory.constData());
    std::printf("bound          %6.2f s   (decoding %.2f s, encoding %.2f s)   ratio %.2f\n", bound, decode,
                encode, deploy / bound);
    std::printf("vipsthumbnail  %6.2f s   ratio %.2f\n", vips, vips / deploy);
}

void MeasureRepeat(const std::vector<QString>& photographs, CRepeatedProject::Shape shape)
{
    CRepeatedProject project(photographs, shape);
    const double first = SecondsOf([&] { project.Deploy(); });
    double again = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        again = std::min(again, SecondsOf([&] { project.Deploy(); }));
    }
    std::printf("repeat         %6.3f s   %.1f %% of the first, %.2f s   (galleries: %zu)\n", again,
                100 * again / first, first, project.GetGalleryCount());
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    QStringList names = QCoreApplication::arguments().mid(1);
    if (names.value(0) == QStringLiteral("--once")) {
        return DeployOnce(FindPhotographs(names.value(1)));
    }
    const bool isRepeatAlone = names.value(0) == QStringLiteral("--repeat");
    names = names.mid(isRepeatAlone ? 1 : 0);
    const QTemporaryDir made;
    if (names.isEmpty()) {
        MakePhotographs(made.path());
        names += made.path();
    }
    const std::vector<QString> photographs = FindPhotographs(names[0]);
    if (!isRepeatAlone) {
        Measure(photographs, MeasureMemory(QCoreApplication::applicationFilePath(), names[0]));
    }
    MeasureRepeat(photographs, CRepeatedProject::Shape::OneGallery);
    MeasureRepeat(photographs, CRepeatedProject::Shape::Tree);
    return 0;
}
