#include <map>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

QByteArray SavedAgain(CTestProject& test, const QByteArray& xml)
{
    test.LoadXml(xml);
    test.project.Save(test.ProjectPath());
    return test.scratch.Read(QStringLiteral("site/My.gallery"));
}

QByteArray InGallery(const QByteArray& elements)
{
    return "<project version=\"2.0\"><gallery index=\"0\">" + elements + "</gallery></project>";
}

} // namespace

TEST(KeptElements, WhatIsNotKnownIsWrittenBackWhereItStood)
{
    CTestProject test;
    const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    const QByteArray listed = "<picture_list><picture path=\"" + path + "\"";
    const struct {
        QByteArray xml;
        const char* written;
    } rows[] = {
        {R"(<project version="2.0" mood="blue"><gallery/></project>)", R"( mood="blue"><project_folders)"},
        {R"(<project version="2.0"><map scale="2">Text &amp; <x/></map><gallery/></project>)",
         R"(<map scale="2">Text &amp; <x/></map></project>)"},
        {R"(<project><project_folders sorted="1"><star/><folder path="/a"/></project_folders><gallery/></project>)",
         R"(sorted="1"><folder path="/a"/><star/></project_folders>)"},
        {R"(<project><gallery index="0" locked="1"/></project>)", R"(<gallery index="0" locked="1">)"},
        {InGallery("<video path=\"v\"/>"), R"(<video path="v"/></gallery>)"},
        {InGallery(R"(<style dark="1"><tone/></style>)"), R"( dark="1"><tone/></style>)"},
        {InGallery(R"(<picture_list sort="name"><group/></picture_list>)"),
         R"(<picture_list sort="name"><group/></picture_list>)"},
        {InGallery(listed + R"( stars="5"/></picture_list>)"), R"( size="10" stars="5">)"},
        {InGallery(listed + R"(><crop x="1"/></picture></picture_list>)"), R"(<crop x="1"/></picture>)"},
        {InGallery(listed + R"(><picture_variable name="v" vt="11" b="1"/></picture></picture_list>)"),
         R"(<picture_variable name="v" vt="11" b="1"/></picture>)"},
        {InGallery(R"(<picture_list><picture video="v.mp4"/></picture_list>)"),
         R"(<picture video="v.mp4"/>)"},
        {InGallery(R"(<picture_list><picture_list_variable name="v" vt="11"/></picture_list>)"),
         R"(<picture_list_variable name="v" vt="11"/>)"},
        {InGallery(R"(<project_variable name="v" vt="11"/>)"), R"(<project_variable name="v" vt="11"/>)"},
        {InGallery(
             R"(<page name="index" index="3" draft="1"><page_variable name="v" vt="11"/><note/></page>)"),
         R"(<page name="index" index="3" draft="1"><note/><page_variable name="v" vt="11"/></page>)"},
        {InGallery(R"(<page_visibility name="i.html" mode="2"><rule/></page_visibility>)"),
         R"(<page_visibility name="i.html" mode="2"><rule/></page_visibility>)"},
        {InGallery(R"(<image_stamp index="1" tiled="1"><more/></image_stamp>)"),
         R"(file="" transparency="0" tiled="1"><more/></image_stamp>)"},
        {InGallery(R"(<image_stamp index="7" file="huge.png"/>)"),
         R"(<image_stamp index="7" file="huge.png"/>)"},
        {InGallery(R"(<text_stamp index="1" shadow="1"><more/></text_stamp>)"),
         R"(color="0" shadow="1"><more/></text_stamp>)"},
        {R"(<project><gallery/><deploy_settings speed="9"><host/></deploy_settings></project>)",
         R"(open_browser_after_deploy="0" speed="9"><host/></deploy_settings>)"},
        {R"(<project version="2.7"><gallery/></project>)", R"(<project version="2.7")"},
        {R"(<project><project_folders><folder path="/a" star="1"><x/></folder></project_folders><gallery/></project>)",
         R"(<folder path="/a" star="1"><x/></folder></project_folders>)"},
        {InGallery(listed +
                   R"(><picture_variable bstrVal="t" name="v" vt="8" by="me"/></picture></picture_list>)"),
         R"(<picture_variable bstrVal="t" name="v" vt="8" by="me"/></picture>)"},
        {InGallery(
             R"(<page name="index" index="3"><page_variable lVal="4" name="v" vt="3" by="me"/></page>)"),
         R"(<page_variable lVal="4" name="v" vt="3" by="me"/></page>)"},
        {InGallery(R"(<project_variable lVal="4" name="v" vt="3"><x/></project_variable>)"),
         R"(<project_variable lVal="4" name="v" vt="3"><x/></project_variable>)"},
        {InGallery(
             R"(<page_visibility name="i.html"><visible_element name="e" visible="0" until="May"/></page_visibility>)"),
         R"(<visible_element name="e" visible="0" until="May"/>)"},
        {InGallery(R"(<page_style name="p" style="s" dark="t"/>)"),
         R"(<page_style name="p" style="s" dark="t"/>)"},
        {InGallery(R"(<page_style name="p" dark="t"/>)"), R"(<page_style name="p" dark="t"/>)"},
        {InGallery(R"(<advertisement name="a" value="v" page="p.html" until="May"/>)"),
         R"(<advertisement name="a" value="v" page="p.html" until="May"/>)"},
    };
    for (const auto& row : rows) {
        const QByteArray first = SavedAgain(test, row.xml);
        EXPECT_TRUE(first.contains(row.written)) << row.written << "\n" << first.data();
        EXPECT_EQ(SavedAgain(test, first).toStdString(), first.toStdString()) << row.written;
    }
}

TEST(KeptElements, GoWithTheirPictureAndLeaveWithIt)
{
    CTestProject test;
    const QByteArray a = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
    const QByteArray b = test.MakePicture(QStringLiteral("b.jpg")).toUtf8();
    test.LoadXml(InGallery("<picture_list><picture path=\"" + a + "\" stars=\"1\"/><picture path=\"" + b +
                           "\" stars=\"2\"/></picture_list>"));
    CGallery& root = *test.project.GetRootGallery();
    root.MovePicture(0, 1);
    root.MakeChildFromPicture(0);
    test.project.Save(test.ProjectPath());
    EXPECT_TRUE(test.scratch.Read(QStringLiteral("site/My.gallery"))
                    .contains("<picture path=\"" + b +
                              "\" angle=\"0\" relative=\"../pictures/b.jpg\" size=\"10\" stars=\"2\">"));
    root.RemovePicture(root.GetPictures().Find(QString::fromUtf8(a)));
    test.project.Save(test.ProjectPath());
    EXPECT_FALSE(test.scratch.Read(QStringLiteral("site/My.gallery")).contains("stars=\"1\""));
}

TEST(KeptElements, AVariableThatIsSetAnewTakesThePlaceOfTheUnknownOne)
{
    CTestProject test;
    test.LoadXml(InGallery(R"(<project_variable name="v" vt="11"/>)"));
    test.project.GetRootGallery()->SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("v"),
                                                     CVariant(4));
    test.project.Save(test.ProjectPath());
    const QByteArray saved = test.scratch.Read(QStringLiteral("site/My.gallery"));
    EXPECT_TRUE(saved.contains(R"(<project_variable lVal="4" name="v" vt="3"/>)"));
    EXPECT_FALSE(saved.contains("vt=\"11\""));
}

TEST(KeptElements, LayoutsAndStylesThatAreNotInstalledStayUntilOthersAreChosen)
{
    CTestProject test;
    test.AddStandard();
    const QString red = test.AddStyle(QStringLiteral("red"));
    const QByteArray xml =
        InGallery(R"(<style template="/gone/fancy.xml" template_page="index.html" css="/gone/green.xml"/>)"
                  R"(<page_style name="picture" style="/gone/pink.xml"/>)");
    const QByteArray saved = SavedAgain(test, xml);
    EXPECT_TRUE(
        saved.contains(R"(template="/gone/fancy.xml" template_page="index.html" css="/gone/green.xml")"))
        << saved.data();
    EXPECT_TRUE(saved.contains(R"(<page_style name="picture" style="/gone/pink.xml"/>)"));
    CGallery& gallery = *test.project.GetRootGallery();
    // A look at the other page chooses nothing.
    bool styleChanged = false;
    bool galleryChanged = false;
    EXPECT_TRUE(gallery.FollowLink(QStringLiteral("picture.html"), styleChanged, galleryChanged));
    EXPECT_TRUE(gallery.FollowLink(QStringLiteral("index.html"), styleChanged, galleryChanged));
    test.project.Save(test.ProjectPath());
    EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")).toStdString(), saved.toStdString());
    gallery.SetTemplate(QStringLiteral("plain.xml"));
    gallery.SetStyle(red);
    test.project.Save(test.ProjectPath());
    const QByteArray chosen = test.scratch.Read(QStringLiteral("site/My.gallery"));
    EXPECT_FALSE(chosen.contains("fancy"));
    EXPECT_FALSE(chosen.contains("green"));
    EXPECT_TRUE(chosen.contains("pink"));
}

TEST(KeptElements, TheStyleOfAPageIsFoundByItsNameWhereTheProgramHasMoved)
{
    CTestProject test;
    test.AddStandard();
    const QString red = test.AddStyle(QStringLiteral("red"));
    test.LoadXml(InGallery(R"(<style template="plain.xml" css="/old/styles/blue.xml"/>)"
                           R"(<page_style name="picture" style="/old/styles/red.xml"/>)"));
    const CGalleryLayout& layout = test.project.GetRootGallery()->GetLayout();
    EXPECT_EQ(layout.GetStyleOfPage(QStringLiteral("picture"))->css, QStringLiteral("red.css"));
    EXPECT_EQ(layout.GetStyleOfPage(QStringLiteral("index"))->css, QStringLiteral("blue.css"));
}

TEST(ReadOnlyProjects, AreThoseOfANewerVersionAndThoseThatAreNone)
{
    const std::map<QByteArray, bool> rows = {
        {R"(<project version="2.0"><gallery/></project>)", false},
        {R"(<project><gallery/></project>)", false},
        {R"(<project version="2.9"><picture_list/></project>)", false},
        {R"(<project version="1"><picture_list/></project>)", false},
        {R"(<project version="3.0"><gallery/></project>)", true},
        {R"(<project version="10"><gallery/></project>)", true},
        {R"(<collection version="2.0"><gallery/></collection>)", true},
        {R"(<project><target name="build"/></project>)", true},
        {R"(<svg/>)", true},
    };
    for (const auto& [xml, isReadOnly] : rows) {
        CTestProject test;
        test.LoadXml(xml);
        EXPECT_TRUE(test.project.IsLoaded());
        EXPECT_EQ(!test.project.GetReadOnlyReason().isNull(), isReadOnly) << xml.data();
        if (!isReadOnly) {
            test.project.Save(test.ProjectPath());
            continue;
        }
        const QString texts = TextsOf<CGenericException>([&] { test.project.Save(test.ProjectPath()); });
        EXPECT_TRUE(texts.contains(test.ProjectPath()) && texts.contains(test.project.GetReadOnlyReason()))
            << qPrintable(texts);
        EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), xml);
        test.project.Save(test.Path(QStringLiteral("site/Copy.gallery")));
        EXPECT_TRUE(test.project.GetReadOnlyReason().isNull());
        test.project.Save(test.Path(QStringLiteral("site/Copy.gallery")));
        EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), xml);
        EXPECT_TRUE(
            test.scratch.Read(QStringLiteral("site/Copy.gallery")).startsWith("<project version=\"2.0\""));
    }
}

TEST(NewProjects, StartAnew)
{
    CTestProject test;
    test.NewGallery();
    test.project.GetDeploySettings().folder = QStringLiteral("/out/old");
    test.project.GetDeploySettings().ftp_directory = QStringLiteral("/www");
    test.project.New();
    EXPECT_EQ(test.project.GetDeploySettings(), CDeploySettings());
    test.project.Save(test.ProjectPath());
    EXPECT_EQ(test.project.GetDeploySettings().folder, test.Path(QStringLiteral("site/My")));
    test.project.GetDeploySettings().folder = QStringLiteral("/out/old");
    test.scratch.Write(QStringLiteral("site/Other.gallery"), "<project version=\"2.0\"><gallery/></project>");
    test.project.Open(test.Path(QStringLiteral("site/Other.gallery")));
    EXPECT_EQ(test.project.GetDeploySettings().folder, test.Path(QStringLiteral("site/Other")));
    EXPECT_EQ(test.project.GetDeploySettings().ftp_directory, QString());
}
