#include "document/project/AbsentFiles.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>

#include "TestProject.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"

namespace {

QByteArray WithPictures(const QByteArray& pictures, const QByteArray& more = QByteArray())
{
    return "<project version=\"2.0\"><gallery index=\"0\"><picture_list>" + pictures + "</picture_list>" +
           more + "</gallery></project>";
}

const CPictureInfo& PictureAt(CTestProject& test, int32_t position)
{
    return *test.project.GetRootGallery()->GetPictures().GetAt(position);
}

// Below the scratch folder, or as it is.
QString PathAt(CTestProject& test, int32_t position)
{
    return PictureAt(test, position).GetPath().replace(test.scratch.Path(), QString());
}

QByteArray SavedAs(CTestProject& test, const QString& name)
{
    test.project.Save(test.Path(name));
    return test.scratch.Read(name);
}

// A project with two pictures of one name and a watermark, saved as "old/My.gallery" beside its pictures.
void SaveProjectWithPictures(CTestProject& test)
{
    test.project.New();
    CGallery& gallery = *test.project.GetRootGallery();
    for (const char* name : {"old/2019/D.jpg", "old/2020/D.jpg"}) {
        gallery.AddPicture(test.scratch.Write(QString::fromUtf8(name), name))
            .record->SetVariable(QStringLiteral("title"), CVariant(QString::fromUtf8(name)));
    }
    gallery.RotatePicture(1, true);
    gallery.GetImageStamps()[0].file = test.scratch.Write(QStringLiteral("old/mark.png"), "mark");
    test.project.Save(test.Path(QStringLiteral("old/My.gallery")));
}

} // namespace

TEST(AbsentFiles, KeepPlaceTextsAnglePathAndTraceAndAreWrittenBackAsTheyWere)
{
    CTestProject test;
    const QByteArray there = test.MakePicture(QStringLiteral("there.jpg"), QDate(2020, 1, 1)).toUtf8();
    const QByteArray gone =
        R"(<picture path="/disk/2019/a.jpg" angle="3" relative="../../disk/./2019/a.jpg" )"
        R"(size="12345678901" name_suffix="_x"><picture_variable bstrVal="The sea" )"
        R"(name="title" vt="8"/></picture>)";
    const QByteArray mark =
        R"(<image_stamp index="1" position="5" margin="3" file="/disk/w.png" transparency="4" relative="../w.png" size="7"/>)";
    test.LoadXml(WithPictures(gone + "<picture path=\"" + there + "\"/>", mark));
    EXPECT_EQ(PathAt(test, 0), QStringLiteral("/disk/2019/a.jpg"));
    EXPECT_FALSE(PictureAt(test, 0).IsThere());
    EXPECT_TRUE(PictureAt(test, 1).IsThere());
    EXPECT_EQ(PictureAt(test, 0).GetAngle(), 3);
    EXPECT_EQ(PictureAt(test, 0).GetDate(), 0);
    EXPECT_EQ(test.project.GetRootGallery()->GetPictures().GetMinDate(), 43831.5);
    const QByteArray saved = SavedAs(test, QStringLiteral("site/My.gallery"));
    EXPECT_TRUE(
        saved.contains(R"(<picture path="/disk/2019/a.jpg" angle="3" relative="../../disk/./2019/a.jpg" )"
                       R"(size="12345678901" name_suffix="_x">)"))
        << saved.data();
    EXPECT_TRUE(saved.contains(mark)) << saved.data();
    EXPECT_TRUE(saved.contains("bstrVal=\"The sea\""));
}

TEST(AbsentFiles, ASaveElsewhereLeadsToWhereTheyWouldBe)
{
    CTestProject test;
    test.LoadXml(WithPictures(
        R"(<picture path="/old/2019/a.jpg" relative="2019/a.jpg"/><picture path="/disk/b.jpg"/>)"));
    const QByteArray saved = SavedAs(test, QStringLiteral("other/Copy.gallery"));
    EXPECT_TRUE(saved.contains(R"(path="/old/2019/a.jpg" angle="0" relative="../site/2019/a.jpg")"))
        << saved.data();
    const QString up =
        QStringLiteral("../").repeated(test.Path(QStringLiteral("other")).count(QLatin1Char('/')));
    EXPECT_TRUE(saved.contains("relative=\"" + up.toUtf8() + "disk/b.jpg\"")) << saved.data();
}

TEST(AbsentFiles, AreListedWithTheirGalleries)
{
    CTestProject test;
    test.LoadXml(R"(<project version="2.0"><gallery index="0"><picture_list><picture path="/x/a.jpg"/>)"
                 R"(<picture index="1"/></picture_list></gallery><gallery index="1"><picture_list>)"
                 R"(<picture path="/x/b.jpg" size="5"/></picture_list><image_stamp file="/x/w.png"/>)"
                 R"(<image_stamp index="1" file="/x/w.png"/></gallery></project>)");
    QStringList listed;
    for (const AbsentFile& file : test.project.GetAbsentFiles()) {
        listed += QStringLiteral("%1 %2 %3 %4")
                      .arg(file.gallery)
                      .arg(file.path)
                      .arg(file.isWatermark)
                      .arg(file.trace.size);
    }
    EXPECT_EQ(listed.join(QLatin1Char('\n')),
              QStringLiteral("0 /x/a.jpg 0 -1\n1 /x/b.jpg 0 5\n1 /x/w.png 1 -1"));
}

TEST(AbsentFiles, OfAProjectThatMovedWithItsPicturesAreFoundEachWithItsOwnTexts)
{
    CTestProject test;
    SaveProjectWithPictures(test);
    ASSERT_TRUE(QDir().rename(test.Path(QStringLiteral("old")), test.Path(QStringLiteral("new"))));
    test.scratch.Write(QStringLiteral("new/D.jpg"), "a stranger");
    test.project.Open(test.Path(QStringLiteral("new/My.gallery")));
    EXPECT_EQ(PathAt(test, 0), QStringLiteral("new/2019/D.jpg"));
    EXPECT_EQ(PathAt(test, 1), QStringLiteral("new/2020/D.jpg"));
    EXPECT_TRUE(PictureAt(test, 0).IsThere());
    EXPECT_EQ(PictureAt(test, 0).GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("old/2019/D.jpg")));
    EXPECT_EQ(PictureAt(test, 1).GetAngle(), 1);
    EXPECT_EQ(test.project.GetRootGallery()->GetImageStamps()[0].file,
              test.Path(QStringLiteral("new/mark.png")));
    EXPECT_TRUE(test.project.GetAbsentFiles().empty());
    EXPECT_EQ(test.project.GetRootGallery()->GetPictures().Find(test.Path(QStringLiteral("new/2020/D.jpg"))),
              1);
}

TEST(AbsentFiles, OfAFileWithoutTracesAreFoundByTheLongestCommonEnd)
{
    const struct {
        const char* what;
        std::vector<const char*> files;
        std::vector<QByteArray> lost;
        const char* expected;
    } rows[] = {
        {"beside the project", {"a.jpg"}, {"/gone/a.jpg"}, "site/a.jpg"},
        {"of another system", {"z/a.jpg"}, {"D:\\photos\\a.jpg"}, "site/z/a.jpg"},
        {"two of one name",
         {"2019/D.jpg", "2020/D.jpg"},
         {"/o/2020/D.jpg", "/o/2019/D.jpg"},
         "site/2020/D.jpg site/2019/D.jpg"},
        {"a tie", {"x/a.jpg", "y/a.jpg"}, {"/gone/a.jpg"}, "/gone/a.jpg"},
        {"the longer end wins", {"x/a.jpg"}, {"/o/y/a.jpg", "/o/x/a.jpg"}, "/o/y/a.jpg site/x/a.jpg"},
        {"two that are equally good", {"x/a.jpg"}, {"/o/y/a.jpg", "/o/z/a.jpg"}, "/o/y/a.jpg /o/z/a.jpg"},
        {"letter case", {"A.jpg"}, {"/gone/a.jpg"}, "/gone/a.jpg"},
        {"four levels",
         {"1/2/3/4/a.jpg", "1/2/3/4/5/b.jpg"},
         {"/o/a.jpg", "/o/b.jpg"},
         "site/1/2/3/4/a.jpg /o/b.jpg"},
        {"a hidden folder", {".h/a.jpg", ".b.jpg"}, {"/o/a.jpg", "/o/.b.jpg"}, "/o/a.jpg /o/.b.jpg"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        for (const char* file : row.files) {
            test.scratch.Write(QStringLiteral("site/") + QString::fromUtf8(file), file);
        }
        QByteArray pictures;
        for (const QByteArray& path : row.lost) {
            pictures += "<picture path=\"" + path + "\"/>";
        }
        test.LoadXml(WithPictures(pictures));
        QStringList paths;
        for (size_t place = 0; place < row.lost.size(); ++place) {
            paths += PathAt(test, static_cast<int32_t>(place));
        }
        EXPECT_EQ(paths.join(QLatin1Char(' ')), QString::fromUtf8(row.expected)) << row.what;
    }
}

TEST(AbsentFiles, AFindByTheNameAloneNeedsTheSizeThatIsKnown)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/a.jpg"), "four");
    test.scratch.Write(QStringLiteral("site/b.jpg"), "four");
    test.scratch.Write(QStringLiteral("site/x/c.jpg"), "four");
    test.LoadXml(WithPictures(R"(<picture path="/o/a.jpg" size="5"/><picture path="/o/b.jpg" size="4"/>)"
                              R"(<picture path="/o/x/c.jpg" size="5"/>)"));
    EXPECT_EQ(PathAt(test, 0), QStringLiteral("/o/a.jpg"));
    EXPECT_EQ(PathAt(test, 1), QStringLiteral("site/b.jpg"));
    EXPECT_EQ(PathAt(test, 2), QStringLiteral("site/x/c.jpg")); // edited since
}

TEST(AbsentFiles, NoneIsFoundThatIsAnotherPictureOfTheProject)
{
    CTestProject test;
    const QByteArray own = test.scratch.Write(QStringLiteral("site/x/a.jpg"), "").toUtf8();
    test.LoadXml(
        WithPictures("<picture path=\"" + own + R"("/><picture path="/o/a.jpg" relative="x/a.jpg"/>)"));
    EXPECT_EQ(PathAt(test, 1), QStringLiteral("/o/a.jpg"));
}

TEST(AbsentFiles, TheSamePathInTwoGalleriesGoesToTheSameFile)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/x/a.jpg"), "");
    test.LoadXml(
        R"(<project version="2.0"><gallery index="0"><picture_list><picture path="/o/a.jpg"/></picture_list>)"
        R"(</gallery><gallery index="1"><picture_list><picture path="/o/a.jpg"/></picture_list></gallery></project>)");
    for (const int32_t index : {0, 1}) {
        EXPECT_EQ(test.project.FindGallery(index)->GetPictures().GetAt(0)->GetPath(),
                  test.Path(QStringLiteral("site/x/a.jpg")));
    }
}

TEST(AbsentFiles, AreFoundInTheRecentFoldersAsWell)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("recent/2019/a.jpg"), "");
    test.scratch.Write(QStringLiteral("linked/2019/b.jpg"), "");
    ASSERT_TRUE(QFile::link(test.Path(QStringLiteral("linked")), test.Path(QStringLiteral("recent/link"))));
    test.LoadXml("<project version=\"2.0\"><project_folders><folder path=\"" +
                 test.Path(QStringLiteral("recent")).toUtf8() +
                 "\"/></project_folders><gallery><picture_list><picture path=\"/o/2019/a.jpg\"/>"
                 "<picture path=\"/o/2019/b.jpg\"/></picture_list></gallery></project>");
    EXPECT_EQ(PathAt(test, 0), QStringLiteral("recent/2019/a.jpg"));
    EXPECT_EQ(PathAt(test, 1), QStringLiteral("/o/2019/b.jpg"));
}

TEST(AbsentFiles, AFolderOrAPipeInPlaceOfThePictureIsNoPicture)
{
    CTestProject test;
    test.scratch.Write(QStringLiteral("site/folder.jpg/x"), "");
    const QString pipe = test.Path(QStringLiteral("site/pipe.jpg"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    test.LoadXml(WithPictures("<picture path=\"" + test.Path(QStringLiteral("site/folder.jpg")).toUtf8() +
                                  "\"/><picture path=\"" + pipe.toUtf8() + "\"/>",
                              "<image_stamp file=\"" + pipe.toUtf8() + "\"/>"));
    EXPECT_FALSE(PictureAt(test, 0).IsThere());
    EXPECT_FALSE(PictureAt(test, 1).IsThere());
    EXPECT_EQ(test.project.GetAbsentFiles().size(), 3u);
    EXPECT_TRUE(IsFile(test.project.GetRootGallery()->GetCoverPath())); // and nobody waits for the pipe
}

TEST(AbsentFiles, OddTracesAreNone)
{
    const QByteArray longPath = "/" + QByteArray(4000, 'p') + "/a.jpg";
    for (const QByteArray& attributes :
         {QByteArray("relative=\"/etc/hostname\""), QByteArray("relative=\"..\""),
          QByteArray("relative=\"\""), QByteArray("size=\"-5\""), QByteArray("size=\"1e3\""),
          QByteArray("size=\"99999999999999999999\""),
          QByteArray("relative=\"" + QByteArray(10'000, '.') + "\"")}) {
        for (const QByteArray& path : {QByteArray("/gone/a.jpg"), longPath}) {
            CTestProject test;
            test.LoadXml(WithPictures("<picture path=\"" + path + "\" " + attributes + "/>"));
            EXPECT_EQ(PathAt(test, 0), QString::fromUtf8(path)) << attributes.left(40).data();
            SavedAs(test, QStringLiteral("site/My.gallery"));
            test.project.Load(test.ProjectPath());
            EXPECT_EQ(PathAt(test, 0), QString::fromUtf8(path)) << attributes.left(40).data();
        }
    }
}

TEST(AbsentFiles, ComeAndGoWithTheirDisk)
{
    CTestProject test;
    SaveProjectWithPictures(test);
    ASSERT_TRUE(QDir().rename(test.Path(QStringLiteral("old/2019")), test.Path(QStringLiteral("away"))));
    ASSERT_TRUE(
        QFile::rename(test.Path(QStringLiteral("old/mark.png")), test.Path(QStringLiteral("mark.png"))));
    EXPECT_TRUE(test.project.LookForFiles());
    EXPECT_FALSE(test.project.LookForFiles());
    EXPECT_EQ(test.project.GetAbsentFiles().size(), 2u);
    EXPECT_EQ(PictureAt(test, 0).GetDate(), 0);
    SavedAs(test, QStringLiteral("old/My.gallery"));
    test.project.Load(test.Path(QStringLiteral("old/My.gallery")));
    EXPECT_EQ(test.project.GetAbsentFiles().size(), 2u);
    EXPECT_EQ(test.project.GetAbsentFiles()[0].trace.size, 14);
    ASSERT_TRUE(QDir().rename(test.Path(QStringLiteral("away")), test.Path(QStringLiteral("old/2019"))));
    EXPECT_TRUE(test.project.LookForFiles());
    EXPECT_NE(PictureAt(test, 0).GetDate(), 0);
    EXPECT_EQ(PictureAt(test, 0).GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("old/2019/D.jpg")));
    ASSERT_TRUE(
        QFile::rename(test.Path(QStringLiteral("mark.png")), test.Path(QStringLiteral("old/mark.png"))));
    EXPECT_TRUE(test.project.LookForFiles());
    EXPECT_TRUE(test.project.GetAbsentFiles().empty());
}

TEST(AbsentFiles, AreSearchedInAFolderThatThePersonNames)
{
    CTestProject test;
    SaveProjectWithPictures(test);
    ASSERT_TRUE(QDir().rename(test.Path(QStringLiteral("old/2019")), test.Path(QStringLiteral("x"))));
    ASSERT_TRUE(QDir().mkpath(test.Path(QStringLiteral("box/1/2/3/4/5/6"))));
    ASSERT_TRUE(
        QDir().rename(test.Path(QStringLiteral("x")), test.Path(QStringLiteral("box/1/2/3/4/5/6/2019"))));
    test.project.Load(test.Path(QStringLiteral("old/My.gallery")));
    const std::vector<AbsentFile> absent = test.project.GetAbsentFiles();
    ASSERT_EQ(absent.size(), 1u);
    const CAbsentFileSearch search(absent, test.project.GetPresentFiles());
    CStopSignal stop;
    const std::vector<FileMove> moves = search.Find(test.Path(QStringLiteral("box")), stop);
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].gallery, 0);
    EXPECT_EQ(moves[0].oldPath, test.Path(QStringLiteral("old/2019/D.jpg")));
    EXPECT_EQ(moves[0].newPath, test.Path(QStringLiteral("box/1/2/3/4/5/6/2019/D.jpg")));
    EXPECT_TRUE(moves[0].hasExactSize);
    EXPECT_FALSE(PictureAt(test, 0).IsThere()); // so far it is a preview
    EXPECT_EQ(test.project.Relocate(moves), 1);
    EXPECT_TRUE(PictureAt(test, 0).IsThere());
    EXPECT_EQ(PictureAt(test, 0).GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("old/2019/D.jpg")));
    stop.Set();
    EXPECT_TRUE(CAbsentFileSearch(absent, {}).Find(test.Path(QStringLiteral("box")), stop).empty());
}

TEST(AbsentFiles, AMoveIsTakenBackByItsOpposite)
{
    CTestProject test;
    const QByteArray lost = R"(<picture path="/o/a.jpg" angle="2" relative="q/a.jpg" size="9"/>)";
    test.LoadXml(WithPictures(lost, "<image_stamp file=\"/o/w.png\"/>"));
    const QByteArray before = SavedAs(test, QStringLiteral("site/My.gallery"));
    const QString found = test.MakePicture(QStringLiteral("a.jpg"));
    const std::vector<FileMove> moves = {
        {.gallery = 0, .oldPath = QStringLiteral("/o/a.jpg"), .newPath = found},
        {.gallery = 0, .oldPath = QStringLiteral("/o/w.png"), .newPath = found, .isWatermark = true},
        {.gallery = 7, .oldPath = QStringLiteral("/o/a.jpg"), .newPath = found},
        {.gallery = 0, .oldPath = QStringLiteral("/o/none.jpg"), .newPath = found},
    };
    EXPECT_EQ(test.project.Relocate(moves), 2);
    EXPECT_EQ(test.project.GetRootGallery()->GetImageStamps()[0].file, found);
    EXPECT_TRUE(test.project.GetAbsentFiles().empty());
    EXPECT_TRUE(SavedAs(test, QStringLiteral("site/My.gallery")).contains("size=\"10\""));
    std::vector<FileMove> back = moves;
    for (FileMove& move : back) {
        std::swap(move.oldPath, move.newPath);
    }
    EXPECT_EQ(test.project.Relocate(back), 2);
    EXPECT_EQ(SavedAs(test, QStringLiteral("site/My.gallery")), before);
}
