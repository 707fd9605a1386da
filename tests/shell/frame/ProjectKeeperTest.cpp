#include "shell/frame/ProjectKeeper.h"

#include <csignal>
#include <sys/resource.h>

#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "support/ProjectFixture.h"

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds Never = 1h;

// For its lifetime no file of this process grows beyond so many bytes: a disk that is full.
class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &usual);
        formerHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, usual.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &usual);
        std::signal(SIGXFSZ, formerHandler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

private:
    rlimit usual{};
    void (*formerHandler)(int) = SIG_DFL;
};

class ProjectKeeper : public testing::Test {
protected:
    CProjectFixture fixture;
    const QString path = fixture.scratch.Path(QStringLiteral("kept/a.gallery"));
    std::unique_ptr<CGalleryProject> project;
    std::unique_ptr<CProjectKeeper> keeper;
    QStringList failures;
    int recoveries = 0;

    ProjectKeeper()
    {
        fixture.WriteLayout(QStringLiteral("one"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("one"), QStringLiteral("index.html"), "<html></html>");
        fixture.WriteStyle(QStringLiteral("plain"));
        project = std::make_unique<CGalleryProject>(fixture.GetEnvironment());
    }

    void Open(std::chrono::milliseconds delay)
    {
        keeper = std::make_unique<CProjectKeeper>(
            *project,
            CProjectKeeper::Reports{
                [this](const CExceptionBase& failure) { failures += failure.GetCaption(); },
                [this] {
                    ++recoveries;
                }},
            CProjectKeeper::Options{fixture.scratch.Path(QStringLiteral("earlier")), delay});
        keeper->Open(path, CProjectLock(path));
    }

    void AddPicture(const char* name)
    {
        project->GetCurrentGallery()->AddPicture(QStringLiteral("/photos/") + QString::fromLatin1(name));
        keeper->MarkChanged();
    }

    QByteArray Saved() const { return fixture.scratch.Read(QStringLiteral("kept/a.gallery")); }

    // Until every timer that is due by now has run: they run in the order of their times.
    static void LetTimersRun()
    {
        QTimer last;
        last.setSingleShot(true);
        last.start(20ms);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !last.isActive(); }));
    }

    // Until the file holds the picture; false at the deadline.
    bool WaitForSaved(const char* name)
    {
        return QTest::qWaitFor([&] { return Saved().contains(name); }, 20'000);
    }
};

} // namespace

TEST_F(ProjectKeeper, WaitsTwoSecondsUnlessToldOtherwise)
{
    EXPECT_EQ(CProjectKeeper::SaveDelay, 2s);
}

TEST_F(ProjectKeeper, SavesAChangeByItself)
{
    Open(20ms);
    EXPECT_FALSE(keeper->HasUnsavedChanges());
    AddPicture("one.jpg");
    EXPECT_TRUE(keeper->HasUnsavedChanges());
    EXPECT_FALSE(Saved().contains("one.jpg"));
    EXPECT_TRUE(WaitForSaved("one.jpg"));
    EXPECT_FALSE(keeper->HasUnsavedChanges());
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(ProjectKeeper, WritesNothingWithoutAChange)
{
    Open(1ms);
    fixture.scratch.Write(QStringLiteral("kept/a.gallery"), "somebody else's");
    LetTimersRun();
    EXPECT_EQ(Saved(), "somebody else's");
}

// Somebody who works on without a pause is saved, too.
TEST_F(ProjectKeeper, LaterChangesDontPutSavingOff)
{
    Open(100ms);
    int count = 0;
    const bool isSaved = QTest::qWaitFor(
        [&] {
            AddPicture(QByteArray::number(count++) + ".jpg");
            return Saved().contains("/0.jpg");
        },
        20'000);
    EXPECT_TRUE(isSaved);
    EXPECT_GT(count, 2);
}

TEST_F(ProjectKeeper, SavesNothingWhileAnotherThreadReadsTheProject)
{
    Open(1ms);
    {
        const CProjectKeeper::CPause pause(*keeper);
        AddPicture("late.jpg");
        LetTimersRun();
        EXPECT_FALSE(Saved().contains("late.jpg"));
    }
    EXPECT_TRUE(WaitForSaved("late.jpg"));
}

TEST_F(ProjectKeeper, AFullDiskIsToldOnceAndLeavesTheOldFileWhole)
{
    Open(1ms);
    const QByteArray before = Saved();
    {
        const CFullDisk disk(100);
        AddPicture("one.jpg");
        EXPECT_TRUE(QTest::qWaitFor([&] { return !failures.isEmpty(); }));
        for (int i = 0; i < 20; ++i) {
            AddPicture(QByteArray::number(i) + ".jpg");
            QCoreApplication::processEvents();
        }
        LetTimersRun();
        EXPECT_EQ(Saved(), before);
        EXPECT_TRUE(keeper->HasUnsavedChanges());
        EXPECT_EQ(failures, QStringList(Text(StringId::FileNotWritten, path)));
        EXPECT_EQ(recoveries, 0);
    }
    // It tries again by itself.
    EXPECT_TRUE(WaitForSaved("19.jpg"));
    EXPECT_EQ(recoveries, 1);
    EXPECT_EQ(failures.size(), 1);
    EXPECT_EQ(fixture.scratch.ListFiles().filter(QStringLiteral(".tmp")), QStringList());

    // The next time is a new one.
    const CFullDisk disk(100);
    AddPicture("two.jpg");
    EXPECT_TRUE(QTest::qWaitFor([&] { return failures.size() == 2; }));
}

TEST_F(ProjectKeeper, AFolderWithoutRightsIsToldOnceAndLeavesTheOldFileWhole)
{
    Open(1ms);
    const QByteArray before = Saved();
    const QString folder = fixture.scratch.Path(QStringLiteral("kept"));
    {
        const COrdinaryRights rights(fixture.scratch);
        AddPicture("one.jpg");
        EXPECT_TRUE(QTest::qWaitFor([&] { return !failures.isEmpty(); }));
        LetTimersRun();
        EXPECT_EQ(Saved(), before);
        EXPECT_EQ(failures.size(), 1);
    }
    EXPECT_TRUE(WaitForSaved("one.jpg"));
    EXPECT_EQ(recoveries, 1);
}

TEST_F(ProjectKeeper, AProjectThatIsOpenElsewhereIsNeverWritten)
{
    fixture.NewProject().Save(path);
    const QByteArray before = Saved();
    const CProjectLock elsewhere(path);
    Open(1ms);
    EXPECT_TRUE(keeper->IsReadOnly());
    AddPicture("one.jpg");
    keeper->Save();
    LetTimersRun();
    EXPECT_EQ(Saved(), before);
    EXPECT_TRUE(keeper->HasUnsavedChanges());

    const QString other = fixture.scratch.Path(QStringLiteral("kept/b.gallery"));
    keeper->SaveAs(other, CProjectLock(other));
    EXPECT_FALSE(keeper->IsReadOnly());
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("kept/b.gallery")).contains("one.jpg"));
    EXPECT_EQ(keeper->GetPath(), other);
}

TEST_F(ProjectKeeper, TheLockGoesWithTheProject)
{
    Open(1ms);
    EXPECT_EQ(CProjectLock(path).GetState(), CProjectLock::State::OpenElsewhere);
    const QString other = fixture.scratch.Path(QStringLiteral("kept/b.gallery"));
    keeper->Open(other, CProjectLock(other));
    EXPECT_EQ(CProjectLock(path).GetState(), CProjectLock::State::Held);
    EXPECT_EQ(CProjectLock(other).GetState(), CProjectLock::State::OpenElsewhere);
    keeper.reset();
    EXPECT_EQ(CProjectLock(other).GetState(), CProjectLock::State::Held);
    EXPECT_FALSE(FileExists(CProjectLock::PathFor(other)));
}

// The first lock can't be had before its folder is there.
TEST_F(ProjectKeeper, ANewProjectInANewFolderIsLocked)
{
    ASSERT_FALSE(FolderExists(fixture.scratch.Path(QStringLiteral("kept"))));
    Open(1ms);
    EXPECT_EQ(CProjectLock(path).GetState(), CProjectLock::State::OpenElsewhere);
}

TEST_F(ProjectKeeper, AProjectThatCannotBeReadLeavesTheFormerOneKept)
{
    Open(1ms);
    const QString broken = fixture.scratch.Write(QStringLiteral("kept/broken.gallery"), "<project");
    EXPECT_THROW(keeper->Open(broken, CProjectLock(broken)), CExceptionBase);
    EXPECT_EQ(keeper->GetPath(), path);
    EXPECT_EQ(CProjectLock(path).GetState(), CProjectLock::State::OpenElsewhere);
    EXPECT_EQ(CProjectLock(broken).GetState(), CProjectLock::State::Held);
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("kept/broken.gallery")), "<project");
}

TEST_F(ProjectKeeper, TheStateThatWasOpenedIsKeptOnceWhenItHasBeenChanged)
{
    Open(Never);
    Open(Never);
    keeper->Save(); // the page that is shown is written now
    const size_t before = keeper->GetBackups().List(path).size();
    const QByteArray opened = ReadWholeFile(path);
    Open(Never);
    keeper->Save();
    EXPECT_EQ(keeper->GetBackups().List(path).size(), before); // opened, not changed
    AddPicture("a.jpg");
    keeper->Save();
    AddPicture("b.jpg");
    keeper->Save();
    const auto states = keeper->GetBackups().List(path);
    ASSERT_EQ(states.size(), before + 1);
    EXPECT_EQ(ReadWholeFile(states[0].path), opened);
}

TEST_F(ProjectKeeper, AReturnToAnEarlierStateKeepsThePresentOne)
{
    Open(Never);
    keeper->Save();
    Open(Never);
    AddPicture("a.jpg");
    keeper->Save();
    AddPicture("b.jpg"); // not saved yet
    keeper->ReturnTo(keeper->GetBackups().List(path).front().path);
    EXPECT_EQ(project->GetCurrentGallery()->GetPictures().GetCount(), 0);
    EXPECT_FALSE(keeper->HasUnsavedChanges());
    const auto states = keeper->GetBackups().List(path);
    ASSERT_EQ(states.size(), 2u);
    EXPECT_EQ(states[0].pictures, 2);
    keeper->ReturnTo(states[0].path);
    EXPECT_NE(ReadWholeFile(path).indexOf("b.jpg"), -1);
}

TEST_F(ProjectKeeper, AStateThatCanNotBeKeptHindersNoSave)
{
    Open(Never);
    keeper->Save();
    fixture.scratch.Write(QStringLiteral("earlier"), "a file in the way");
    Open(Never);
    AddPicture("a.jpg");
    keeper->Save();
    EXPECT_NE(ReadWholeFile(path).indexOf("a.jpg"), -1);
    EXPECT_TRUE(failures.isEmpty());
    // As soon as there is a way, the state that was opened is kept, however many saves came between.
    ASSERT_TRUE(QFile::remove(fixture.scratch.Path(QStringLiteral("earlier"))));
    keeper->Save();
    ASSERT_EQ(keeper->GetBackups().List(path).size(), 1u);
    EXPECT_EQ(keeper->GetBackups().List(path)[0].pictures, 0);
}

TEST_F(ProjectKeeper, AFileOfANewerVersionIsNeverWritten)
{
    const QByteArray newer = "<project version=\"3.0\"><gallery index=\"0\" holograms=\"7\"/></project>";
    fixture.scratch.Write(QStringLiteral("kept/a.gallery"), newer);
    Open(1ms);
    EXPECT_TRUE(keeper->IsReadOnly());
    EXPECT_FALSE(keeper->IsOpenElsewhere());
    AddPicture("a.jpg");
    keeper->Save();
    EXPECT_EQ(ReadWholeFile(path), newer);
    EXPECT_TRUE(keeper->HasUnsavedChanges());
    const QString copy = fixture.scratch.Path(QStringLiteral("kept/b.gallery"));
    keeper->SaveAs(copy, CProjectLock(copy));
    EXPECT_FALSE(keeper->IsReadOnly());
    EXPECT_NE(ReadWholeFile(copy).indexOf("holograms"), -1);
}
