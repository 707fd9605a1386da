#include <limits>

#include <QFile>

#include "TestProject.h"
#include "common/FileSystem.h"
#include "document/GalleryPictureInfo.h"

namespace {

const QString GalleryObject = QStringLiteral("gallery");

// The saved file with the scratch folder written as "~", in both its spellings.
QByteArray Saved(CTestProject& test)
{
    test.project.Save(test.ProjectPath());
    QByteArray bytes = test.scratch.Read(QStringLiteral("site/My.gallery"));
    const QString folder = test.scratch.Path().chopped(1);
    return bytes.replace(folder.toUtf8(), "~").replace(Lower(folder).toUtf8(), "~");
}

// A project with something in every corner: root 2 with two pictures and child 5.
void FillProject(CTestProject& test)
{
    test.AddStandard();
    const QString red = test.AddStyle(QStringLiteral("red"));
    test.LoadXml("<project root_gallery_index=\"2\"><gallery index=\"2\"/><gallery index=\"5\"/></project>");
    CGallery& root = *test.project.GetRootGallery();
    root.SetTemplate(QStringLiteral("plain.xml"));
    root.SetStyle(red);
    root.AddPicture(test.MakePicture(QStringLiteral("a & b.jpg")));
    root.AddChild(5);
    root.AddPicture(test.MakePicture(QStringLiteral("M\u00fcnchen.jpg")));
    root.RotatePicture(2, false);
    for (const int32_t position : {0, 2}) {
        root.GetPictures().GetAt(position)->SetVariable(QStringLiteral("addition_date"),
                                                        CVariant::Date(45000.1));
    }
    CPictureInfo& picture = *root.GetPictures().GetAt(0);
    picture.SetVariable(QStringLiteral("Title"), CVariant(QStringLiteral("<\"quoted\">")));
    picture.SetVariable(QStringLiteral("size"), CVariant(-7));
    picture.SetVariable(QStringLiteral("ratio"), CVariant::Real(0.1));
    picture.SetVariable(QStringLiteral("void"), CVariant());
    root.SetObjectVariable(QStringLiteral("content"), QStringLiteral("note"), CVariant(QStringLiteral("n")));
    root.SetPageVariable(QStringLiteral("index"), 0, QStringLiteral("head"), CVariant(QStringLiteral("h")));
    root.SetPageVariable(QStringLiteral("picture"), 12, QStringLiteral("head"), CVariant(1));
    root.SetObjectVariable(GalleryObject, QStringLiteral("Name"), CVariant(QStringLiteral("Top")));
    root.SetVisibilityMap({{QStringLiteral("logo"), false}, {QStringLiteral("date"), true}});
    root.GetImageStamps()[1] = {{.position = 5, .margin = 3}, QStringLiteral("/w.png"), 40};
    root.GetTextStamps()[2] = {
        {.position = 10, .margin = 4}, QStringLiteral("by me"), QStringLiteral("Arial"), 12, 3, 4278190335u};
    root.GetVariables().GetAdvertisements()[QStringLiteral("index.html")][QStringLiteral("top")] =
        QStringLiteral("buy");
    test.project.AddFolder(test.Path(QStringLiteral("pictures")));
    test.project.SetRecentFolder(test.Path(QStringLiteral("pictures")));
    test.project.SetCurrentGallery(5);
    test.project.GetDeploySettings() = {.folder = QStringLiteral("/out"),
                                        .destination_kind = 1,
                                        .ftp_directory = QStringLiteral("/www"),
                                        .ftp_destination = 4,
                                        .redeploy_mode = 0,
                                        .open_browser_after_deploy = false};
}

const char* const StampsOfAnEmptyGallery =
    R"(<image_stamp index="0" position="0" margin="10" file="" transparency="0"/>)"
    R"(<image_stamp index="1" position="0" margin="10" file="" transparency="0"/>)"
    R"(<image_stamp index="2" position="0" margin="10" file="" transparency="0"/>)"
    R"(<text_stamp index="0" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
    R"(<text_stamp index="1" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
    R"(<text_stamp index="2" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)";

QByteArray ExpectedFullProject()
{
    const QByteArray date = "45000.0999999999985448084771633148193359375";
    return R"(<project version="2.0" root_gallery_index="2" current_gallery_index="5">)"
           R"(<project_folders recent_folder="~/pictures"><folder path="~/pictures"/></project_folders>)"
           R"(<gallery index="2"><style template="~/program/templates/plain.xml" template_page="index.html" )"
           R"(css="~/program/styles/red.xml"/><picture_list>)"
           R"(<picture path="~/pictures/a &amp; b.jpg" angle="0"><picture_variable doubleVal=")" +
           date +
           R"(" name="addition_date" vt="7"/><picture_variable )"
           R"(doubleVal="0.1000000000000000055511151231257827021181583404541015625" name="ratio" vt="5"/>)"
           R"(<picture_variable lVal="-7" name="size" vt="3"/>)"
           R"(<picture_variable bstrVal="&lt;&quot;quoted&quot;>" name="title" vt="8"/>)"
           R"(<picture_variable name="void" vt="0"/></picture><picture index="5"/>)"
           R"(<picture path="~/pictures/)"
           "M\xc3\xbcnchen.jpg"
           R"(" angle="3"><picture_variable doubleVal=")" +
           date +
           R"(" name="addition_date" vt="7"/></picture>)"
           R"(<picture_list_variable bstrVal="n" name="note" vt="8"/></picture_list>)"
           R"(<page name="index" index="0"><page_variable bstrVal="h" name="head" vt="8"/></page>)"
           R"(<page name="picture" index="12"><page_variable lVal="1" name="head" vt="3"/></page>)"
           R"(<project_variable bstrVal="Top" name="name" vt="8"/><page_visibility name="index.html">)"
           R"(<visible_element name="date" visible="1"/><visible_element name="logo" visible="0"/>)"
           R"(</page_visibility><page_style name="index" style="~/program/styles/red.xml"/>)"
           R"(<image_stamp index="0" position="0" margin="10" file="" transparency="0"/>)"
           R"(<image_stamp index="1" position="5" margin="3" file="/w.png" transparency="40"/>)"
           R"(<image_stamp index="2" position="0" margin="10" file="" transparency="0"/>)"
           R"(<text_stamp index="0" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
           R"(<text_stamp index="1" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
           R"(<text_stamp index="2" position="10" margin="4" font="Arial" text="by me" font_size="12" font_style="3" color="4278190335"/>)"
           R"(<advertisement name="top" value="buy" page="index.html"/></gallery>)"
           R"(<gallery index="5"><style template="~/program/templates/plain.xml" template_page="" )"
           R"(css="~/program/styles/blue.xml"/><picture_list/>)" +
           QByteArray(StampsOfAnEmptyGallery) +
           R"(</gallery><deploy_settings folder="/out" destination_kind="1" redeploy_mode="0" )"
           R"(ftp_destination="4" ftp_directory="/www" open_browser_after_deploy="0"/></project>)";
}

// A file with one gallery, index 0, with these children.
QByteArray WithGallery(const QByteArray& children)
{
    return "<project><gallery index=\"0\">" + children + "</gallery></project>";
}

} // namespace

TEST(ProjectFile, IsWrittenToTheByte)
{
    CTestProject test;
    FillProject(test);
    EXPECT_EQ(Saved(test).toStdString(), ExpectedFullProject().toStdString());
}

TEST(ProjectFile, OfANewProjectHasSixStampsAndNoLayout)
{
    CTestProject test;
    test.NewGallery();
    EXPECT_EQ(Saved(test).toStdString(),
              (R"(<project version="2.0" root_gallery_index="0" current_gallery_index="0">)"
               R"(<project_folders recent_folder="~/pictures"><folder path="~/pictures"/></project_folders>)"
               R"(<gallery index="0"><style template="" template_page="" css=""/><picture_list/>)" +
               QByteArray(StampsOfAnEmptyGallery) +
               R"(</gallery><deploy_settings folder="~/site/My" destination_kind="0" redeploy_mode="1" )"
               R"(ftp_destination="-1" ftp_directory="" open_browser_after_deploy="1"/></project>)")
                  .toStdString());
}

TEST(ProjectFile, ReadsBackWhatItWrote)
{
    CTestProject test;
    FillProject(test);
    QByteArray first = Saved(test);
    CGalleryProject again(test.environment);
    again.Open(test.ProjectPath());
    again.Save(test.ProjectPath());
    QByteArray second = test.scratch.Read(QStringLiteral("site/My.gallery"));
    const QString folder = test.scratch.Path().chopped(1);
    second.replace(folder.toUtf8(), "~").replace(Lower(folder).toUtf8(), "~");
    // A variable without a value is not read; a gallery without a page gets the first one, and its style
    // becomes that page's.
    first.replace(R"(<picture_variable name="void" vt="0"/>)", "");
    first.replace(R"(template_page="" css="~/program/styles/blue.xml"/><picture_list/>)",
                  R"(template_page="index.html" css="~/program/styles/blue.xml"/><picture_list/>)"
                  R"(<page_style name="index" style="~/program/styles/blue.xml"/>)");
    EXPECT_EQ(second.toStdString(), first.toStdString());
    EXPECT_EQ(again.GetParentGallery(5), again.GetRootGallery());
}

TEST(ProjectFile, OpeningMakesNoCover)
{
    CTestProject test;
    FillProject(test);
    Saved(test);
    CGalleryProject again(test.environment);
    again.Open(test.ProjectPath());
    EXPECT_TRUE(ListDirectory(test.tempFolder.GetPath()).empty());
}

TEST(ProjectFile, RealNumbersReadBackToTheLastBit)
{
    const double numbers[] = {45000.1, DateFromLocalTime(QDateTime::currentDateTime()),
                              0.1,     -1e300,
                              5e-324,  std::numeric_limits<double>::max(),
                              1.0 / 3, 0.0,
                              45000};
    for (const double number : numbers) {
        CTestProject test;
        CGallery& gallery = test.NewGallery();
        gallery.SetObjectVariable(GalleryObject, QStringLiteral("d"), CVariant::Date(number));
        gallery.SetObjectVariable(GalleryObject, QStringLiteral("r"), CVariant::Real(number));
        test.project.Save(test.ProjectPath());
        test.project.Load(test.ProjectPath());
        CVariant date;
        CVariant real;
        test.project.GetRootGallery()->GetObjectVariable(GalleryObject, QStringLiteral("d"), date);
        test.project.GetRootGallery()->GetObjectVariable(GalleryObject, QStringLiteral("r"), real);
        EXPECT_EQ(date, CVariant::Date(number)) << number;
        EXPECT_EQ(real, CVariant::Real(number)) << number;
    }
}

TEST(ProjectFile, VariablesAreReadByTheirType)
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
        EXPECT_EQ(test.ValueOf(gallery, GalleryObject, QString::fromUtf8(name)), QString::fromUtf8(expected))
            << name;
    }
    EXPECT_EQ(gallery.GetVariables().GetOwn().GetEntries().size(), 7u);
}

TEST(ProjectFile, AbsentAttributesOfTheProjectReadAsTheTableSays)
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

TEST(ProjectFile, AbsentAttributesOfAStyleReadAsTheTableSays)
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

TEST(ProjectFile, AbsentAttributesOfPicturesAndPagesReadAsTheTableSays)
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
    CVariant value;
    EXPECT_TRUE(gallery.GetPageVariable(QString(), 0, QStringLiteral("v"), value));
    EXPECT_FALSE(gallery.IsElementVisibleOnPage(QString()));
    EXPECT_EQ(gallery.GetLayout().GetPageStyles(),
              (std::map<QString, QString>{{QStringLiteral("q"), QStringLiteral("s")}}));
}

TEST(ProjectFile, AbsentAttributesOfStampsReadAsTheTableSays)
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

TEST(ProjectFile, DeploySettingsReadAsTheTableSays)
{
    const CDeploySettings before = {.folder = QStringLiteral("f"), .ftp_directory = QStringLiteral("d")};
    const struct {
        const char* element;
        CDeploySettings expected;
    } rows[] = {
        {"", before},
        {"<deploy_settings/>", {QStringLiteral("f"), 0, QStringLiteral("d"), -1, 0, false}},
        {R"(<deploy_settings folder="" ftp_directory=""/>)",
         {QStringLiteral("f"), 0, QStringLiteral("d"), -1, 0, false}},
        {R"(<deploy_settings folder="x" destination_kind="1" redeploy_mode="2" ftp_destination="7" ftp_directory="y" open_browser_after_deploy="1"/>)",
         {QStringLiteral("x"), 1, QStringLiteral("y"), 7, 2, true}},
        {R"(<deploy_settings ftp_destination="0"/>)",
         {QStringLiteral("f"), 0, QStringLiteral("d"), -1, 0, false}},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.project.GetDeploySettings() = before;
        test.LoadXml(QByteArray("<project>") + row.element + "</project>");
        EXPECT_EQ(test.project.GetDeploySettings(), row.expected) << row.element;
    }
}

TEST(ProjectFile, AdvertisementsGoToTheirPageOrToEveryPageOfTheLayout)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"a.html\"/>");
    test.AddLayout(QStringLiteral("b"), "<page file=\"b1.html\"/><page file=\"b2.html\"/>");
    // The style comes last here and is read first all the same.
    test.LoadXml(WithGallery(R"(<advertisement name="n" value="v" page="other.html"/>)"
                             R"(<advertisement name="all" value="w"/><advertisement page="b1.html"/>)"
                             R"(<style template="/moved/B.xml"/>)"));
    const CGalleryVariables::Advertisements expected = {
        {QStringLiteral("other.html"), {{QStringLiteral("n"), QStringLiteral("v")}}},
        {QStringLiteral("b1.html"), {{QStringLiteral("all"), QStringLiteral("w")}, {QString(), QString()}}},
        {QStringLiteral("b2.html"), {{QStringLiteral("all"), QStringLiteral("w")}}},
    };
    EXPECT_EQ(test.project.GetRootGallery()->GetVariables().GetAdvertisements(), expected);
}

TEST(ProjectFile, ChildrenOnAFrontPageGatherAheadInReverseOrder)
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

TEST(ProjectFile, ASavedAdditionDateWinsOverTheTimeOfReading)
{
    CTestProject test;
    const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    test.LoadXml(WithGallery(
        "<picture_list><picture path=\"" + path +
        R"("><picture_variable doubleVal="7.5" name="addition_date" vt="7"/></picture></picture_list>)"));
    CVariant date;
    test.project.GetRootGallery()->GetPictures().GetAt(0)->GetVariable(QStringLiteral("addition_date"), date);
    EXPECT_EQ(date, CVariant::Date(7.5));
}

TEST(ProjectFile, AMovedPictureIsFoundBesideTheProjectOrOneLevelBelow)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/here.jpg"), "");
    test.scratch.Write(QStringLiteral("site/z/both.jpg"), "z");
    test.scratch.Write(QStringLiteral("site/B/both.jpg"), "b");
    test.scratch.Write(QStringLiteral("site/z/deep/deep.jpg"), "");
    test.scratch.Write(QStringLiteral("site/z/folder.jpg/x"), "");
    test.LoadXml(WithGallery(R"(<picture_list><picture path="/gone/here.jpg" angle="2"/>)"
                             R"(<picture path="D:\photos\both.jpg"/><picture path="/gone/deep.jpg"/>)"
                             R"(<picture path="/gone/folder.jpg"/><picture path="/gone/nowhere.jpg">)"
                             R"(<picture_variable name="t" vt="8" bstrVal="lost"/></picture>)"
                             R"(<picture path="/gone/"/><picture path=""/></picture_list>)"));
    CPictureList& pictures = test.project.GetRootGallery()->GetPictures();
    ASSERT_EQ(pictures.GetCount(), 2);
    EXPECT_EQ(pictures.GetAt(0)->GetPath(), test.Path(QStringLiteral("site/here.jpg")));
    EXPECT_EQ(pictures.GetAt(0)->GetAngle(), 2);
    EXPECT_EQ(pictures.GetAt(1)->GetPath(), test.Path(QStringLiteral("site/B/both.jpg")));
}

TEST(ProjectFile, AnOldFileReadsAsAProjectWithOneGallery)
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
    EXPECT_EQ(test.project.GetDeploySettings().folder, QStringLiteral("/out"));
}

TEST(ProjectFile, FoldersAreReadFromAnywhereInTheDocument)
{
    CTestProject test;
    test.LoadXml(
        R"(<project><project_folders recent_folder="/B"><folder path="/a"/><folder path="/b"/>)"
        R"(<folder path="/A"/></project_folders><x><y><folder path="/deep"/></y></x><gallery/></project>)");
    EXPECT_EQ(test.project.GetFolders(),
              (std::vector<QString>{QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/deep")}));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("/b"));
}

TEST(ProjectFile, VersionRootNameAndUnknownElementsDoNotMatter)
{
    CTestProject test;
    test.LoadXml(
        R"(<whatever version="99" extra="1"><new/><gallery index="4" extra="2"><newer/></gallery></whatever>)");
    EXPECT_TRUE(test.project.IsLoaded());
    EXPECT_NE(test.project.FindGallery(4), nullptr);
}
