#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "GalleriesPane.h"
#include "SavedProject.h"

// The tree of galleries, used by the mouse, and what is found of it in the saved file. The sample's root,
// gallery 0, has three children, 1 to 3.

namespace {

class Galleries : public testing::Test {
protected:
    void Start()
    {
        program.Start({project});
        ASSERT_TRUE(pane.WaitForCurrent(0));
    }

    // What is in the picture folder of the sample and in none of its galleries can't be told apart by its
    // name, so the files are new ones.
    QString CopyPicture(const QString& name)
    {
        const QString copy = program.Path(name);
        EXPECT_TRUE(QFile::copy(QStringLiteral(DATA_FOLDER "/sample/Mountains/High Pass.jpg"), copy));
        return copy;
    }

    // Drags files from another program's window over the cover of a gallery. That it lights up says that the
    // drag has begun and has come to the view: on a machine that is busy the pointer is there long before.
    void DragOverCover(const QStringList& files, int gallery)
    {
        const QSize screen = program.display.GetSize();
        const QPoint corner(screen.width() - 100, screen.height() - 120);
        const QPoint from = corner + QPoint(30, 30);
        const QPoint to = pane.PlaceOf(gallery);
        source.start(QStringLiteral(DRAG_SOURCE_FILE),
                     QStringList{QString::number(corner.x()), QString::number(corner.y())} + files);
        ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Files")));
        program.MovePointer(from);
        program.PressMouse();
        // A drag begins by small steps.
        for (int step = 1; step <= 10; ++step) {
            program.MovePointer(from + (to - from) * step / 10);
        }
        ASSERT_TRUE(HoldUntilLit(to, 1));
    }

    // Goes on with the drag to a place where no cover is.
    void DragBeside(QPoint place) { ASSERT_TRUE(HoldUntilLit(place, 0)); }

    bool HoldUntilLit(QPoint place, int covers)
    {
        return program.WaitFor([&] {
            program.MovePointer(place);
            program.MovePointer(place + QPoint(1, 0));
            return pane.Ask(QStringLiteral("document.querySelectorAll('.drop-lit').length")).toInt() ==
                   covers;
        });
    }

    // Returns when the program has fetched the files; the other one ends by itself then.
    void Drop()
    {
        program.ReleaseMouse();
        ASSERT_TRUE(source.waitForFinished(60000));
        EXPECT_EQ(source.exitCode(), EXIT_SUCCESS) << "the drop was refused";
        EXPECT_TRUE(pane.WaitFor(QStringLiteral("document.querySelectorAll('.drop-lit').length == 0")));
    }

    CDesktopProgram program;
    CGalleriesPane pane{program};
    const QString project = program.CopySample();
    QProcess source;
};

} // namespace

TEST_F(Galleries, AClickOnACoverChoosesTheGallery)
{
    Start();
    EXPECT_EQ(pane.GetNames(), (QStringList{QStringLiteral("Wide Open"), QStringLiteral("Mountains"),
                                            QStringLiteral("By the Water"), QStringLiteral("Night")}))
        << qPrintable(pane.GetNames().join(QLatin1Char('|')));
    program.Click(pane.PlaceOf(2));
    ASSERT_TRUE(pane.WaitForCurrent(2));
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("(document.querySelector('h1') || {}).innerText == 'By the Water'")));
    program.Click(pane.PlaceOf(3));
    ASSERT_TRUE(pane.WaitForCurrent(3));
    program.Click(pane.PlaceOf(0));
    ASSERT_TRUE(pane.WaitForCurrent(0));
    program.Click(pane.PlaceOf(1));
    ASSERT_TRUE(pane.WaitForCurrent(1));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(project).currentGallery, 1);
}

TEST_F(Galleries, AreAddedAndDeletedByTheirStrips)
{
    Start();
    pane.PressButton(1, QStringLiteral("Insert child section"));
    ASSERT_TRUE(
        pane.WaitFor(QStringLiteral("document.querySelector('th').innerText.includes('5 sections')")));
    program.Click(pane.PlaceOf(1));
    ASSERT_TRUE(pane.WaitForCurrent(1));
    ASSERT_TRUE(pane.WaitForCover(4));
    pane.PressButton(1, QStringLiteral("Insert content section"));
    ASSERT_TRUE(pane.WaitForCurrent(5));
    program.Click(pane.PlaceOf(0));
    ASSERT_TRUE(pane.WaitForCurrent(0));
    pane.PressButton(3, QStringLiteral("Delete"));
    ASSERT_TRUE(pane.WaitFor(QStringLiteral("!%1").arg(CGalleriesPane::Cover(3))));
    EXPECT_EQ(program.Terminate(), 0);
    SavedProject saved(project);
    EXPECT_EQ(saved.galleries.size(), 5u);
    EXPECT_EQ(saved.galleries.count(3), 0u);
    EXPECT_EQ(saved.galleries[5].pictures.size(), 1u);
    EXPECT_EQ(saved.galleries[4].pictures.size(), 0u);
}

TEST_F(Galleries, TheRootGetsAParentAndLosesIt)
{
    Start();
    EXPECT_EQ(pane.Ask(QStringLiteral("gl_0_menu.length")).toInt(), 3);
    pane.PressButton(0, QStringLiteral("Insert content section"));
    ASSERT_TRUE(pane.WaitForCurrent(4));
    EXPECT_EQ(pane.Ask(QStringLiteral("gl_4_menu.length")).toInt(), 4);
    pane.PressButton(4, QStringLiteral("Delete"));
    ASSERT_TRUE(pane.WaitForCurrent(0));
    pane.PressButton(0, QStringLiteral("Insert child section"));
    ASSERT_TRUE(
        pane.WaitFor(QStringLiteral("document.querySelector('th').innerText.includes('5 sections')")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(project).galleries.size(), 5u);
    EXPECT_TRUE(SavedProject(project).text.contains(QStringLiteral("root_gallery_index=\"0\"")));
}

TEST_F(Galleries, FilesFromAnotherProgramGoIntoTheGalleryThatTheyAreDroppedOn)
{
    const QStringList before = SavedProject(project).galleries[2].GetNames();
    const QStringList rootBefore = SavedProject(project).galleries[0].GetNames();
    const QString one = CopyPicture(QStringLiteral("one.jpg"));
    const QString two = CopyPicture(QStringLiteral("two.jpg"));
    Start();
    DragOverCover({one, two, program.Path(QStringLiteral("nothing.txt"))}, 2);
    program.TakePicture(QStringLiteral("drop-on-cover"));
    Drop();
    program.Click(pane.PlaceOf(2));
    ASSERT_TRUE(pane.WaitForCurrent(2));
    EXPECT_EQ(program.Terminate(), 0);
    SavedProject saved(project);
    QStringList after = saved.galleries[2].GetNames();
    EXPECT_EQ(after.removeAll(QStringLiteral("one.jpg")), 1);
    EXPECT_EQ(after.removeAll(QStringLiteral("two.jpg")), 1);
    EXPECT_EQ(after, before);
    EXPECT_EQ(saved.galleries[0].GetNames(), rootBefore);
}

TEST_F(Galleries, FilesDroppedBesideTheCoversGoIntoTheCurrentGallery)
{
    // By its name it is found in the page, where it is part of no other word.
    const QString name = QStringLiteral("dropped-beside.jpg");
    const QString file = CopyPicture(name);
    Start();
    DragOverCover({file}, 0);
    DragBeside(pane.ToScreen(QPoint(20, 60)));
    program.TakePicture(QStringLiteral("drop-beside"));
    Drop();
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.body.innerHTML.includes('dropped-beside')")));
    EXPECT_EQ(program.Terminate(), 0);
    SavedProject saved(project);
    EXPECT_TRUE(saved.galleries[0].GetNames().contains(name));
    EXPECT_FALSE(saved.galleries[2].GetNames().contains(name));
}

TEST_F(Galleries, FollowTheLinksOfThePage)
{
    Start();
    program.ClickElement(QStringLiteral("[...document.querySelectorAll('a')].find(a => "
                                        "a.querySelector('img[alt=\"Mountains\"]') != null)"));
    ASSERT_TRUE(pane.WaitForCurrent(1));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Galleries, FillTheirPaneWhenItsSizeChanges)
{
    Start();
    const int before = pane.Ask(QStringLiteral("document.querySelector('table').offsetWidth")).toInt();
    const int bar = program.InPage(QStringLiteral("innerWidth")).toInt();
    program.Drag(QPoint(bar + 2, 450), QPoint(bar - 198, 450));
    ASSERT_TRUE(
        pane.WaitFor(QStringLiteral("document.querySelector('table').offsetWidth > %1").arg(before + 150)));
    ASSERT_TRUE(pane.WaitForCurrent(0));
    EXPECT_TRUE(pane.Ask(QStringLiteral("document.scrollingElement.scrollWidth <= innerWidth && "
                                        "document.scrollingElement.scrollHeight <= innerHeight"))
                    .toBool());
    program.TakePicture(QStringLiteral("galleries-wide"));
    EXPECT_EQ(program.Terminate(), 0);
}
