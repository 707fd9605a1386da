#include "TestProject.h"
#include "document/pictures/PictureInfo.h"

namespace {

// A file with one gallery, index 0, with these children.
QByteArray WithGallery(const QByteArray& children)
{
    return "<project><gallery index=\"0\">" + children + "</gallery></project>";
}

} // namespace

TEST(ProjectFileReading, VariablesAreReadByTheirType)
{
    CTestProject test;
    test.LoadXml(WithGallery(R"(<project_variable name="A" vt="3" lVal="5"/>)"
                             R"(<project_variable name="b" vt="8" bstrVal="text"/>)"
                             R"(<project_variable name="c" vt="5" doubleVal=" 1.5 "/>)"
                             R"(<project_variable name="d" vt="7" doubleVal="2.5"/>)"
                             R"(<project_variable name="e" vt="11" lVal="5"/>)"
                             R"(<project_variable name="f" lVal="5"/>)"
                             R"(<project_variable vt="3" lVal="5"/>)"
                             R"(<project_variable name="g" vt="5" doubleVal="1,5"/>)"
                             R"(<project_variable name="h" vt="7" doubleVal="inf"/>)"
                             R"(<project_variable name="i" vt="7"/>)"
                             R"(<project_variable name="j" vt="3"/>)"
                             R"(<project_variable name="k" vt="8"/>)"
                             R"(<project_variable name="" vt="3" lVal="9"/>)"));
    CGallery& gallery = *test.project.GetRootGallery();
    const std::map<const char*, const char*> rows = {
        {"a", "#5"},    {"b", "text"},  {"c", "real:1.5"}, {"d", "date:2.5"}, {"e", "empty"}, {"f", "empty"},
        {"g", "empty"}, {"h", "empty"}, {"i", "empty"},    {"j", "#0"},       {"k", ""},      {"", "#9"},
    };
    for (const auto& [name, expected] : rows) {
        EXPECT_EQ(test.ValueOf(gallery, QStringLiteral("gallery"), QString::fromUtf8(name)),
                  QString::fromUtf8(expected))
            << name;
    }
    EXPECT_EQ(gallery.GetTexts().own.GetEntries().size(), 7u);
}

TEST(ProjectFileReading, AbsentAttributesOfTheProjectReadAsTheTableSays)
{
    CTestProject test;
    test.AddStandard();
    test.LoadXml(
        R"(<project><project_folders><folder/><folder path=""/><folder path="/a"/></project_folders>)"
        R"(<gallery/></project>)");
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 0);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
    EXPECT_EQ(test.project.GetRecentFolder(), QString());
    EXPECT_EQ(test.project.GetFolders(), std::vector<QString>{QStringLiteral("/a")});
    EXPECT_NE(test.project.FindGallery(0), nullptr);
    EXPECT_TRUE(test.project.GetRootGallery()->GetLayout().GetTemplatePage().isEmpty());
}

TEST(ProjectFileReading, AbsentAttributesOfAStyleReadAsTheTableSays)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("b"), "<page file=\"b.html\"/>");
    test.AddLayout(QStringLiteral("a"), "<page file=\"a.html\"/>");
    test.AddStyle(QStringLiteral("y"), "default=\"1\"");
    test.AddStyle(QStringLiteral("x"));
    test.LoadXml(WithGallery("<style/>"));
    const CGalleryLayout& layout = test.project.GetRootGallery()->GetLayout();
    EXPECT_EQ(layout.GetTemplate()->GetName(), QStringLiteral("Layout a"));
    EXPECT_EQ(layout.GetTemplatePage(), QStringLiteral("a.html"));
    EXPECT_EQ(layout.GetStyle()->name, QStringLiteral("Style x"));

    // Without the element the gallery keeps what a new gallery has.
    test.LoadXml(WithGallery(""));
    EXPECT_EQ(test.project.GetRootGallery()->GetLayout().GetStyle()->name, QStringLiteral("Style y"));
}

TEST(ProjectFileReading, AbsentAttributesOfPicturesAndPagesReadAsTheTableSays)
{
    CTestProject test;
    const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    test.LoadXml(WithGallery(
        R"(<picture_list name="old"><picture/><picture angle="2"/><picture path=")" + path +
        R"("/></picture_list><page><page_variable name="v" vt="3" lVal="4"/></page>)"
        R"(<page_visibility><visible_element/></page_visibility>)"
        R"(<page_style name="p"/><page_style style="s"/><page_style/><page_style name="q" style="s"/>)"));
    CGallery& gallery = *test.project.GetRootGallery();
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("a.jpg"));
    EXPECT_EQ(gallery.GetPictures().GetAt(0)->GetAngle(), 0);
    EXPECT_EQ(gallery.GetPageVariable(QString(), 0, QStringLiteral("v")), CVariant(4));
    EXPECT_FALSE(gallery.IsElementVisible(gallery.GetLayout().GetTemplatePage(), QString()));
    EXPECT_EQ(gallery.GetLayout().GetPageStyles(),
              (std::map<QString, QString>{{QStringLiteral("q"), QStringLiteral("s")}}));
}

TEST(ProjectFileReading, AbsentAttributesOfStampsReadAsTheTableSays)
{
    CTestProject test;
    test.LoadXml(
        WithGallery(R"(<image_stamp index="1" file="/w.png" transparency="30" position="5" margin="6"/>)"
                    R"(<image_stamp index="1"/><image_stamp index="3" file="x"/>)"
                    R"(<image_stamp index="-1" file="x"/><image_stamp file="/zero.png"/>)"
                    R"(<text_stamp index="2" font="F" text="T" font_size="9" color="4294967295"/>)"
                    R"(<text_stamp index="0"/>)"));
    CGallery& gallery = *test.project.GetRootGallery();
    const auto& images = gallery.GetImageStamps();
    EXPECT_EQ(images[0], (CImageStampParams{{.position = 0, .margin = 0}, QStringLiteral("/zero.png"), 0}));
    EXPECT_EQ(images[1], (CImageStampParams{{.position = 0, .margin = 0}, QStringLiteral("/w.png"), 0}));
    EXPECT_EQ(images[2], CImageStampParams());
    const auto& texts = gallery.GetTextStamps();
    EXPECT_EQ(texts[0],
              (CTextStampParams{
                  {.position = 0, .margin = 0}, QString(), QStringLiteral("MS Sans Serif"), 0, 0, 0}));
    EXPECT_EQ(texts[1], CTextStampParams());
    EXPECT_EQ(
        texts[2],
        (CTextStampParams{
            {.position = 0, .margin = 0}, QStringLiteral("T"), QStringLiteral("F"), 9, 0, 0xffffffffu}));
}

TEST(ProjectFileReading, DeploySettingsReadAsTheTableSays)
{
    const CDeploySettings before = {.folder = QStringLiteral("f"), .ftp_directory = QStringLiteral("d")};
    const struct {
        const char* element;
        CDeploySettings expected;
    } rows[] = {
        {"", CDeploySettings()},
        {"<deploy_settings/>", {QString(), 0, QString(), -1, 0, false}},
        {R"(<deploy_settings folder="" ftp_directory="" redeploy_mode="often"/>)",
         {QString(), 0, QString(), -1, 0, false}},
        {R"(<deploy_settings folder="x" destination_kind="1" redeploy_mode="2" ftp_destination="7" ftp_directory="y" open_browser_after_deploy="1"/>)",
         {QStringLiteral("x"), 1, QStringLiteral("y"), 7, 2, true}},
        {R"(<deploy_settings ftp_destination="0"/>)", {QString(), 0, QString(), -1, 0, false}},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.project.GetDeploySettings() = before;
        test.LoadXml(QByteArray("<project>") + row.element + "</project>");
        EXPECT_EQ(test.project.GetDeploySettings(), row.expected) << row.element;
    }
}

TEST(ProjectFileReading, AdvertisementsGoToTheirPageOrToEveryPageOfTheLayout)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"a.html\"/>");
    test.AddLayout(QStringLiteral("b"), "<page file=\"b1.html\"/><page file=\"b2.html\"/>");
    // The style comes last here and is read first all the same.
    test.LoadXml(WithGallery(R"(<advertisement name="n" value="v" page="other.html"/>)"
                             R"(<advertisement name="all" value="w"/><advertisement page="b1.html"/>)"
                             R"(<style template="/moved/B.xml"/>)"));
    const GalleryTexts::Advertisements expected = {
        {QStringLiteral("other.html"), {{QStringLiteral("n"), QStringLiteral("v")}}},
        {QStringLiteral("b1.html"), {{QStringLiteral("all"), QStringLiteral("w")}, {QString(), QString()}}},
        {QStringLiteral("b2.html"), {{QStringLiteral("all"), QStringLiteral("w")}}},
    };
    EXPECT_EQ(test.project.GetRootGallery()->GetTexts().advertisements, expected);
    // A missing text is an empty one.
    EXPECT_FALSE(test.project.GetRootGallery()
                     ->GetTexts()
                     .advertisements[QStringLiteral("b1.html")][QString()]
                     .isNull());
}

TEST(ProjectFileReading, ChildrenOnAFrontPageGatherAheadInReverseOrder)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"f.html\" add_order=\"front\"/>");
    const QByteArray one = test.MakePicture(QStringLiteral("1.jpg")).toUtf8();
    const QByteArray two = test.MakePicture(QStringLiteral("2.jpg")).toUtf8();
    test.LoadXml(R"(<project><gallery index="0"><style template_page="f.html"/><picture_list>)"
                 R"(<picture index="1"/><picture path=")" +
                 one + R"("/><picture index="2"/><picture path=")" + two +
                 R"("/></picture_list></gallery><gallery index="1"/><gallery index="2"/></project>)");
    EXPECT_EQ(CTestProject::Entries(*test.project.GetRootGallery()), QStringLiteral("<2> <1> 1.jpg 2.jpg"));
}

TEST(ProjectFileReading, ASavedAdditionDateWinsOverTheTimeOfReading)
{
    CTestProject test;
    const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    test.LoadXml(WithGallery(
        "<picture_list><picture path=\"" + path +
        R"("><picture_variable doubleVal="7.5" name="addition_date" vt="7"/></picture></picture_list>)"));
    const CPictureInfo& picture = *test.project.GetRootGallery()->GetPictures().GetAt(0);
    EXPECT_EQ(picture.GetVariable(QStringLiteral("addition_date")), CVariant::Date(7.5));
}

TEST(ProjectFileReading, AnOldFileReadsAsAProjectWithOneGallery)
{
    CTestProject test;
    test.AddStandard();
    const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    test.LoadXml(
        R"(<old root_gallery_index="3" current_gallery_index="8"><folder path="/f"/>)"
        R"(<style template="plain.xml" template_page="picture.html"/>)"
        R"(<picture_list name="old"><picture path=")" +
        path +
        R"("/><picture index="1"/></picture_list><project_variable name="name" vt="8" bstrVal="Old"/>)"
        R"(<deploy_settings folder="/out"/></old>)");
    EXPECT_EQ(test.project.GetGalleries().size(), 1u);
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 3);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 3);
    CGallery& gallery = *test.project.GetRootGallery();
    EXPECT_EQ(gallery.GetIndex(), 3);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("a.jpg"));
    EXPECT_EQ(gallery.GetDisplayName(), QStringLiteral("Old"));
    EXPECT_EQ(gallery.GetLayout().GetTemplatePage(), QStringLiteral("picture.html"));
    EXPECT_EQ(test.project.GetFolders(), std::vector<QString>{QStringLiteral("/f")});
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("/f"));
    EXPECT_EQ(test.project.GetDeploySettings().folder, QStringLiteral("/out"));
}

TEST(ProjectFileReading, FoldersAreReadFromAnywhereInTheDocument)
{
    CTestProject test;
    test.LoadXml(
        R"(<project><project_folders recent_folder="/A"><folder path="/a"/><folder path="/b"/>)"
        R"(<folder path="/A"/></project_folders><x><y><folder path="/deep"/></y></x><gallery/></project>)");
    EXPECT_EQ(test.project.GetFolders(),
              (std::vector<QString>{QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/A"),
                                    QStringLiteral("/deep")}));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("/A"));
}

TEST(ProjectFileReading, ATextStampReadAgainWithoutTextKeepsItsTextAndFont)
{
    CTestProject test;
    test.LoadXml(
        WithGallery(R"(<text_stamp index="2" font="F" text="T" font_size="9" font_style="3" color="5"/>)"
                    R"(<text_stamp index="2"/>)"));
    EXPECT_EQ(
        test.project.GetRootGallery()->GetTextStamps()[2],
        (CTextStampParams{{.position = 0, .margin = 0}, QStringLiteral("T"), QStringLiteral("F"), 0, 0, 0}));
}
