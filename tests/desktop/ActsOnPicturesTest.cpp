#include <QDateTime>
#include <QFile>

#include "ActsFixture.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// Acts on the pictures of a gallery.

namespace {

using ActsOnPictures = CActs;

} // namespace

TEST_F(ActsOnPictures, OfOnePictureByMouse)
{
    StartInMountains();
    Do("rotate clockwise", [&] { Strip("Alpenglow", "Rotate clockwise"); });
    Do("rotate counter-clockwise", [&] { Strip("Alpenglow", "Rotate counter-clockwise"); });
    Do("move up", [&] { Strip("Blue Ridges", "Move up"); });
    Do("move down", [&] { Strip("Blue Ridges", "Move down"); });
    Do("delete", [&] { Strip("First Snow", "Delete"); });
    Do("add by Enter", [&] {
        program.Click(folder.PlaceOf(CFolderPane::Row(1)));
        Keys("Return");
    });
    Do("add by two clicks", [&] { program.DoubleClick(folder.PlaceOf(CFolderPane::Row(1))); });
    Do("drag from the folder", [&] {
        DragOntoPage(folder.PlaceOf(CFolderPane::Row(2)), program.PlaceOf(PictureOnPage("Alpenglow")));
    });
    Do("drag on the page", [&] {
        const QPoint from = program.PlaceOf(PictureOnPage("First Snow"));
        // Where the other one is without scrolling again.
        const QPoint way = program.WayBetween(PictureOnPage("First Snow"), PictureOnPage("Above the Clouds"));
        DragOntoPage(from, from + way - QPoint(30, 0));
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnPictures, OfSelectedPicturesByMouse)
{
    StartInMountains();
    // key: of the entry in the menu that comes up under the mouse.
    const auto choose = [&](const char* key) {
        Select({"Alpenglow", "Blue Ridges"});
        program.TakePicture(QStringLiteral("selection"));
        const qsizetype windows = program.CountWindows();
        program.RightClick(program.PlaceOf(PictureOnPage("Alpenglow")));
        ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() > windows; }));
        program.TakePicture(QStringLiteral("selection-menu"));
        Keys(key);
    };
    Do("rotate left", [&] { choose("l"); });
    Do("rotate right", [&] { choose("r"); });
    Do("to the front", [&] { choose("f"); });
    Do("to the end", [&] { choose("e"); });
    Do("delete", [&] { choose("d"); });
    Do("cut", [&] { choose("t"); });
    Do("move to a gallery", [&] {
        choose("m");
        ChooseInDialog("Move to gallery", "Ni");
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnPictures, OfDraggedPictures)
{
    StartInMountains();
    Do("drag to a cover", [&] {
        Select({"Alpenglow", "Blue Ridges"});
        DragOntoCover(program.PlaceOf(PictureOnPage("Alpenglow")), 2);
    });
    Do("drag back to the folder", [&] {
        Select({"Alpenglow", "Blue Ridges"});
        const QPoint from = program.PlaceOf(PictureOnPage("Alpenglow"));
        const QPoint to = folder.PlaceOf(CFolderPane::Row(1));
        program.MovePointer(from);
        program.PressMouse();
        for (int step = 1; step <= 10; ++step) {
            program.MovePointer(from + (to - from) * step / 10);
        }
        program.ReleaseMouse();
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnPictures, OfPicturesByKeyboard)
{
    // The sample's files may all be of one date.
    QFile oldest(ExtractFolder(project) + QStringLiteral("/Mountains/High Pass.jpg"));
    ASSERT_TRUE(oldest.open(QIODevice::ReadWrite));
    ASSERT_TRUE(oldest.setFileTime(QDateTime(QDate(2001, 2, 3), QTime(4, 5)), QFile::FileModificationTime));
    oldest.close();
    StartInMountains();
    const auto press = [&](const char* keys) {
        return [this, keys] {
            Focus("Alpenglow");
            Keys(keys);
        };
    };
    const auto choose = [&](const char* keys) {
        return [this, keys] {
            Focus("Alpenglow");
            Menu(keys);
        };
    };
    Do("rotate right", press("ctrl+r"));
    Do("rotate left", press("ctrl+l"));
    Do("to the front", press("ctrl+Home"));
    Do("to the end", press("ctrl+End"));
    Do("delete", press("Delete"));
    Do("rotate all", press("ctrl+a ctrl+r"));
    Do("delete some", press("space Tab Tab space Delete"));
    Do("cut", press("ctrl+x"));
    const auto sortByMouse = [&](int entry) {
        return [this, entry] {
            program.Choose(MenuTitle::Gallery, {{.entries = 5}, {.entries = entry}});
        };
    };
    Do("reverse the order", choose("g o r"));
    Do("sort by name", choose("g o n"));
    Do("sort by file date", choose("g o f"));
    Do("sort by name by mouse", sortByMouse(0));
    Do("sort by file date by mouse", sortByMouse(2));
    Do("reverse the order by mouse", sortByMouse(3));
    Do("move to a gallery", [&] {
        Focus("Alpenglow");
        Keys("ctrl+m");
        ChooseInDialog("Move to gallery", "Ni");
    });
    EXPECT_EQ(program.Terminate(), 0);
}

// The page on the screen isn't changed by what comes into another gallery; undo goes to that one.
TEST_F(ActsOnPictures, OfTheClipboardBetweenGalleries)
{
    StartInMountains();
    Focus("Alpenglow");
    Keys("ctrl+c");
    program.Click(tree.PlaceOf(2));
    ASSERT_TRUE(tree.WaitForCurrent(2));
    const auto names = [&] {
        return SavedProject(project).galleries.at(2).GetNames();
    };
    const QStringList before = names();
    program.FocusWindow(QStringLiteral("Vistorama - "));
    Keys("ctrl+v");
    ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names().size() == before.size() + 1; }));
    const SavedProject saved(project);
    const SavedProject::Picture* pasted = saved.galleries.at(2).Find(QStringLiteral("Alpenglow.jpg"));
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(pasted->variables.at(QStringLiteral("title")), QStringLiteral("Alpenglow"));
    const QStringList after = names();
    AwaitKeys("ctrl+z");
    ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == before; }));
    AwaitKeys("ctrl+y");
    ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == after; }));
    Await([&] { program.Click(ToolButton::Undo); });
    ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == before; }));
    EXPECT_EQ(program.Terminate(), 0);
}

// The gallery on the screen stays, and its page is made anew.
TEST_F(ActsOnPictures, OfPicturesThatAreCopiedToAnotherGallery)
{
    StartInMountains();
    const auto names = [&] {
        return SavedProject(project).galleries.at(2).GetNames();
    };
    const QStringList before = names();
    const auto copy = [&](const char* name, const std::function<void()>& act, int count) {
        SCOPED_TRACE(name);
        Await(act);
        ASSERT_TRUE(
            WaitForSavedFile([&](const QByteArray&) { return names().size() == before.size() + count; }));
        const QStringList after = names();
        AwaitKeys("ctrl+z");
        ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == before; }));
        Await([&] { program.Click(ToolButton::Redo); });
        ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == after; }));
        AwaitKeys("ctrl+z");
        ASSERT_TRUE(WaitForSavedFile([&](const QByteArray&) { return names() == before; }));
        ASSERT_TRUE(program.WaitForPictures());
        ASSERT_TRUE(ClearSelection());
    };
    copy(
        "by drag with Ctrl",
        [&] {
            Select({"Alpenglow", "Blue Ridges"});
            program.HoldKey(QStringLiteral("ctrl"));
            DragOntoCover(program.PlaceOf(PictureOnPage("Alpenglow")), 2);
            program.ReleaseKey(QStringLiteral("ctrl"));
        },
        2);
    copy(
        "by keys",
        [&] {
            Focus("Alpenglow");
            Keys("ctrl+shift+m");
            ChooseInDialog("Copy to gallery", "By");
        },
        1);
    copy(
        "by drag from the folder", [&] { DragOntoCover(folder.PlaceOf(CFolderPane::Row(1)), 2); }, 1);
    EXPECT_EQ(program.Terminate(), 0);
}
