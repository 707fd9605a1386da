#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>
#include <QRegularExpression>

#include "common/FileSystem.h"
#include "content/DeploymentRecord.h"
#include "deploy/Deployment.h"
#include "document/galleries/Gallery.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"

namespace {

// A project of three pictures, each on a page of its own, that is deployed as a person does.
class CarefulDeployment : public testing::Test {
protected:
    CarefulDeployment()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%=a.file_name%><%picture id=\"a\" width=\"20\" height=\"15\" href=\"\"%>");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
        for (const char* name : {"one.png", "two.png", "three.png"}) {
            fixture.GetRoot().AddPicture(fixture.WritePicture(QString::fromLatin1(name)));
        }
        fixture.GetProject().Save(Path("Trip.gallery"));
    }

    struct Choices {
        bool leaveOutMissing = false;
        bool overwrite = false;
    };
    DeploymentTarget Site() const { return FolderTarget{Path("site")}; }
    // The three texts of what has stopped it; "done" without one.
    QString Deploy(const Choices& choices)
    {
        CDeployment run(fixture.GetProject(), {.target = Site(),
                                               .leaveOutMissing = choices.leaveOutMissing,
                                               .overwrite = choices.overwrite,
                                               .recordsFolder = Path("records"),
                                               .sitesFolder = Path("sites")});
        run.Start({});
        run.WaitFinished();
        warnings = run.GetResult().warnings;
        if (const auto* const doubts = std::get_if<DeployDoubts>(&run.GetEnd())) {
            return TextsOf(doubts->IsAnyMissing() ? MissingFilesError(*doubts)
                                                  : StrangeFilesError(Path("site"), doubts->strangeFiles));
        }
        if (const auto* const failure = std::get_if<DeployFailure>(&run.GetEnd())) {
            return TextsOf(*failure);
        }
        EXPECT_TRUE(std::holds_alternative<DeployDone>(run.GetEnd()));
        return QStringLiteral("done");
    }
    static QString TextsOf(const DeployFailure& failure)
    {
        return QStringList{failure.caption, failure.description, failure.advice}.join(QLatin1Char('\n'));
    }
    DeployDoubts Examine() { return ExamineDeployment(fixture.GetProject(), Site(), Path("records")); }
    QString Deploy() { return Deploy(Choices()); }

    QString Path(const char* name) const { return fixture.scratch.Path(QString::fromUtf8(name)); }
    QByteArray Read(const char* name) const { return fixture.scratch.Read(QString::fromUtf8(name)); }
    QString Photo(const char* name) const { return Path("photos/") + QString::fromUtf8(name); }
    QStringList SiteFiles() const
    {
        return fixture.scratch.ListFiles().filter(QRegularExpression(QStringLiteral("^site/")));
    }

    CProjectFixture fixture;
    QStringList warnings;
};

} // namespace

TEST_F(CarefulDeployment, AbsentPicturesStopItBeforeAnythingIsWritten)
{
    ASSERT_EQ(Deploy(), QStringLiteral("done"));
    const QStringList before = SiteFiles();
    QFile::rename(Path("photos"), Path("unplugged"));
    const QString error = Deploy();
    EXPECT_TRUE(error.contains(QStringLiteral("Pictures that are not there now: 3.\n") + Photo("one.png")))
        << qPrintable(error);
    EXPECT_EQ(SiteFiles(), before);
    QFile::remove(Path("site/p1.html"));
    EXPECT_NE(Deploy(), QStringLiteral("done"));
    EXPECT_FALSE(FileExists(Path("site/p1.html")));
}

TEST_F(CarefulDeployment, OnlyTenFilesAreNamed)
{
    for (int i = 0; i < 20; ++i) {
        const QString path = fixture.WritePicture(QStringLiteral("x%1.png").arg(i));
        fixture.GetRoot().AddPicture(path);
        QFile::remove(path);
    }
    const QString error = Deploy();
    EXPECT_TRUE(error.contains(Photo("x9.png"))) << qPrintable(error);
    EXPECT_FALSE(error.contains(Photo("x10.png")));
    EXPECT_TRUE(error.contains(QStringLiteral("\nand 10 more\n")));
}

TEST_F(CarefulDeployment, WhatIsLeftOutTakesNoPageAndIsKept)
{
    ASSERT_EQ(Deploy(), QStringLiteral("done"));
    QFile::remove(Photo("two.png"));
    EXPECT_EQ(Deploy({.leaveOutMissing = true}), QStringLiteral("done"));
    EXPECT_EQ(
        warnings,
        QStringList(QStringLiteral("The picture %1 is not there. It was left out.").arg(Photo("two.png"))));
    EXPECT_TRUE(Read("site/p.html").startsWith("one.png"));
    EXPECT_TRUE(Read("site/p1.html").startsWith("three.png"));
    // Such a run tidies nothing up: the picture may come back.
    EXPECT_TRUE(FileExists(Path("site/p2.html")));
    EXPECT_TRUE(FileExists(Path("site/pictures/two2015.png")));
    ASSERT_EQ(fixture.GetRoot().GetPictures().GetCount(), 3);
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetAt(1)->GetPath(), Photo("two.png"));
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
    // With the picture back the site is as it was.
    fixture.WritePicture(QStringLiteral("two.png"));
    EXPECT_EQ(Deploy(), QStringLiteral("done"));
    EXPECT_TRUE(Read("site/p1.html").startsWith("two.png"));
    EXPECT_TRUE(Read("site/p2.html").startsWith("three.png"));
}

TEST_F(CarefulDeployment, ALeftOutRunKeepsTheLayoutsBesideTheProject)
{
    fixture.scratch.Write(QStringLiteral("Templates/own.xml"),
                          "<template name=\"Own\" folder=\"Own\"><page file=\"q.html\"/></template>");
    fixture.scratch.Write(QStringLiteral("Templates/Own/q.html"), "own");
    fixture.OpenProject(Path("Trip.gallery"));
    fixture.GetRoot().SetTemplate(Path("Templates/own.xml").toLower());
    QFile::remove(Photo("two.png"));
    ASSERT_EQ(Deploy({.leaveOutMissing = true}), QStringLiteral("done"));
    EXPECT_EQ(Read("site/q.html"), "own");
}

TEST_F(CarefulDeployment, AWatermarkThatIsNoPictureStopsIt)
{
    CImageStampParams& stamp = fixture.GetRoot().GetImageStamps()[0];
    fixture.scratch.Write(QStringLiteral("text.png"), "no picture");
    MakeDirectoryPath(Path("folder.png"));
    ASSERT_EQ(::mkfifo(Path("pipe.png").toUtf8().constData(), 0600), 0);
    for (const char* name : {"missing.png", "text.png", "folder.png", "pipe.png"}) {
        stamp.file = Path(name);
        const QString error = Deploy();
        EXPECT_TRUE(error.contains(QStringLiteral("Watermarks that can't be read: 1.\n") + Path(name)))
            << qPrintable(error);
        EXPECT_TRUE(SiteFiles().isEmpty());
    }
    EXPECT_EQ(Deploy({.leaveOutMissing = true}), QStringLiteral("done"));
    EXPECT_EQ(warnings.size(), 1);
    EXPECT_EQ(stamp.file, Path("pipe.png"));
    EXPECT_EQ(SiteFiles().filter(QStringLiteral("pictures/")).size(), 3);
}

TEST_F(CarefulDeployment, SomebodyElsesFilesAreNamedBeforeTheFirstIsOverwritten)
{
    fixture.scratch.Write(QStringLiteral("site/p.html"), "mine");
    fixture.scratch.Write(QStringLiteral("site/notes.txt"), "mine");
    fixture.scratch.Write(QStringLiteral("site/pictures/one2015.png"), "mine");
    fixture.scratch.Write(QStringLiteral("site/Blue/style.css"), Read("program/Styles/Blue/style.css"));
    const QStringList before = SiteFiles();
    const QString error = Deploy();
    EXPECT_TRUE(error.contains(QStringLiteral("would be overwritten: 2.\n%1\n%2\n")
                                   .arg(Path("site/p.html"), Path("site/pictures/one2015.png"))))
        << qPrintable(error);
    EXPECT_EQ(SiteFiles(), before);
    EXPECT_EQ(Read("site/p.html"), "mine");
    EXPECT_EQ(Deploy({.overwrite = true}), QStringLiteral("done"));
    EXPECT_TRUE(Read("site/p.html").startsWith("one.png"));
    EXPECT_EQ(Read("site/notes.txt"), "mine");
    // From now on they are the project's.
    EXPECT_EQ(Deploy(), QStringLiteral("done"));
}

TEST_F(CarefulDeployment, ExamineSaysWhatIsToBeDecidedAndWritesNothing)
{
    EXPECT_FALSE(Examine().IsAnyMissing());
    EXPECT_TRUE(Examine().strangeFiles.isEmpty());
    QFile::remove(Photo("two.png"));
    fixture.GetRoot().GetImageStamps()[2].file = Path("missing.png");
    fixture.scratch.Write(QStringLiteral("site/p.html"), "mine");
    const DeployDoubts doubts = Examine();
    EXPECT_EQ(doubts.absentPictures, (std::vector<UnusableFile>{{0, Photo("two.png")}}));
    EXPECT_EQ(doubts.unreadableWatermarks, (std::vector<UnusableFile>{{0, Path("missing.png")}}));
    EXPECT_EQ(doubts.strangeFiles, QStringList(Path("site/p.html")));
    EXPECT_EQ(SiteFiles(), QStringList(QStringLiteral("site/p.html")));
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(CarefulDeployment, TwoProjectsOfOneNameAndTargetLeaveEachOthersFilesAlone)
{
    ASSERT_EQ(Deploy(), QStringLiteral("done"));
    fixture.NewProject();
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"), "other");
    MakeDirectoryPath(Path("b"));
    fixture.GetProject().Save(Path("b/Trip.gallery"));
    EXPECT_TRUE(Deploy().contains(QStringLiteral("would be overwritten: 1.")));
    ASSERT_EQ(Deploy({.overwrite = true}), QStringLiteral("done"));
    EXPECT_TRUE(FileExists(Path("site/p2.html")));
    EXPECT_TRUE(FileExists(Path("site/pictures/one2015.png")));
}

TEST_F(CarefulDeployment, TheRecordOfAnEarlierVersionIsTakenOver)
{
    ASSERT_EQ(Deploy(), QStringLiteral("done"));
    const QString own =
        CDeploymentRecord::PathFor(Path("records"), Path("site"), fixture.GetProject().GetId());
    const QString former = CDeploymentRecord::PathFor(Path("records"), Path("site"), QStringLiteral("Trip"));
    ASSERT_TRUE(QFile::rename(own, former));
    EXPECT_EQ(Deploy(), QStringLiteral("done"));
    EXPECT_TRUE(FileExists(own));
    EXPECT_FALSE(FileExists(former));
}

TEST_F(CarefulDeployment, AFileThatSomebodyHasChangedSinceIsNotRemoved)
{
    ASSERT_EQ(Deploy(), QStringLiteral("done"));
    fixture.scratch.Write(QStringLiteral("site/p2.html"), "by hand");
    fixture.GetRoot().RemovePicture(2);
    EXPECT_EQ(Deploy(), QStringLiteral("done"));
    EXPECT_EQ(Read("site/p2.html"), "by hand");
    EXPECT_FALSE(FileExists(Path("site/pictures/three2015.png")));
}

TEST_F(CarefulDeployment, WhatARunHasWrittenThatWasEndedWithoutNoticeIsItsOwn)
{
    const QString record =
        CDeploymentRecord::PathFor(Path("records"), Path("site"), fixture.GetProject().GetId());
    fixture.scratch.Write(QStringLiteral("site/p1.html"), "long before");
    const timespec longAgo[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ::utimensat(AT_FDCWD, Path("site/p1.html").toUtf8().constData(), longAgo, 0);
    CDeploymentRecord(record, Path("site")).Begin();
    fixture.scratch.Write(QStringLiteral("site/p.html"), "half of a run");
    const QString error = Deploy();
    EXPECT_TRUE(error.contains(QStringLiteral("overwritten: 1.\n") + Path("site/p1.html")))
        << qPrintable(error);
    QFile::remove(Path("site/p1.html"));
    EXPECT_EQ(Deploy(), QStringLiteral("done"));
}
