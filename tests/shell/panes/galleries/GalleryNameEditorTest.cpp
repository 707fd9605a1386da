#include "shell/panes/galleries/GalleryNameEditor.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include "GalleriesWindow.h"
#include "editing/GalleryActs.h"
#include "shell/panes/galleries/GalleryTreeNode.h"

namespace {

class GalleryNameEditor : public testing::Test {
protected:
    void SetUp() override
    {
        window.AddChild(0);
        window.AddChild(0);
        window.GetDesk().Do(RenameGallery(1, QStringLiteral("Sea")));
        window.GetProject().SetCurrentGallery(1);
        window.Show();
        window.GetView().activateWindow();
        window.changes = 0;
    }

    // The editor on the screen, with the keyboard.
    QLineEdit& Wait()
    {
        EXPECT_TRUE(
            WaitUntil([&] { return window.FindNameEditor() && window.FindNameEditor()->hasFocus(); }));
        return *window.GetView().findChild<QLineEdit*>(QStringLiteral("GalleryNameEditor"));
    }

    QLineEdit& Open()
    {
        window.GetView().RenameGallery();
        return Wait();
    }

    bool WaitForName(int32_t gallery, const char* name)
    {
        return WaitForPage(window.GetPage(),
                           QStringLiteral("document.querySelector('img[id=gl_%1]').title == '%2'")
                               .arg(gallery)
                               .arg(QLatin1String(name)));
    }

    QString TitleOf(int32_t gallery) { return GetGalleryTitle(window.GetGallery(gallery)); }

    CGalleriesWindow window;
};

} // namespace

TEST_F(GalleryNameEditor, LiesOverTheLowerEdgeOfTheCover)
{
    const QLineEdit& editor = Open();
    EXPECT_EQ(editor.text(), QStringLiteral("Sea"));
    EXPECT_EQ(editor.selectedText(), QStringLiteral("Sea"));
    const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_1]"));
    EXPECT_EQ(editor.geometry().bottom() + 1, qRound(cover.bottom()));
    EXPECT_TRUE(window.GetView().rect().contains(editor.geometry()));
    EXPECT_LE(editor.geometry().left(), cover.left());
    EXPECT_GE(editor.geometry().right(), cover.right() - 1);
}

TEST_F(GalleryNameEditor, EnterTakesTheName)
{
    Open();
    for (const QChar letter : QStringLiteral(" Lake ")) {
        QTest::keyClick(window.FindNameEditor(), letter.toLatin1());
    }
    window.PressKey(Qt::Key_Return);
    EXPECT_EQ(TitleOf(1), QStringLiteral("Lake"));
    EXPECT_FALSE(window.FindNameEditor());
    EXPECT_EQ(window.changes, 1);
    EXPECT_TRUE(WaitForName(1, "Lake"));
    window.Undo();
    EXPECT_EQ(TitleOf(1), QStringLiteral("Sea"));
    EXPECT_TRUE(WaitForName(1, "Sea"));
}

TEST_F(GalleryNameEditor, EscapeGivesUp)
{
    Open().setText(QStringLiteral("Lake"));
    window.PressKey(Qt::Key_Escape);
    EXPECT_FALSE(window.FindNameEditor());
    EXPECT_EQ(TitleOf(1), QStringLiteral("Sea"));
    EXPECT_EQ(window.changes, 0);
    // The keyboard is where it was.
    EXPECT_TRUE(WaitUntil([&] { return window.GetView().isAncestorOf(QApplication::focusWidget()); }));
}

TEST_F(GalleryNameEditor, GoingElsewhereTakesTheName)
{
    Open().setText(QStringLiteral("Lake"));
    ClickMouse(window.GetPage(), QPoint(3, 3));
    EXPECT_TRUE(WaitForName(1, "Lake"));
    EXPECT_FALSE(window.FindNameEditor());
    EXPECT_EQ(TitleOf(1), QStringLiteral("Lake"));
}

TEST_F(GalleryNameEditor, ANameAsBeforeAndNoNameChangeNothing)
{
    for (const char* name : {"Sea", " Sea ", "", "   "}) {
        Open().setText(QString::fromLatin1(name));
        window.PressKey(Qt::Key_Return);
        EXPECT_FALSE(window.FindNameEditor());
        EXPECT_EQ(TitleOf(1), QStringLiteral("Sea"));
        EXPECT_EQ(window.changes, 0);
    }
}

TEST_F(GalleryNameEditor, ANewChildIsAskedForItsName)
{
    window.PressButton(1, QStringLiteral("Insert child section"));
    Wait().setText(QStringLiteral("Beach"));
    EXPECT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_3]')")));
    const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_3]"));
    EXPECT_TRUE(WaitUntil(
        [&] { return window.FindNameEditor()->geometry().bottom() + 1 == qRound(cover.bottom()); }));
    window.PressKey(Qt::Key_Return);
    EXPECT_EQ(TitleOf(3), QStringLiteral("Beach"));
    EXPECT_EQ(window.GetCurrent(), 1);
    // Two steps: the gallery, and its name.
    window.Undo();
    EXPECT_EQ(TitleOf(3), window.GetProject().GetName());
    window.Undo();
    EXPECT_EQ(window.ChildrenOf(1), QString());
}

TEST_F(GalleryNameEditor, ANewChildThatIsGivenNoNameKeepsItsOwn)
{
    window.PressButton(1, QStringLiteral("Insert child section"));
    const QString own = Wait().text();
    window.PressKey(Qt::Key_Escape);
    EXPECT_EQ(TitleOf(3), own);
    EXPECT_EQ(window.ChildrenOf(1), QStringLiteral("3"));
    EXPECT_EQ(window.changes, 1);
}

// Of four children three show; the person goes to the new one, where there is a place for its name.
TEST_F(GalleryNameEditor, ANewChildThatDoesNotShowIsGoneTo)
{
    for (int i = 0; i < 3; ++i) {
        window.AddChild(1);
    }
    window.Show();
    window.PressButton(1, QStringLiteral("Insert child section"));
    ASSERT_TRUE(window.WaitForGallery(6));
    Wait().setText(QStringLiteral("Beach"));
    window.PressKey(Qt::Key_Return);
    EXPECT_EQ(TitleOf(6), QStringLiteral("Beach"));
}

TEST_F(GalleryNameEditor, FollowsItsCoverToAnotherSize)
{
    Open().setText(QStringLiteral("Lake"));
    const QRect before = window.FindNameEditor()->geometry();
    window.GetView().resize(420, 500);
    ASSERT_TRUE(WaitUntil([&] {
        const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_1]"));
        return window.FindNameEditor() && window.FindNameEditor()->geometry() != before &&
               window.FindNameEditor()->geometry().bottom() + 1 == qRound(cover.bottom());
    }));
    EXPECT_EQ(window.FindNameEditor()->text(), QStringLiteral("Lake"));
}

TEST_F(GalleryNameEditor, ClosesWithItsGallery)
{
    Open().setText(QStringLiteral("Lake"));
    window.GetDesk().Do(RemoveGalleryAct(window.GetProject(), 1));
    EXPECT_TRUE(WaitUntil([&] { return !window.FindNameEditor(); }));
    EXPECT_EQ(window.GetProject().GetGalleries().size(), 2U);
    window.GetProject().SetCurrentGallery(2);
    window.Show();
    Open().setText(QStringLiteral("Hills"));
    window.GetView().UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, window.GetProject());
    EXPECT_FALSE(window.FindNameEditor());
    EXPECT_EQ(TitleOf(2), window.GetProject().GetName());
}
