#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"

// What a person changes by pointing at the page is found in the saved file.

namespace {

class Editing : public testing::Test {
protected:
    CDesktopProgram program;
    QString project = program.CopySample();

    // Opens the gallery of the sample whose index this is.
    void StartIn(int gallery)
    {
        ChooseGallery(project, gallery);
        program.Start({project});
    }

    SavedProject::Gallery EndAndRead(int gallery)
    {
        EXPECT_EQ(program.Terminate(), 0);
        return SavedProject(project).galleries[gallery];
    }

    // Presses a button of a picture's strip and waits until the page has come anew.
    void Press(const QString& picture, const char* tip)
    {
        program.InPage(QStringLiteral("window.isOld_ = true"));
        program.PressStripButton(picture, QString::fromLatin1(tip));
        ASSERT_TRUE(program.WaitInPage(QStringLiteral("!window.isOld_")));
    }
};

} // namespace

TEST_F(Editing, APictureIsRotated)
{
    StartIn(1);
    const QStringList before = SavedProject(project).galleries[1].GetNames();
    Press(PictureOnPage("High Pass"), "Rotate clockwise");
    Press(PictureOnPage("Blue Ridges"), "Rotate counter-clockwise");
    Press(PictureOnPage("Alpenglow"), "Rotate clockwise");
    Press(PictureOnPage("Alpenglow"), "Rotate clockwise");
    const SavedProject::Gallery saved = EndAndRead(1);
    EXPECT_EQ(saved.Find(QStringLiteral("High Pass.jpg"))->angle, 1);
    EXPECT_EQ(saved.Find(QStringLiteral("Blue Ridges.jpg"))->angle, 3);
    EXPECT_EQ(saved.Find(QStringLiteral("Alpenglow.jpg"))->angle, 2);
    EXPECT_EQ(saved.GetNames(), before);
}

TEST_F(Editing, PicturesAreMovedAndDeleted)
{
    StartIn(1);
    QStringList names = SavedProject(project).galleries[1].GetNames();
    const auto base = [&](qsizetype position) {
        return names[position].section(QLatin1Char('.'), 0, 0).toUtf8();
    };

    Press(PictureOnPage(base(1)), "Move down");
    names.swapItemsAt(1, 2);
    Press(PictureOnPage(base(4)), "Move up");
    names.swapItemsAt(4, 3);
    // The first one goes to the end, the last one to the front.
    Press(PictureOnPage(base(0)), "Move up");
    names.swapItemsAt(0, names.size() - 1);
    Press(PictureOnPage(base(names.size() - 1)), "Move down");
    names.swapItemsAt(0, names.size() - 1);
    Press(PictureOnPage(base(2)), "Delete");
    names.removeAt(2);
    EXPECT_EQ(EndAndRead(1).GetNames(), names);
}

TEST_F(Editing, ATextIsEdited)
{
    StartIn(0);
    const QString title = QStringLiteral("document.querySelector('h1 [onmouseenter]')");
    program.PressStripButton(title, QStringLiteral("Edit text"));
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Gallery title")));
    program.FocusWindow(QStringLiteral("Gallery title"));
    program.TakePicture(QStringLiteral("edit-text"));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(QStringLiteral("Summer & rain"));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("document.querySelector('h1').innerText.includes('Summer & rain')")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(QStringLiteral("Summer &amp; rain")));
}

TEST_F(Editing, ADialogThatIsCancelledChangesNothing)
{
    StartIn(0);
    program.PressStripButton(QStringLiteral("document.querySelector('h1 [onmouseenter]')"),
                             QStringLiteral("Edit text"));
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Gallery title")));
    program.FocusWindow(QStringLiteral("Gallery title"));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(QStringLiteral("Never"));
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Gallery title")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_FALSE(SavedProject(project).text.contains(QStringLiteral("Never")));
}

TEST_F(Editing, AReferenceIsEdited)
{
    StartIn(0);
    program.PressStripButton(QStringLiteral("document.querySelector('.logo [onmouseenter]')"),
                             QStringLiteral("Edit hypertext reference URL and text"));
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Logo")));
    program.FocusWindow(QStringLiteral("Logo"));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(QStringLiteral("https://example.org/home?a=1"));
    program.PressKeys({QStringLiteral("Tab"), QStringLiteral("ctrl+a")});
    program.TypeText(QStringLiteral("My own page"));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("document.querySelector('.logo img[alt=\"My own page\"]') != null")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(QStringLiteral("https://example.org/home?a=1")));
}

TEST_F(Editing, StyleAndLayoutAreChosenByTheMenu)
{
    program.UseOwnData();
    program.WriteLayout(QStringLiteral("second"),
                        "<html><head></head><body><p id=\"second\">Second layout</p>"
                        "<%picture id=\"a\" width=\"200\" height=\"150\" href=\"x\"%></body></html>");
    StartIn(0);
    program.PressKeys({QStringLiteral("alt+g"), QStringLiteral("s")});
    program.PressKeys({QStringLiteral("Home"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.querySelector('link[href*=Auto]') != null")));
    program.PressKeys({QStringLiteral("alt+g"), QStringLiteral("l")});
    program.PressKeys({QStringLiteral("Up"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.getElementById('second') != null")));
    SavedProject::Gallery saved = EndAndRead(0);
    EXPECT_TRUE(saved.style[QStringLiteral("css")].endsWith(QStringLiteral("/styles/auto.xml")))
        << qPrintable(saved.style[QStringLiteral("css")]);
    EXPECT_TRUE(saved.style[QStringLiteral("template")].endsWith(QStringLiteral("/templates/zz-second.xml")));
}

// The old page stays where it is until the new one has its pictures.
TEST_F(Editing, ThePageKeepsItsPlace)
{
    StartIn(0);
    const QString picture = PictureOnPage("Old Wood");
    program.MovePointer(program.PlaceOf(picture));
    const int place =
        program.InPage(QStringLiteral("Math.round(document.scrollingElement.scrollTop)")).toInt();
    ASSERT_GT(place, 100);
    Press(picture, "Rotate clockwise");
    EXPECT_NEAR(program.InPage(QStringLiteral("document.scrollingElement.scrollTop")).toInt(), place, 60);
    EXPECT_EQ(EndAndRead(0).Find(QStringLiteral("Old Wood.jpg"))->angle, 1);
}
