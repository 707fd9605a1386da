#include "content/PageGeneration.h"

#include <gmock/gmock.h>
#include <ostream>

#include <QFile>
#include <QRegularExpression>

#include "PlainGenerator.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/ContentGeneratorFolder.h"
#include "content/GalleryWalk.h"
#include "content/ImageProduction.h"
#include "content/PagesGenerator.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateParsingException.h"

using testing::ElementsAre;

namespace {

class PageGeneration : public testing::Test, protected CGenerationProgress {
protected:
    PageGeneration() { fixture.WriteStyle(QStringLiteral("Blue")); }

    void OnPageDone(int32_t donePages, int32_t totalPages) override
    {
        progress += QStringLiteral("%1/%2").arg(donePages).arg(totalPages);
        if (donePages == cancelAt) {
            stop.Set();
        }
    }

    // A layout of these pages, each a file "NAME: " and so many pictures.
    void WriteLayout(const QByteArray& pages, const std::vector<std::pair<QString, int>>& slotsOfPages)
    {
        fixture.WriteLayout(QStringLiteral("a"), pages);
        for (const auto& [name, slotCount] : slotsOfPages) {
            QByteArray text = name.toUtf8() + " <%=page.index%>:";
            for (int i = 0; i < slotCount; ++i) {
                const QByteArray id = "p" + QByteArray::number(i);
                text += " <%=" + id + ".file_name%><%picture id=\"" + id +
                        "\" width=\"20\" height=\"20\" href=\"\"%>";
            }
            fixture.WritePage(QStringLiteral("a"), name, text);
        }
    }

    void AddPictures(CGallery& gallery, int count)
    {
        for (int i = 0; i < count; ++i) {
            gallery.AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(i)));
        }
    }

    GenerationResult Generate()
    {
        fixture.GetProject().SetPreviewMode(false);
        const GenerationResult result =
            GeneratePages(fixture.GetProject(), {fixture.scratch.Path(QStringLiteral("site"))}, stop, *this);
        fixture.GetProject().SetPreviewMode(true);
        return result;
    }

    QStringList SiteFiles(const QString& filter = QString()) const
    {
        QStringList files;
        for (const QString& file : fixture.scratch.ListFiles()) {
            if (file.startsWith(QStringLiteral("site/")) && file.contains(filter)) {
                files += file.mid(5);
            }
        }
        return files;
    }

    CProjectFixture fixture;
    CStopSignal stop;
    QStringList progress;
    int cancelAt = -1;
};

// 8 bits a channel, rounded to sixteenths, since a JPEG is not exact.
uint32_t MiddleOf(const QString& path)
{
    const CImage image = CImage::FromFile(path);
    const QByteArray bytes = image.GetRgba();
    const QSize size = image.GetSize();
    const qsizetype middle = (qsizetype(size.height()) / 2 * size.width() + size.width() / 2) * 4;
    uint32_t colour = 0;
    for (qsizetype i = 0; i < 3; ++i) {
        const auto channel = static_cast<unsigned char>(bytes.at(middle + i));
        colour = colour << 8 | (std::min(channel + 8, 255) & 0xf0);
    }
    return colour;
}

class CNoListener final : public CImageProduction::Listener {
public:
    void OnPageDone() override {}
};

// A page of one picture that gives the signal while the second page is written.
class CStoppingPage final : public CCompoundTemplateSection {
public:
    explicit CStoppingPage(CStopSignal& stop) : stop(stop) {}
    void Bind(CImageIterator& iterator, CContentGenerator&) override
    {
        iterator.BindPicture(QStringLiteral("p"));
    }
    void Generate(CImageIterator&, CContentGenerator&, std::ostream& out) override
    {
        out << "page";
        if (++pages == 2) {
            stop.Set();
        }
    }

private:
    CStopSignal& stop;
    int pages = 0;
};

class CWalkRecorder final : public CGalleryTemplatesProcessor {
public:
    bool ProcessPage(CCompoundTemplateSection&, CImageIterator& iterator, bool multipage) override
    {
        calls += iterator.GetPageFileName(0) + (multipage ? QStringLiteral("*") : QString());
        return calls.size() != stopAt;
    }
    void ProcessGallery(const QString& subFolder, const CGallery&) override
    {
        calls += QStringLiteral("[%1]").arg(subFolder);
    }

    QStringList calls;
    int stopAt = -1;
};

} // namespace

TEST_F(PageGeneration, WritesSinglePagesAndMultipageSetsInOrder)
{
    WriteLayout("<page file=\"index.html\"/><page file=\"picture.html\" multipage=\"1\"/>",
                {{QStringLiteral("index.html"), 0}, {QStringLiteral("picture.html"), 1}});
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 7);
    const GenerationResult result = Generate();
    EXPECT_EQ(result.pages, 8);
    EXPECT_EQ(result.images, 7);
    EXPECT_EQ(progress.size(), 8);
    EXPECT_EQ(progress.back(), QStringLiteral("8/8"));
    EXPECT_THAT(SiteFiles(QStringLiteral(".html")),
                ElementsAre(QStringLiteral("index.html"), QStringLiteral("picture.html"),
                            QStringLiteral("picture1.html"), QStringLiteral("picture2.html"),
                            QStringLiteral("picture3.html"), QStringLiteral("picture4.html"),
                            QStringLiteral("picture5.html"), QStringLiteral("picture6.html")));
    EXPECT_TRUE(
        fixture.scratch.Read(QStringLiteral("site/picture6.html")).startsWith("picture.html 6: 6.png<div"));
}

TEST_F(PageGeneration, AMultipageSetEndsWithItsLastPicture)
{
    const struct {
        int slotCount;
        int pictures;
        int pages;
    } rows[] = {{3, 7, 3}, {6, 6, 1}, {6, 7, 2}, {1, 0, 1}, {5, 1, 1}};
    for (const auto& row : rows) {
        WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), row.slotCount}});
        fixture.NewProject();
        AddPictures(fixture.GetRoot(), row.pictures);
        EXPECT_EQ(Generate().pages, row.pages) << row.slotCount << " slots, " << row.pictures << " pictures";
    }
}

TEST_F(PageGeneration, AMultipagePageWithoutPictureSlotsIsOnePage)
{
    WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), 0}});
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 3);
    const GenerationResult result = Generate();
    EXPECT_EQ(result.pages, 1);
    // It counted 0 pages, so the progress runs past the total.
    EXPECT_THAT(progress, ElementsAre(QStringLiteral("1/0")));
}

TEST_F(PageGeneration, EveryGalleryLiesDirectlyBelowTheTarget)
{
    WriteLayout("<page file=\"index.html\" multipage=\"1\"/>", {{QStringLiteral("index.html"), 4}});
    CGalleryProject& project = fixture.NewProject();
    const int32_t child = project.AddChildGallery(project.GetRootGalleryIndex());
    const int32_t grandchild = project.AddChildGallery(child);
    const int32_t second = project.AddChildGallery(project.GetRootGalleryIndex());
    AddPictures(*project.GetGallery(grandchild), 2);
    Generate();
    QStringList expected;
    for (const QString& folder : {QString(), QStringLiteral("%1/").arg(child),
                                  QStringLiteral("%1/").arg(grandchild), QStringLiteral("%1/").arg(second)}) {
        expected += folder + QStringLiteral("Blue/style.css");
        expected += folder + QStringLiteral("Common/base.css");
        expected += folder + QStringLiteral("index.html");
    }
    expected += QStringLiteral("%1/pictures/02020.png").arg(grandchild);
    expected += QStringLiteral("%1/pictures/12020.png").arg(grandchild);
    // A child is shown in its parent by its cover.
    const auto pageImageOfCover = [&](int32_t index) {
        QString name = ExtractLastName(project.FindGallery(index)->GetCover().GetName());
        return QStringLiteral("pictures/") +
               name.insert(name.lastIndexOf(QLatin1Char('.')), QStringLiteral("2020"));
    };
    expected += pageImageOfCover(child);
    expected += pageImageOfCover(second);
    expected += QStringLiteral("%1/").arg(child) + pageImageOfCover(grandchild);
    expected.sort();
    EXPECT_EQ(SiteFiles(), expected);
}

TEST_F(PageGeneration, PagesReferToTheStyleCopiesNextToThem)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                      "<%=page.styledir%><%=page.css%> <%=page.common_styledir%>");
    fixture.NewProject();
    Generate();
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/index.html")), "Blue/style.css Common/");
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(PageGeneration, TheCurrentPageOfEachGalleryIsSetBack)
{
    WriteLayout("<page file=\"index.html\"/><page file=\"picture.html\" multipage=\"1\"/>",
                {{QStringLiteral("index.html"), 0}, {QStringLiteral("picture.html"), 1}});
    CGalleryProject& project = fixture.NewProject();
    CGallery& root = fixture.GetRoot();
    root.SetTemplatePage(QStringLiteral("picture.html"));
    root.GetLayout().SetPageNumber(4);
    const int32_t child = project.AddChildGallery(project.GetRootGalleryIndex());
    ASSERT_TRUE(project.GetGallery(child)->GetLayout().GetTemplatePage().isEmpty());
    Generate();
    EXPECT_EQ(root.GetLayout().GetTemplatePage(), QStringLiteral("picture.html"));
    EXPECT_EQ(root.GetLayout().GetPageNumber(), 4);
    EXPECT_TRUE(project.GetGallery(child)->GetLayout().GetTemplatePage().isEmpty());
}

TEST_F(PageGeneration, TheCurrentPageIsSetBackWhenAPageFails)
{
    WriteLayout("<page file=\"index.html\"/><page file=\"bad.html\"/>", {{QStringLiteral("index.html"), 0}});
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("bad.html"), "<%nothing%>");
    fixture.NewProject();
    EXPECT_THROW(Generate(), CTemplateParsingException);
    EXPECT_EQ(fixture.GetRoot().GetLayout().GetTemplatePage(), QStringLiteral("index.html"));
}

TEST_F(PageGeneration, APageWhoseNameDoesNotSplitYieldsNoFile)
{
    WriteLayout(
        "<page file=\".html\"/><page file=\"12.html\"/><page file=\"index.html\"/>",
        {{QStringLiteral(".html"), 0}, {QStringLiteral("12.html"), 0}, {QStringLiteral("index.html"), 0}});
    fixture.NewProject();
    EXPECT_EQ(Generate().pages, 1);
    EXPECT_THAT(SiteFiles(QStringLiteral(".html")), ElementsAre(QStringLiteral("index.html")));
}

TEST_F(PageGeneration, ACancelledRunKeepsWhatIsWrittenAndEnds)
{
    WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), 1}});
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 40);
    cancelAt = 1;
    const GenerationResult result = Generate();
    EXPECT_GE(result.pages, 1);
    EXPECT_LT(result.pages, 40);
    EXPECT_FALSE(SiteFiles(QStringLiteral("p.html")).isEmpty());
}

TEST_F(PageGeneration, ARunCancelledBeforeItStartsWritesNoPage)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 0}});
    fixture.NewProject();
    stop.Set();
    EXPECT_EQ(Generate().pages, 0);
    EXPECT_TRUE(SiteFiles().isEmpty());
}

TEST_F(PageGeneration, APageThatCannotBeWrittenIsNamed)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 0}});
    fixture.NewProject();
    const QString path = fixture.scratch.Path(QStringLiteral("site/index.html"));
    MakeDirectoryPath(path);
    try {
        Generate();
        FAIL();
    } catch (const CFileException& error) {
        EXPECT_EQ(error.GetCaption(), QStringLiteral("The system could not create a new file %1.").arg(path));
        EXPECT_EQ(error.GetDescription(), QStringLiteral("Probably the file name is invalid."));
        EXPECT_EQ(error.GetAdvice(),
                  QStringLiteral("Please check the folder existence and the file name correctness."));
    }
}

TEST_F(PageGeneration, APageFileThatIsMissingIsNamed)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\"/>");
    WriteFileAtomically(fixture.scratch.Write(QStringLiteral("program/Templates/a/other.html"), ""), "");
    fixture.NewProject();
    try {
        Generate();
        FAIL();
    } catch (const CFileException& error) {
        EXPECT_EQ(error.GetCaption(),
                  QStringLiteral("Could not open file %1.")
                      .arg(fixture.scratch.Path(QStringLiteral("program/Templates/a/index.html"))));
        EXPECT_EQ(error.GetDescription(), QStringLiteral("Probably the file does not exist."));
        EXPECT_EQ(error.GetAdvice(), QStringLiteral("Please inform your gallery template developer."));
    }
}

TEST_F(PageGeneration, APictureThatVanishedStopsTheRunWithItsPath)
{
    WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), 1}});
    fixture.NewProject();
    const QString path = fixture.WritePicture(QStringLiteral("gone.jpg"));
    fixture.GetRoot().AddPicture(path);
    ASSERT_TRUE(QFile::remove(path));
    try {
        Generate();
        FAIL();
    } catch (const CExceptionBase& error) {
        EXPECT_TRUE(error.GetDescription().contains(path)) << qPrintable(error.GetDescription());
    }
}

TEST_F(PageGeneration, ADeployedPageHasTheSameNamesForTheSamePictureInEachSize)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                      "<%picture id=\"a\" width=\"20\" height=\"15\" href=\"\"%>"
                      "<%picture id=\"a\" width=\"10\" height=\"10\" href=\"\"%>");
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 1);
    EXPECT_EQ(Generate().images, 2);
    EXPECT_EQ(CImage::FromFile(fixture.scratch.Path(QStringLiteral("site/pictures/02015.png"))).GetSize(),
              QSize(20, 15));
    EXPECT_EQ(CImage::FromFile(fixture.scratch.Path(QStringLiteral("site/pictures/01010.png"))).GetSize(),
              QSize(10, 7));
}

TEST_F(PageGeneration, TheRedeployModeHasNoEffectOnTheFiles)
{
    WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), 1}});
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 2);
    for (const int32_t mode : {0, 1}) {
        fixture.GetProject().GetDeploySettings().redeploy_mode = mode;
        fixture.scratch.Write(QStringLiteral("site/pictures/02020.png"), "old");
        Generate();
        EXPECT_EQ(CImage::FromFile(fixture.scratch.Path(QStringLiteral("site/pictures/02020.png"))).GetSize(),
                  QSize(20, 15));
    }
}

TEST_F(PageGeneration, ACancelWhileStylesAreCopiedLeavesTheGalleryWithoutPages)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 0}});
    CGalleryProject& project = fixture.NewProject();
    project.AddChildGallery(project.GetRootGalleryIndex());
    // The root's only page is done before the child's styles are copied; the signal is then seen after the
    // first of them.
    cancelAt = 1;
    EXPECT_EQ(Generate().pages, 1);
    EXPECT_THAT(SiteFiles(QStringLiteral("1/")), ElementsAre(QStringLiteral("1/Blue/style.css")));
    EXPECT_FALSE(FolderExists(fixture.scratch.Path(QStringLiteral("site/1/pictures"))));
}

TEST_F(PageGeneration, FilesOfStylesAreListedInsteadOfCopied)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 0}});
    CGalleryProject& project = fixture.NewProject();
    project.AddChildGallery(project.GetRootGalleryIndex());
    std::map<QString, QString> uncopied;
    const QString site = fixture.scratch.Path(QStringLiteral("site"));
    GeneratePages(project, {site, nullptr, &uncopied}, stop, *this);
    EXPECT_THAT(SiteFiles(QString()),
                ElementsAre(QStringLiteral("1/index.html"), QStringLiteral("index.html")));
    const std::map<QString, QString> listed = uncopied;
    uncopied.clear();
    EXPECT_EQ(Generate().pages, 2);
    QStringList copied;
    for (const auto& [path, source] : listed) {
        copied += path;
        QFile original(source);
        EXPECT_TRUE(original.open(QIODevice::ReadOnly) &&
                    IsFileOf(site + QLatin1Char('/') + path, original.readAll()))
            << qPrintable(path);
    }
    EXPECT_TRUE(copied.contains(QStringLiteral("1/Blue/style.css")))
        << qPrintable(copied.join(QLatin1Char(' ')));
    for (const QString& file : SiteFiles(QString())) {
        EXPECT_TRUE(listed.contains(file) || file.endsWith(QStringLiteral(".html"))) << qPrintable(file);
    }
}

TEST_F(PageGeneration, ACancelInAMultipageSetLeavesThePageInProgressOut)
{
    WriteLayout("<page file=\"p.html\" multipage=\"1\"/>", {{QStringLiteral("p.html"), 1}});
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 7);
    fixture.GetRoot().SetTemplatePage(QStringLiteral("p.html"));
    const QString site = fixture.scratch.Path(QStringLiteral("site"));
    CNoListener listener;
    CImageProduction production(listener, stop);
    CContentGeneratorFolder generator({.targetFolder = site, .bannerServer = QString()}, production);
    CPagesGenerator writer({site, generator, production, stop});
    CStoppingPage page(stop);
    CGalleryIterator iterator;
    iterator.Init(fixture.GetRoot());
    EXPECT_FALSE(writer.ProcessPage(page, iterator, true));
    production.Finish();
    // The second page is not whole.
    EXPECT_THAT(SiteFiles(QStringLiteral(".html")), ElementsAre(QStringLiteral("p.html")));
}

TEST_F(PageGeneration, WalksDepthFirstByIndexAndEachGalleryInTheOrderOfItsLayout)
{
    WriteLayout("<page file=\"z.html\"/><page file=\"a.html\" multipage=\"1\"/>",
                {{QStringLiteral("z.html"), 0}, {QStringLiteral("a.html"), 1}});
    CGalleryProject& project = fixture.NewProject();
    const int32_t first = project.AddChildGallery(project.GetRootGalleryIndex());
    const int32_t second = project.AddChildGallery(project.GetRootGalleryIndex());
    const int32_t below = project.AddChildGallery(first);
    QStringList expected;
    for (const QString& folder : {QString(), QStringLiteral("/%1").arg(first),
                                  QStringLiteral("/%1").arg(below), QStringLiteral("/%1").arg(second)}) {
        expected += QStringList(
            {QStringLiteral("[%1]").arg(folder), QStringLiteral("z.html"), QStringLiteral("a.html*")});
    }
    CPlainGenerator generator;
    CGalleryWalk walk(project, generator, stop);
    CWalkRecorder whole;
    EXPECT_TRUE(walk.Run(whole));
    EXPECT_EQ(whole.calls, expected);
    // A page of a child ends the whole walk.
    CWalkRecorder stopped;
    stopped.stopAt = 5;
    EXPECT_FALSE(walk.Run(stopped));
    EXPECT_EQ(stopped.calls, expected.mid(0, 5));
}

TEST_F(PageGeneration, NoTwoPicturesOfAGalleryShareAFile)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 6}});
    fixture.NewProject();
    const std::vector<std::pair<QString, uint32_t>> pictures = {
        {QStringLiteral("a/x.png"), 0x800000},  {QStringLiteral("b/x.png"), 0x008000},
        {QStringLiteral("x.bmp"), 0x000080},    {QStringLiteral("a b.png"), 0x808000},
        {QStringLiteral("a10b.png"), 0x008080}, {QStringLiteral("X.png"), 0x800080}};
    for (const auto& [name, rgb] : pictures) {
        MakeDirectoryPath(ExtractFolder(fixture.scratch.Path(QStringLiteral("photos/") + name)));
        fixture.GetRoot().AddPicture(fixture.WritePicture(name, QSize(40, 30), rgb));
    }
    EXPECT_EQ(Generate().images, 6);
    const QString page = QString::fromUtf8(fixture.scratch.Read(QStringLiteral("site/index.html")));
    qsizetype at = 0;
    for (const auto& [name, rgb] : pictures) {
        at = page.indexOf(QStringLiteral("src=\"pictures/"), at) + 5;
        const QString file = page.mid(at, page.indexOf(QLatin1Char('"'), at) - at);
        EXPECT_EQ(MiddleOf(fixture.scratch.Path(QStringLiteral("site/") + file)), rgb)
            << qPrintable(name) << ' ' << qPrintable(file);
    }
}

TEST_F(PageGeneration, SizesThatRunIntoNamesDoNotMakePicturesShareAFile)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                      "<%picture id=\"one\" width=\"32\" height=\"32\" href=\"\"%>"
                      "<%picture id=\"two\" width=\"132\" height=\"32\" href=\"\"%>");
    fixture.NewProject();
    fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("p1.png"), QSize(40, 30), 0x800000));
    fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("p.png"), QSize(40, 30), 0x008000));
    EXPECT_EQ(Generate().images, 2);
    EXPECT_EQ(MiddleOf(fixture.scratch.Path(QStringLiteral("site/pictures/p13232.png"))), 0x800000u);
    const QString suffix = fixture.GetRoot().GetPictures().GetAt(1)->GetNameSuffix();
    ASSERT_FALSE(suffix.isEmpty());
    EXPECT_EQ(MiddleOf(fixture.scratch.Path(QStringLiteral("site/pictures/p13232%1.png").arg(suffix))),
              0x008000u);
}

TEST_F(PageGeneration, APhotographNamedLikeACoverLeavesTheCoverAlone)
{
    WriteLayout("<page file=\"index.html\"/>", {{QStringLiteral("index.html"), 2}});
    CGalleryProject& project = fixture.NewProject();
    const int32_t child = project.AddChildGallery(0);
    project.FindGallery(child)->AddPicture(
        fixture.WritePicture(QStringLiteral("k.png"), QSize(400, 300), 0x800000));
    const QString coverName = ExtractLastName(project.FindGallery(child)->GetCover().GetName());
    MakeDirectoryPath(fixture.scratch.Path(QStringLiteral("photos/b")));
    fixture.GetRoot().AddPicture(
        fixture.WritePicture(QStringLiteral("b/") + coverName, QSize(400, 300), 0x008000));
    Generate();
    const QStringList published =
        SiteFiles(QStringLiteral("pictures/k")).filter(QRegularExpression(QStringLiteral("^pictures/")));
    ASSERT_EQ(published.size(), 2);
    std::set<uint32_t> colours;
    for (const QString& file : published) {
        colours.insert(MiddleOf(fixture.scratch.Path(QStringLiteral("site/") + file)));
    }
    EXPECT_EQ(colours, (std::set<uint32_t>{0x800000, 0x008000}));
    EXPECT_FALSE(fixture.GetRoot().GetPictures().GetAt(1)->GetNameSuffix().isEmpty());
    EXPECT_TRUE(fixture.GetRoot().GetPictures().GetAt(0)->GetNameSuffix().isEmpty());
}

TEST_F(PageGeneration, AMultipagePageWhoseFirstPageHasNoPictureByAConditionGoesOn)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                      "<%if <%isequal property1=\"<%=page.index%>\" property2=\"0\"%>start"
                      "<%else <%picture id=\"p\" width=\"20\" height=\"20\" href=\"\"%>%>%>");
    fixture.NewProject();
    AddPictures(fixture.GetRoot(), 4);
    EXPECT_EQ(Generate().pages, 4);
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/p.html")), "start");
    EXPECT_NE(fixture.scratch.Read(QStringLiteral("site/p3.html")).indexOf("pictures/32020.png"), -1);
    EXPECT_FALSE(FileExists(fixture.scratch.Path(QStringLiteral("site/p4.html"))));
}
