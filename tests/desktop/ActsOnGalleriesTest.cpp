#include <QDir>
#include <QFile>
#include <QProcess>

#include "ActsFixture.h"
#include "common/FileSystem.h"

// Acts on galleries: their tree, their texts and looks, their stamps, and where their files are.

namespace {

class ActsOnGalleries : public CActs {
protected:
    // The field for the name of a gallery is over its cover, wider than that and white.
    bool WaitForNameField(int gallery)
    {
        const QStringList corner =
            tree.Ask(QStringLiteral("(r => Math.round(r.x + r.width / 2) + ' ' + Math.round(r.bottom))"
                                    "(%1.getBoundingClientRect())")
                         .arg(CGalleriesPane::Cover(gallery)))
                .toString()
                .split(QLatin1Char(' '));
        const QPoint inField =
            tree.ToScreen(QPoint(corner.value(0).toInt() - 78, corner.value(1).toInt() - 12));
        return program.WaitFor([&] {
            program.TakePicture(QStringLiteral("acts-name"));
            QProcess convert;
            convert.start(QStringLiteral("convert"),
                          {QStringLiteral(SCREENSHOT_FOLDER "/acts-name.png"), QStringLiteral("-format"),
                           QStringLiteral("%[hex:p{%1,%2}]").arg(inField.x()).arg(inField.y()),
                           QStringLiteral("info:")});
            return convert.waitForFinished() && convert.readAllStandardOutput().startsWith("FFFFFF");
        });
    }
};

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

// The same by keyboard: the menu of a cover for what its strip has, the menu key for the strip of a text.
TEST_F(ActsOnGalleries, OfTheTreeByMenus)
{
    StartInMountains();
    const auto chooseAtCover = [&](const char* key) {
        program.FocusWindow(QStringLiteral("Vistorama - "));
        ASSERT_TRUE(tree.WaitForCover(1));
        // From pane to pane; it may be there already, or wait in the last one.
        ASSERT_TRUE(program.WaitFor([&] {
            const bool isThere = tree.Ask(QStringLiteral("document.hasFocus()")).toBool();
            if (!isThere) {
                Keys("F6");
            }
            return isThere;
        }));
        tree.Ask(QStringLiteral("%1.closest('a').focus()").arg(CGalleriesPane::Cover(1)));
        const qsizetype windows = program.CountWindows();
        Keys("shift+F10");
        ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() > windows; }));
        Keys(key);
    };
    Do("add below by keyboard", [&] {
        chooseAtCover("n");
        ASSERT_TRUE(tree.WaitForCover(4));
        ASSERT_TRUE(WaitForNameField(4));
        Keys("Escape");
    });
    Do("insert above by keyboard", [&] { chooseAtCover("i"); });
    Do("delete by keyboard", [&] { chooseAtCover("d"); });
    Do("rename by mouse", [&] {
        program.Choose(MenuTitle::Gallery, {{.entries = 7, .separators = 1}});
        ASSERT_TRUE(program.WaitInPage(QStringLiteral("!document.hasFocus()")));
        Keys("ctrl+a");
        program.TypeText(QStringLiteral("Peaks"));
        Keys("Return");
    });
    Do("duplicate by mouse", [&] { program.Choose(MenuTitle::Gallery, {{.entries = 8, .separators = 1}}); });
    Do("delete by mouse", [&] { program.Choose(MenuTitle::Gallery, {{.entries = 9, .separators = 1}}); });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfTexts)
{
    StartInMountains();
    const QString title = QStringLiteral("document.querySelector('h1 [onmouseenter]')");
    const QString logo = QStringLiteral("document.querySelector('.logo [onmouseenter]')");
    const auto openByKeys = [&](const QString& element) {
        program.FocusWindow(QStringLiteral("Vistorama - "));
        program.InPage(QStringLiteral("window.focus(), (e => (e.closest('a,[tabindex]') || e).focus())(%1)")
                           .arg(element));
        Keys("shift+F10 Return");
    };
    const char* const newTitle = "ctrl+a Z Return";
    Do("text by mouse", [&] {
        program.PressStripButton(title, QStringLiteral("Edit text"));
        InDialog("Gallery title", newTitle);
    });
    Do("text by keyboard", [&] {
        openByKeys(title);
        InDialog("Gallery title", newTitle);
    });
    const char* const newLink = "ctrl+a a Tab ctrl+a M Return";
    Do("link by mouse", [&] {
        program.PressStripButton(logo, QStringLiteral("Edit hypertext reference URL and text"));
        InDialog("Logo", newLink);
    });
    Do("link by keyboard", [&] {
        openByKeys(logo);
        InDialog("Logo", newLink);
    });
    const char* const newTitles = "X Return Y Return ctrl+Return";
    Do("titles of all pictures by keyboard", [&] {
        Menu("g t");
        InDialog("Titles and descriptions", newTitles);
    });
    Do("titles of all pictures by mouse", [&] {
        program.Choose(MenuTitle::Gallery, {{.entries = 6}});
        InDialog("Titles and descriptions", newTitles);
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfLooks)
{
    StartInMountains();
    Do("layout by keyboard", [&] { Menu("g l Home Return"); });
    Do("layout by mouse", [&] { program.Choose(MenuTitle::Gallery, {{.entries = 1}, {.entries = 0}}); });
    Do("style by keyboard", [&] { Menu("g s Home Return"); });
    Do("style by mouse", [&] { program.Choose(MenuTitle::Gallery, {{.entries = 2}, {.entries = 0}}); });
    const auto hideOne = [&] {
        InDialog("Change page elements visibility", "space Return");
    };
    Do("visibility by mouse", [&] {
        program.Click(ToolButton::Visibility);
        hideOne();
    });
    Do("visibility by keyboard", [&] {
        Menu("g v");
        hideOne();
    });
    const auto advertise = [&] {
        InDialog("Advertisement blocks", "alt+h A D Tab Return");
    };
    Do("advertisements by keyboard", [&] {
        Menu("t Down Down Return");
        advertise();
    });
    Do("advertisements by mouse", [&] {
        program.Choose(MenuTitle::Effects, {{.entries = 2}});
        advertise();
    });
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(ActsOnGalleries, OfStamps)
{
    const QString mark = program.Path(QStringLiteral("mark.png"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(DATA_FOLDER "/sample/October.jpg"), mark));
    StartInMountains();
    const auto chooseMark = [&] {
        InDialog("Image watermark", "alt+z End alt+c");
        ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Choose a watermark picture")));
        program.FocusWindow(QStringLiteral("Choose a watermark picture"));
        program.TypeText(mark);
        Keys("Return");
        WaitUntilGone("Choose a watermark picture");
        InDialog("Image watermark", "Return");
    };
    Do("watermark by keyboard", [&] {
        Menu("t Return");
        chooseMark();
    });
    Do("watermark by mouse", [&] {
        program.Choose(MenuTitle::Effects, {{.entries = 0}});
        chooseMark();
    });
    const auto sign = [&] {
        InDialog("Image signature", "alt+z End alt+t A n n a Return");
    };
    Do("signature by keyboard", [&] {
        Menu("t Down Return");
        sign();
    });
    Do("signature by mouse", [&] {
        program.Choose(MenuTitle::Effects, {{.entries = 1}});
        sign();
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
    const auto find = [&] {
        ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Select picture folder...")));
        program.FocusWindow(QStringLiteral("Select picture folder..."));
        Keys("ctrl+a");
        program.TypeText(elsewhere);
        Keys("Return");
        InDialog("Find missing pictures", "Return");
    };
    Do("find missing pictures by keyboard", [&] {
        Menu("s m");
        find();
    });
    Do("find missing pictures by mouse", [&] {
        program.Choose(MenuTitle::Source, {{.entries = 1}});
        find();
    });
    EXPECT_EQ(program.Terminate(), 0);
}
