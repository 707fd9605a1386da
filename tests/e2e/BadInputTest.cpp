#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "Program.h"
#include "Site.h"
#include "common/FileSystem.h"

// What people, disks and other programs can hand over, and that each of it ends in a clear text or in the
// silent rule for it, with nothing else lost.

namespace {

class BadInput : public testing::Test {
protected:
    ProgramResult Deploy(const QString& project) const
    {
        return program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    }

    // Exit code 1, three lines, and the text in one of them.
    void ExpectFailure(const ProgramResult& result, const QString& text) const
    {
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_FALSE(result.crashed);
        const QMap<QString, QString> failure = result.GetFailure();
        EXPECT_EQ(failure.size(), 3) << qPrintable(result.errors);
        EXPECT_TRUE(result.errors.contains(text)) << qPrintable(result.errors) << qPrintable(text);
        for (const QString& line : failure) {
            EXPECT_FALSE(line.isEmpty()) << qPrintable(result.errors);
        }
    }

    QString WriteProjectFile(const QByteArray& bytes) const
    {
        return program.scratch.Write(QStringLiteral("trip.gallery"), bytes);
    }

    CProgram program;
};

} // namespace

TEST_F(BadInput, AProjectThatIsNoXmlIsNamedWithItsLineAndStays)
{
    const struct {
        const char* bytes;
        const char* line;
    } rows[] = {
        {"", "Line: 1"},
        {"not xml at all", "Line: 1"},
        {"<project>\n<gallery index=\"0\">\n</project>", "Line: 3"},
        {"<project", "Line: 1"},
        {"\x89PNG\r\n\x1a\n", "Line: "},
    };
    for (const auto& row : rows) {
        const QString project = WriteProjectFile(row.bytes);
        for (const QStringList& arguments :
             {QStringList{QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))},
              QStringList{QStringLiteral("info"), project}}) {
            const ProgramResult result = program.Run(arguments);
            ExpectFailure(result, project);
            ExpectFailure(result, QString::fromLatin1(row.line));
        }
        EXPECT_EQ(program.scratch.Read(QStringLiteral("trip.gallery")), row.bytes);
        EXPECT_FALSE(FolderExists(program.Path(QStringLiteral("site"))));
    }
}

TEST_F(BadInput, AProjectThatIsAFolderIsNamed)
{
    ExpectFailure(Deploy(program.Path(QStringLiteral("photos"))), program.Path(QStringLiteral("photos")));
}

TEST_F(BadInput, ANumberThatIsNoneCostsThatValueOnly)
{
    program.WriteLayout("<%=content.images_count%>");
    const QString picture = program.WritePicture(QStringLiteral("a.jpg"));
    const ProgramResult result = Deploy(
        WriteProjectFile("<project>\n<gallery index=\"first\"><picture_list><picture angle=\"left\" path=\"" +
                         picture.toUtf8() + "\"/></picture_list></gallery></project>"));
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")), "1");
}

TEST_F(BadInput, ABrokenDefinitionKeepsAProjectFromOpeningAndIsNamed)
{
    program.WriteLayout("fine");
    const QString project = program.WriteProject({});
    const struct {
        const char* file;
        const char* bytes;
        const char* text;
    } rows[] = {
        {"data/Templates/zz.xml", "<template", "zz.xml"},
        {"data/Templates/zz.xml", "<style/>", "Could not find template element 'template'."},
        {"data/Styles/zz.xml", "<style>", "zz.xml"},
        {"data/Styles/zz.xml", "<template/>", "Could not find template element 'style'."},
        {"data/Styles/zz.xml", "<style default=\"yes\"/>", "'yes'"},
        {"data/Templates/zz.xml", "<template><page file=\"a.html\" multipage=\"yes\"/></template>", "'yes'"},
    };
    for (const auto& row : rows) {
        const QString path = program.scratch.Write(QString::fromLatin1(row.file), row.bytes);
        ExpectFailure(Deploy(project), QString::fromLatin1(row.text));
        ASSERT_TRUE(QFile::remove(path));
    }
    EXPECT_EQ(Deploy(project).exitCode, 0);
}

TEST_F(BadInput, MissingLayoutsAndStylesFallBackAndMissingPicturesAreLeftOutOnlyWhenAsked)
{
    program.WriteLayout("<%=content.images_count%> <%=gallery.layout_name%> <%=gallery.css%>");
    const QString kept = program.WritePicture(QStringLiteral("kept.jpg"));
    const QString project = WriteProjectFile("<project><gallery index=\"0\"><style template=\"/gone/x.xml\" "
                                             "template_page=\"x.html\" css=\"/gone/y.xml\"/>"
                                             "<picture_list><picture path=\"/gone/a.jpg\"/><picture path=\"" +
                                             kept.toUtf8() + "\"/></picture_list></gallery></project>");
    ExpectFailure(Deploy(project), QStringLiteral("/gone/a.jpg"));
    EXPECT_FALSE(FolderExists(program.Path(QStringLiteral("site"))));
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site")),
                     QStringLiteral("--leave-out-missing")});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_TRUE(result.errors.contains(QStringLiteral("/gone/a.jpg"))) << qPrintable(result.errors);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")), "1 Own style.css");
}

TEST_F(BadInput, WithoutAnyLayoutTheDeploymentSaysSo)
{
    program.UseOwnData();
    ExpectFailure(Deploy(WriteProjectFile("<project><gallery index=\"0\"/></project>")),
                  QStringLiteral("Template could not be found"));
}

TEST_F(BadInput, EachErrorOfAPageStopsTheDeploymentWithItsText)
{
    const struct {
        const char* page;
        const char* description;
    } rows[] = {
        {"<%nonsense%>", "Unknown template section 'nonsense'."},
        {"<%Picture id=\"a\"%>", "Unknown template section 'Picture'."},
        {"<%pageheader <%=a.b%>%>", "Unexpected nested template section."},
        {"<%=gallery%>", "Invalid syntax of variable template section: gallery. Variable section syntax: "
                         "<%=object.variable_name%>."},
        {"<%javastring value=\"a\" value=\"b\"%>", "Duplicate attribute found 'value'."},
        {"<%picture id%>", "Required attribute not found 'id'."},
        {"<%javastring value =\"a\"%>", "Invalid character ' ' found in attribute name."},
        {"<%javastring value=a%>", "Opening quotation mark not found in attribute value value."},
        {"<%advertisement name=\"a\" more=\"b\"%>", "Unknown attribute 'more'."},
        {"<%if <%=gallery.a%><%else a%><%else b%>%>", "Unexpected <%else%> element found."},
        {"<%if <%=gallery.a%>", "Could not find element closing bracket '%>'."},
    };
    for (const auto& row : rows) {
        program.WriteLayout(row.page);
        const ProgramResult result = Deploy(program.WriteProject({}));
        ExpectFailure(result, QString());
        EXPECT_EQ(result.GetFailure()[QStringLiteral("caption")],
                  QStringLiteral("Template parsing error occured."));
        EXPECT_EQ(result.GetFailure()[QStringLiteral("description")], QString::fromLatin1(row.description))
            << row.page;
        EXPECT_EQ(result.GetFailure()[QStringLiteral("advice")],
                  QStringLiteral("Please contact template developer."));
        ASSERT_TRUE(QFile::remove(program.Path(QStringLiteral("trip.gallery"))));
    }
}

TEST_F(BadInput, APageThatIncludesItselfEndsInAnErrorThatNamesIt)
{
    program.WriteLayout("<%include file=\"index.html\"%>");
    ExpectFailure(Deploy(program.WriteProject({})),
                  QStringLiteral("index.html is included more than 64 levels deep"));
}

TEST_F(BadInput, AMissingIncludeIsNoError)
{
    program.WriteLayout("a<%include file=\"missing.html\"%>b");
    EXPECT_EQ(Deploy(program.WriteProject({})).exitCode, 0);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")), "ab");
}

TEST_F(BadInput, AMissingPageFileIsNamed)
{
    program.WriteLayout("a", "<page file=\"index.html\"/><page file=\"gone.html\"/>");
    ExpectFailure(Deploy(program.WriteProject({})),
                  program.Path(QStringLiteral("data/Templates/Own/gone.html")));
}

TEST_F(BadInput, AMultipagePageWithoutPictureSlotsIsOnePage)
{
    program.WriteLayout("page <%=page.number%>");
    const ProgramResult result =
        Deploy(program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.contains(QStringLiteral("1 pages, 0 images")));
}

TEST_F(BadInput, ATargetThatIsAFileIsNamedAndStays)
{
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    const QString target = program.scratch.Write(QStringLiteral("site"), "precious");
    ExpectFailure(Deploy(project), QStringLiteral("Could not create directory %1.").arg(target));
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site")), "precious");
}

TEST_F(BadInput, AReadOnlyTargetIsNamed)
{
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    MakeDirectoryPath(program.Path(QStringLiteral("mount")));
    // A file system of its own, since no mode keeps an administrator out.
    const ProgramResult result = program.RunInShell(
        QStringLiteral(
            "unshare $(test $(id -u) = 0 || echo -r) -m sh -c 'mount -t tmpfs -o ro tmpfs \"$2\" && exec "
            "\"$program\" deploy \"$1\" \"$2/site\"' sh \"$1\" \"$2\""),
        {project, program.Path(QStringLiteral("mount"))});
    ExpectFailure(result, program.Path(QStringLiteral("mount/site")));
    ExpectFailure(result, QStringLiteral("Read-only file system"));
    ExpectFailure(result, QStringLiteral("Please check that you have the right to write there."));
}

TEST_F(BadInput, AFullDiskIsNamedAndLeavesNoHalfFile)
{
    QStringList pictures{program.WritePicture(QStringLiteral("0.jpg"), QSize(640, 480))};
    for (int i = 1; i < 40; ++i) {
        pictures += program.scratch.Write(QStringLiteral("photos/%1.jpg").arg(i),
                                          program.scratch.Read(QStringLiteral("photos/0.jpg")));
    }
    const QString project = program.WriteProject(pictures);
    MakeDirectoryPath(program.Path(QStringLiteral("mount")));
    const ProgramResult result = program.RunInShell(
        QStringLiteral("unshare $(test $(id -u) = 0 || echo -r) -m sh -c 'mount -t tmpfs -o size=600k tmpfs "
                       "\"$2\" && \"$program\" deploy "
                       "\"$1\" \"$2\";"
                       " code=$?; cp -r \"$2\" \"$3\"; exit $code' sh \"$1\" \"$2\" \"$3\""),
        {project, program.Path(QStringLiteral("mount")), program.Path(QStringLiteral("kept"))});
    ExpectFailure(result, program.Path(QStringLiteral("mount/")));
    ExpectFailure(result, QStringLiteral("No space left on device"));
    const QStringList files = CSite(program.Path(QStringLiteral("kept"))).GetFiles();
    EXPECT_FALSE(files.isEmpty());
    for (const QString& file : files) {
        EXPECT_FALSE(file.endsWith(QStringLiteral(".tmp"))) << qPrintable(file);
    }
}

TEST_F(BadInput, APictureThatCannotBeDecodedStopsTheDeploymentWithItsPath)
{
    const struct {
        const char* name;
        QByteArray bytes;
    } rows[] = {
        {"empty.jpg", ""},
        {"text.jpg", "This is a letter, not a picture."},
        {"zeros.png", QByteArray(5000, '\0')},
        {"header.jpg", QByteArray::fromHex("ffd8ffe000104a46494600010100000100010000")},
        {"bomb.png",
         QByteArray::fromHex("89504e470d0a1a0a0000000d494844527fffffff7fffffff08060000004e8a5c3c")},
    };
    for (const auto& row : rows) {
        const QString path =
            program.scratch.Write(QStringLiteral("photos/") + QString::fromLatin1(row.name), row.bytes);
        QDir(program.Path(QStringLiteral("site"))).removeRecursively();
        const ProgramResult result = Deploy(program.WriteProject({path}));
        ExpectFailure(result, QStringLiteral("Could not save image to '"));
        ExpectFailure(result, QStringLiteral("The picture '%1' could not be read: ").arg(path));
        ASSERT_TRUE(QFile::remove(program.Path(QStringLiteral("trip.gallery"))));
    }
}

TEST_F(BadInput, APictureThatDecodesInPartIsPublishedAndNamedInAWarning)
{
    const QString path = program.WritePicture(QStringLiteral("cut.jpg"), QSize(800, 600));
    QByteArray bytes = program.scratch.Read(QStringLiteral("photos/cut.jpg"));
    program.scratch.Write(QStringLiteral("photos/cut.jpg"), bytes.left(bytes.size() * 2 / 3));
    const ProgramResult result =
        Deploy(program.WriteProject({program.WritePicture(QStringLiteral("whole.jpg")), path}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.errors,
        QStringLiteral("warning: The picture '%1' is damaged. It was published as far as it could be read.\n")
            .arg(path));
    EXPECT_EQ(CSite(program.Path(QStringLiteral("site"))).FindBrokenLinks().join(QLatin1Char('\n')),
              QString());
}

TEST_F(BadInput, AFolderNamedLikeAPictureIsNoPicture)
{
    program.scratch.Write(QStringLiteral("set/album.jpg/inner.txt"), "x");
    const QString project = program.WriteProject({program.Path(QStringLiteral("set"))});
    EXPECT_TRUE(program.Run({QStringLiteral("info"), project}).output.contains(QStringLiteral("0 pictures")));
}

TEST_F(BadInput, GalleriesThatListEachOtherNeitherHangNorCrash)
{
    program.WriteLayout("<%=gallery.parent_path%><%=gallery.name%>");
    const ProgramResult result =
        Deploy(WriteProjectFile("<project root_gallery_index=\"0\"><gallery "
                                "index=\"0\"><picture_list><picture index=\"1\"/><picture index=\"0\"/>"
                                "<picture index=\"77\"/></picture_list></gallery><gallery "
                                "index=\"1\"><picture_list><picture index=\"0\"/>"
                                "<picture index=\"1\"/></picture_list></gallery></project>"));
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_TRUE(FileExists(program.Path(QStringLiteral("site/1/index.html"))));
}

TEST_F(BadInput, ATargetInsideAStyleFolderIsNotCopiedIntoItself)
{
    program.WriteLayout("page");
    const QString project = program.WriteProject({});
    const ProgramResult result = program.Run(
        {QStringLiteral("deploy"), project, program.Path(QStringLiteral("data/Styles/Plain/site"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_FALSE(FileExists(program.Path(QStringLiteral("data/Styles/Plain/site/Plain/site/Plain"))));
}

TEST_F(BadInput, APictureListedTwiceIsPublishedOnce)
{
    program.WriteLayout("<%=content.images_count%>");
    const QByteArray path = program.WritePicture(QStringLiteral("a.jpg")).toUtf8();
    const ProgramResult result =
        Deploy(WriteProjectFile("<project><gallery index=\"0\"><picture_list><picture path=\"" + path +
                                "\"/><picture path=\"" + path + "\"/></picture_list></gallery></project>"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")), "1");
}
