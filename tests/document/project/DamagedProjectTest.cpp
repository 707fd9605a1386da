#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/links/GalleryLinks.h"
#include "document/pictures/PictureInfo.h"

namespace {

// Each gallery with its entries, by ascending index.
QString Tree(const CGalleryProject& project)
{
    QStringList galleries;
    for (const auto& [index, gallery] : project.GetGalleries()) {
        galleries += QStringLiteral("%1:%2").arg(index).arg(CTestProject::Entries(*gallery));
    }
    return galleries.join(QStringLiteral("; "));
}

QByteArray GalleryListing(int index, const QList<int>& children)
{
    QByteArray xml = "<gallery index=\"" + QByteArray::number(index) + "\"><picture_list>";
    for (const int child : children) {
        xml += "<picture index=\"" + QByteArray::number(child) + "\"/>";
    }
    return xml + "</picture_list></gallery>";
}

// Everything that walks the tree comes to an end.
void WalkEverything(CGalleryProject& project)
{
    for (const auto& [index, gallery] : project.GetGalleries()) {
        GetParentUrl(*gallery, project);
        gallery->GetParentPath();
        gallery->UpdateCover(0);
        EXPECT_NE(project.GetParentGallery(index), gallery.get());
    }
}

} // namespace

TEST(DamagedProject, ABrokenFileIsNamedWithReasonAndLineAndStaysUntouched)
{
    const struct {
        const char* bytes;
        const char* line;
    } rows[] = {
        {"<project>\n<gallery>\n</project>", "Line: 3"},
        {"", "Line: 1"},
        {"\xff\xd8\xff\xe0 a picture", "Line: 1"},
        {"<project", "Line: 1"},
        {"just text", "Line: 1"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.AddStandard();
        test.NewGallery(2);
        test.scratch.Write(QStringLiteral("site/My.gallery"), row.bytes);
        const QString texts = TextsOf<CUnexpectedException>([&] { test.project.Open(test.ProjectPath()); });
        EXPECT_TRUE(
            texts.startsWith(QStringLiteral("Unexpected error occured.\nSource file: xmldomutils(32)|Error "
                                            "occured during xml file parsing.\n File name: %1\n Error "
                                            "reason: ")
                                 .arg(test.ProjectPath())))
            << qPrintable(texts);
        EXPECT_TRUE(texts.contains(QString::fromUtf8(row.line))) << qPrintable(texts);
        EXPECT_FALSE(test.project.IsLoaded());
        EXPECT_TRUE(test.project.GetGalleries().empty());
        EXPECT_EQ(test.project.GetCatalogue().GetTemplates().size(), 1u);
        test.project.Save(test.ProjectPath());
        EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), row.bytes);
    }
}

TEST(DamagedProject, ANumberThatIsNoneCostsThatValueOnly)
{
    CTestProject test;
    const QByteArray a = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    const QByteArray b = test.MakePicture(QStringLiteral("b.jpg")).toUtf8();
    test.LoadXml(
        R"(<project root_gallery_index="x" current_gallery_index="">)"
        R"(<gallery index="0"><picture_list><picture path=")" +
        a +
        R"(" angle="nan" size="big"/><picture index="y"/></picture_list>)"
        R"(<project_variable name="bad" vt="3" lVal="z"/><project_variable name="worse" vt="x"/>)"
        R"(<project_variable name="good" vt="3" lVal="4"/>)"
        R"(<page name="index" index="one"><page_variable name="v" vt="3" lVal="5"/></page>)"
        R"(<image_stamp index="first" file="/w.png"/><text_stamp index="2" text="T" font_size="huge"/>)"
        R"(</gallery><gallery index="99999999999"><picture_list><picture path=")" +
        b +
        R"("/></picture_list></gallery><deploy_settings folder="/out" redeploy_mode="often"/></project>)");
    EXPECT_TRUE(test.project.IsLoaded());
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:a.jpg; 1:b.jpg"));
    CGallery& gallery = *test.project.GetRootGallery();
    EXPECT_EQ(gallery.GetPictures().GetAt(0)->GetAngle(), 0);
    EXPECT_EQ(test.ValueOf(gallery, QStringLiteral("gallery"), QStringLiteral("good")), QStringLiteral("#4"));
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("index"), 0, QStringLiteral("v")), CVariant(5));
    EXPECT_EQ(gallery.GetImageStamps()[0].file, QString());
    EXPECT_EQ(gallery.GetTextStamps()[2].text, QStringLiteral("T"));
    EXPECT_EQ(test.project.GetDeploySettings().folder, QStringLiteral("/out"));
    test.project.Save(test.ProjectPath());
    const QByteArray saved = test.scratch.Read(QStringLiteral("site/My.gallery"));
    EXPECT_TRUE(saved.contains(R"(<project_variable name="bad" vt="3" lVal="z"/>)")) << saved.data();
    EXPECT_TRUE(saved.contains(R"(<project_variable name="worse" vt="x"/>)")) << saved.data();
    EXPECT_TRUE(saved.contains(R"(<image_stamp index="first" file="/w.png"/>)")) << saved.data();
}

TEST(DamagedProject, APipeInPlaceOfTheFileIsAnErrorAndDoesNotKeepTheProgramWaiting)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/x"), "");
    ASSERT_EQ(::mkfifo(QFile::encodeName(test.ProjectPath()).constData(), 0600), 0);
    EXPECT_THROW(test.project.Open(test.ProjectPath()), CUnexpectedException);
}

TEST(DamagedProject, AFolderInPlaceOfTheFileIsAnError)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/My.gallery/x"), "");
    EXPECT_THROW(test.project.Open(test.ProjectPath()), CUnexpectedException);
    EXPECT_TRUE(FolderExists(test.ProjectPath()));
}

TEST(DamagedProject, AFileThatMayNotBeReadIsAnErrorAndStays)
{
    CTestProject test;
    const QByteArray path =
        QFile::encodeName(test.scratch.Write(QStringLiteral("site/My.gallery"), "<project/>"));
    ASSERT_EQ(::chmod(path.constData(), 0), 0);
    {
        const COrdinaryRights rights(test.scratch);
        EXPECT_THROW(test.project.Open(test.ProjectPath()), CUnexpectedException);
    }
    ASSERT_EQ(::chmod(path.constData(), 0600), 0);
    EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), "<project/>");
}

TEST(DamagedProject, AFolderThatMayNotBeWrittenLeavesProjectAndFileAsTheyWere)
{
    CTestProject test;
    test.NewGallery();
    test.project.Save(test.ProjectPath());
    const QByteArray folder = QFile::encodeName(test.Path(QStringLiteral("site")));
    const QByteArray before = test.scratch.Read(QStringLiteral("site/My.gallery"));
    ASSERT_EQ(::chmod(folder.constData(), 0555), 0);
    test.project.AddChildGallery(0);
    {
        const COrdinaryRights rights(test.scratch);
        EXPECT_THROW(test.project.Save(test.ProjectPath()), CWin32Exception);
        EXPECT_THROW(test.project.Save(test.Path(QStringLiteral("site/New.gallery"))), CWin32Exception);
    }
    ASSERT_EQ(::chmod(folder.constData(), 0700), 0);
    EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), before);
    EXPECT_EQ(test.project.GetName(), QStringLiteral("My"));
    EXPECT_TRUE(test.project.IsLoaded());
}

TEST(DamagedProject, AFailedSaveKeepsTheNameAndTheSuggestedFolder)
{
    CTestProject test;
    test.AddStandard();
    test.NewGallery();
    test.scratch.Write(QStringLiteral("file"), "");
    EXPECT_THROW(test.project.Save(test.Path(QStringLiteral("file/below/My.gallery"))), CWin32Exception);
    EXPECT_THROW(test.project.Save(test.Path(QStringLiteral("program"))), CWin32Exception);
    EXPECT_EQ(test.project.GetName(), QString());
    EXPECT_EQ(test.project.GetDeploySettings().folder, QString());
}

TEST(DamagedProject, MissingLayoutsAndStylesAreReplacedAndMissingPicturesStay)
{
    CTestProject test;
    test.AddStandard();
    test.LoadXml(
        R"(<project><gallery index="0"><style template="c:\gone\fancy.xml" template_page="none.html" )"
        R"(css="/gone/green.xml"/><picture_list><picture path="/gone/a.jpg"/></picture_list>)"
        R"(<page_style name="none" style="/gone/green.xml"/>)"
        R"(<image_stamp file="/gone/w.png"/></gallery></project>)");
    CGallery& gallery = *test.project.GetRootGallery();
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout plain"));
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetPage(gallery.GetLayout().GetTemplatePage()).file,
              QStringLiteral("index.html"));
    EXPECT_EQ(gallery.GetLayout().GetStyleOfPage(QStringLiteral("none"))->name, QStringLiteral("Style blue"));
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:a.jpg"));
    EXPECT_FALSE(gallery.GetPictures().GetAt(0)->IsThere());
    EXPECT_EQ(gallery.GetImageStamps()[0].file, QStringLiteral("/gone/w.png"));
}

TEST(DamagedProject, APageNameWithoutDotIsLeftOut)
{
    CTestProject test;
    test.AddStandard();
    test.LoadXml(
        R"(<project><gallery><style template="plain.xml" template_page="index"/></gallery></project>)");
    EXPECT_EQ(test.project.GetRootGallery()->GetLayout().GetTemplatePage(), QStringLiteral("index.html"));
}

TEST(DamagedProject, IndexesThatNameNoGalleryGiveWayToTheFirstOne)
{
    const struct {
        const char* xml;
        int root;
        int current;
    } rows[] = {
        {R"(<project root_gallery_index="9" current_gallery_index="4"><gallery index="4"/><gallery index="2"/></project>)",
         2, 4},
        {R"(<project root_gallery_index="4" current_gallery_index="9"><gallery index="4"/><gallery index="2"/></project>)",
         4, 4},
        {R"(<project root_gallery_index="-1" current_gallery_index="-2"><gallery index="4"/></project>)", 4,
         4},
        {R"(<project><gallery index="7"/></project>)", 7, 7},
        {R"(<project/>)", 0, 0},
        {R"(<project current_gallery_index="5"/>)", 0, 0},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.LoadXml(row.xml);
        EXPECT_EQ(test.project.GetRootGalleryIndex(), row.root) << row.xml;
        EXPECT_EQ(test.project.GetCurrentGalleryIndex(), row.current) << row.xml;
        EXPECT_NE(test.project.GetRootGallery(), nullptr);
        EXPECT_NE(test.project.GetCurrentGallery(), nullptr);
    }
}

TEST(DamagedProject, ListingsThatMakeNoTreeAreLeftOut)
{
    const struct {
        const char* what;
        QByteArray galleries;
        const char* expected;
    } rows[] = {
        {"itself", GalleryListing(0, {1}) + GalleryListing(1, {1}), "0:<1>; 1:"},
        {"a gallery above it", GalleryListing(0, {1}) + GalleryListing(1, {2}) + GalleryListing(2, {1, 0}),
         "0:<1>; 1:<2>; 2:"},
        {"a circle beside the root", GalleryListing(0, {}) + GalleryListing(1, {2}) + GalleryListing(2, {1}),
         "0:; 1:<2>; 2:"},
        {"the root", GalleryListing(0, {}) + GalleryListing(1, {0}), "0:; 1:"},
        {"two parents",
         GalleryListing(0, {1, 2}) + GalleryListing(1, {3}) + GalleryListing(2, {3}) + GalleryListing(3, {}),
         "0:<1> <2>; 1:<3>; 2:; 3:"},
        {"one child twice", GalleryListing(0, {1, 1}) + GalleryListing(1, {}), "0:<1>; 1:"},
        {"no gallery", GalleryListing(0, {1, 5, -1}) + GalleryListing(1, {}), "0:<1>; 1:"},
        {"a negative index", GalleryListing(0, {-3}) + GalleryListing(-3, {}), "-3:; 0:<-3>"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.LoadXml("<project root_gallery_index=\"0\">" + row.galleries + "</project>");
        EXPECT_EQ(Tree(test.project), QString::fromUtf8(row.expected)) << row.what;
        WalkEverything(test.project);
        test.project.Save(test.ProjectPath());
        test.project.Load(test.ProjectPath());
        EXPECT_EQ(Tree(test.project), QString::fromUtf8(row.expected)) << row.what;
    }
}

TEST(DamagedProject, TwoElementsOfOneIndexAreOneGallery)
{
    CTestProject test;
    const QByteArray a = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    const QByteArray b = test.MakePicture(QStringLiteral("b.jpg")).toUtf8();
    test.LoadXml(R"(<project><gallery index="0"><picture_list><picture path=")" + a +
                 R"("/></picture_list></gallery><gallery index="0"><picture_list><picture path=")" + b +
                 R"("/></picture_list></gallery></project>)");
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:a.jpg b.jpg"));
}

TEST(DamagedProject, APictureListedTwiceIsThereOnceWithItsLastAngleAndTheTextsOfBoth)
{
    CTestProject test;
    const QByteArray a = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    test.LoadXml(
        R"(<project><gallery><picture_list><picture path=")" + a +
        R"(" angle="1"><picture_variable name="first" vt="3" lVal="1"/></picture><picture path=")" + a +
        R"(" angle="2"><picture_variable name="last" vt="3" lVal="2"/></picture></picture_list></gallery></project>)");
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:a.jpg"));
    const CPictureInfo& picture = *test.project.GetRootGallery()->GetPictures().GetAt(0);
    EXPECT_EQ(picture.GetVariable(QStringLiteral("first")), CVariant(1));
    EXPECT_EQ(picture.GetVariable(QStringLiteral("last")), CVariant(2));
    EXPECT_EQ(test.project.GetRootGallery()->GetPictures().GetAt(0)->GetAngle(), 2);
}

TEST(DamagedProject, AnglesAreBroughtIntoOneTurn)
{
    for (const auto& [angle, expected] :
         std::map<QByteArray, int>{{"4", 0}, {"7", 3}, {"-1", 3}, {"-2147483648", 0}, {"2147483647", 3}}) {
        CTestProject test;
        const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
        test.LoadXml("<project><gallery><picture_list><picture path=\"" + path + "\" angle=\"" + angle +
                     "\"/></picture_list></gallery></project>");
        EXPECT_EQ(test.project.GetRootGallery()->GetPictures().GetAt(0)->GetAngle(), expected)
            << angle.data();
    }
}

TEST(DamagedProject, APictureOfACoversPathDoesNotPushTheChildOut)
{
    CTestProject test;
    const QString folder = ExtractLastName(test.tempFolder.GetPath().chopped(1));
    const QByteArray cover = test.scratch.Write(folder + QStringLiteral("/vsm1.png"), "").toUtf8();
    test.LoadXml(R"(<project><gallery index="0"><picture_list><picture index="1"/><picture path=")" + cover +
                 R"("><picture_variable name="a" vt="3" lVal="1"/></picture></picture_list></gallery>)"
                 R"(<gallery index="1"/></project>)");
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1>; 1:"));
}

TEST(DamagedProject, ADeepLineOfGalleriesIsWalkedWithoutRecursion)
{
    constexpr int depth = 30'000;
    QByteArray xml = "<project>";
    for (int index = 0; index < depth; ++index) {
        xml += GalleryListing(index, {index + 1});
    }
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/My.gallery"), xml + "</project>");
    test.project.Open(test.ProjectPath());
    CGallery& deepest = *test.project.FindGallery(depth - 1);
    EXPECT_EQ(deepest.GetParentPath().count(QStringLiteral("<a href")), depth - 1);
    test.project.Save(test.ProjectPath());
}

TEST(DamagedProject, ManyGalleriesAndPicturesAreReadInOrder)
{
    constexpr int galleryCount = 50;
    constexpr int pictureCount = 40;
    CTestProject test;
    QStringList names;
    QByteArray pictures;
    for (int number = 0; number < pictureCount; ++number) {
        const QString path = test.MakePicture(QStringLiteral("%1.jpg").arg(number));
        names += ExtractLastName(path);
        pictures += "<picture path=\"" + path.toUtf8() + "\"/>";
    }
    QByteArray xml = "<project>";
    for (int index = 0; index < galleryCount; ++index) {
        xml += "<gallery index=\"" + QByteArray::number(index) + "\"><picture_list>" + pictures +
               "</picture_list></gallery>";
    }
    test.LoadXml(xml + "</project>");
    EXPECT_EQ(CTestProject::Entries(*test.project.FindGallery(galleryCount - 1)),
              names.join(QLatin1Char(' ')));
}
