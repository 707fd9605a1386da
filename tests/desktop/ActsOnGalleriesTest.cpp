#include <QDir>
#include <QFile>

#include "ActsFixture.h"
#include "common/FileSystem.h"

// Acts on galleries: their tree, their texts and looks, their stamps, and where their files are.

namespace {

using ActsOnGalleries = CActs;

} // namespace

TEST_F(ActsOnGalleries, OfTheTree)
{
    StartInMountains();
    Do("rename", [&] {
        program.FocusWindow(QStringLiteral("Vistorama - "));
        program.InPage(QStringLiteral("window.focus()"));
        ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.hasFocus()")));
        Keys("F2");
        // The field has the keyboard then.
        ASSERT_TRUE(program.WaitInPage(QStringLiteral("!document.hasFocus()")));
        Keys("ctrl+a");
        program.TypeText(QStringLiteral("Peaks"));
        Keys("Return");
    });
    Do("duplicate", [&] { Menu("g u"); });
    Do("delete", [&] { Menu("g e"); });
    Do("add below by its button", [&] {
        tree.PressButton(1, QStringLiteral("Insert child section"));
        // The field for its name has the keyboard then.
        ASSERT_TRUE(tree.WaitFor(QStringLiteral("!document.hasFocus()")));
        Keys("Escape");
    });
    Do("insert above", [&] { tree.PressButton(1, QStringLiteral("Insert content section")); });
    Do("delete by its button", [&] { tree.PressButton(1, QStringLiteral("Delete")); });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfAGalleryThatIsDragged)
{
    StartIn(0, "October", "October.jpg");
    Do("drag into another", [&] { DragOntoCover(tree.PlaceOf(3), 1); });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfTextsAndLooks)
{
    StartInMountains();
    Do("text", [&] {
        program.PressStripButton(QStringLiteral("document.querySelector('h1 [onmouseenter]')"),
                                 QStringLiteral("Edit text"));
        InDialog("Gallery title", "ctrl+a Z Return");
    });
    Do("titles of all pictures", [&] {
        Menu("g t");
        InDialog("Titles and descriptions", "X Return Y Return ctrl+Return");
    });
    Do("layout", [&] { Menu("g l Home Return"); });
    Do("style", [&] { Menu("g s Home Return"); });
    Do("visibility", [&] {
        program.Click(ToolButton::Visibility);
        InDialog("Change page elements visibility", "space Return");
    });
    Do("advertisements", [&] {
        Menu("t Down Down Return");
        InDialog("Advertisement blocks", "alt+h A D Tab Return");
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfStamps)
{
    const QString mark = program.Path(QStringLiteral("mark.png"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(DATA_FOLDER "/sample/October.jpg"), mark));
    StartInMountains();
    Do("watermark", [&] {
        Menu("t Return");
        InDialog("Image watermark", "alt+z End alt+c");
        ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Choose a watermark picture")));
        program.FocusWindow(QStringLiteral("Choose a watermark picture"));
        program.TypeText(mark);
        Keys("Return");
        WaitUntilGone("Choose a watermark picture");
        InDialog("Image watermark", "Return");
    });
    Do("signature", [&] {
        Menu("t Down Return");
        InDialog("Image signature", "alt+z End alt+t A n n a Return");
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfMissingPicturesThatAreFound)
{
    const QString home = ExtractFolder(project);
    const QString elsewhere = program.Path(QStringLiteral("Elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    ASSERT_TRUE(QFile::rename(home + QStringLiteral("/By the Water/Low Tide.jpg"),
                              elsewhere + QStringLiteral("/Low Tide.jpg")));
    StartIn(2, "Still Water", "Still Water.jpg");
    Do("find missing pictures", [&] {
        Menu("s m");
        ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Select picture folder...")));
        program.FocusWindow(QStringLiteral("Select picture folder..."));
        Keys("ctrl+a");
        program.TypeText(elsewhere);
        Keys("Return");
        InDialog("Find missing pictures", "Return");
    });
    EXPECT_EQ(program.Terminate(), 0);
}
