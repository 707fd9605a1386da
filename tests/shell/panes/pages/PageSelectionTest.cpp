#include "shell/panes/pages/PageSelection.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <gtest/gtest.h>

#include "PagesWindow.h"
#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"

using testing::ElementsAre;

namespace {

using Positions = std::vector<int32_t>;

// A gallery of six pictures, four to the page.
class PageSelection : public testing::Test {
protected:
    PageSelection() : window(6) {}

    Positions Selected()
    {
        Positions positions;
        window.GetView().WithPictures([&](const Positions& given) { positions = given; });
        return positions;
    }
    bool WaitForSelected(const Positions& positions)
    {
        return WaitUntil([&] { return Bar().isVisible() && Selected() == positions; });
    }
    bool WaitForNothing()
    {
        return WaitUntil([&] { return !Bar().isVisible(); });
    }
    // Of pictures of the page, by number from 1.
    bool WaitForMarks(int count)
    {
        return WaitForPage(
            window.GetPage(),
            QStringLiteral("document.querySelectorAll('.preview-selected').length == %1").arg(count));
    }
    QPoint PlaceOf(int photo)
    {
        return RectOf(window.GetPage(), QStringLiteral("#photo%1").arg(photo)).center().toPoint();
    }
    void Click(int photo, Qt::KeyboardModifiers modifiers)
    {
        ClickMouse(window.GetPage(), PlaceOf(photo), modifiers);
    }
    void Focus(int photo)
    {
        Ask(window.GetPage(),
            QStringLiteral("document.getElementById('photo%1').closest('a').focus()").arg(photo));
    }
    QWidget& Bar() { return *window.GetView().findChild<QWidget*>(QStringLiteral("SelectionBar")); }

    CPagesWindow window;
};

} // namespace

TEST_F(PageSelection, ControlAndShiftSelect)
{
    Click(1, Qt::ControlModifier);
    ASSERT_TRUE(WaitForSelected({0}));
    Click(3, Qt::ShiftModifier);
    ASSERT_TRUE(WaitForSelected({0, 1, 2}));
    Click(2, Qt::ControlModifier);
    ASSERT_TRUE(WaitForSelected({0, 2}));
    EXPECT_TRUE(WaitForMarks(2));
    EXPECT_EQ(Bar().findChild<QLabel*>()->text(), QStringLiteral("2 pictures selected"));
    EXPECT_TRUE(window.edited.empty());
}

TEST_F(PageSelection, AClickFollowsTheLinkUntilSomethingIsSelected)
{
    Click(1, Qt::ControlModifier);
    ASSERT_TRUE(WaitForSelected({0}));
    Click(2, Qt::NoModifier);
    ASSERT_TRUE(WaitForSelected({0, 1}));
    PressKey(window.GetPage(), Qt::Key_Escape);
    ASSERT_TRUE(WaitForNothing());
    EXPECT_TRUE(WaitForMarks(0));
    const int before = window.GetShownCount();
    Click(1, Qt::NoModifier);
    window.WaitForPageShown(before + 1);
    EXPECT_EQ(window.GetGallery().GetLayout().GetTemplatePage(), QStringLiteral("large.html"));
}

TEST_F(PageSelection, TheRoundButtonSelects)
{
    const QPoint picture = PlaceOf(1);
    int step = 0;
    ASSERT_TRUE(WaitUntil([&] {
        MoveMouse(window.GetPage(), picture + QPoint(++step % 2, 0));
        return Ask(window.GetPage(), QStringLiteral("!!document.getElementById('preview_check')")).toBool();
    }));
    ClickMouse(window.GetPage(),
               RectOf(window.GetPage(), QStringLiteral("#preview_check")).center().toPoint());
    EXPECT_TRUE(WaitForSelected({0}));
    EXPECT_TRUE(window.edited.empty());
}

TEST_F(PageSelection, ARubberBandSelectsWhatItTouches)
{
    const QRectF second = RectOf(window.GetPage(), QStringLiteral("#photo2"));
    const QRectF third = RectOf(window.GetPage(), QStringLiteral("#photo3"));
    const QPoint beside(qRound(std::max(second.right(), third.right())) + 40, qRound(second.center().y()));
    DragMouse(window.GetPage(), beside, third.center().toPoint());
    ASSERT_TRUE(WaitForSelected({1, 2}));
    EXPECT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!document.getElementById('preview_band')")));
    // A click beside the pictures ends it.
    ClickMouse(window.GetPage(), beside);
    EXPECT_TRUE(WaitForNothing());
}

TEST_F(PageSelection, KeysSelectTheFocusedPicture)
{
    Focus(1);
    PressKey(window.GetPage(), Qt::Key_Space);
    ASSERT_TRUE(WaitForSelected({0}));
    Focus(3);
    PressKey(window.GetPage(), Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_TRUE(WaitForSelected({0, 1, 2}));
}

TEST_F(PageSelection, ReachesOverAllPagesOfTheGallery)
{
    window.GetView().SelectAll();
    EXPECT_EQ(Selected(), (Positions{0, 1, 2, 3, 4, 5}));
    EXPECT_TRUE(WaitForMarks(4));
    window.Follow("index1.html");
    EXPECT_TRUE(WaitForMarks(2));
    EXPECT_EQ(Selected().size(), 6U);
}

TEST_F(PageSelection, FollowsThePicturesAndEndsWithTheGallery)
{
    Click(2, Qt::ControlModifier);
    ASSERT_TRUE(WaitForSelected({1}));
    window.Do(MovePicturesBefore(0, {1}, 4));
    EXPECT_EQ(Selected(), Positions{3});
    EXPECT_TRUE(WaitForMarks(1));
    window.Do(TurnPictures(0, {3}, true));
    EXPECT_TRUE(WaitForMarks(1));
    window.Do(RemovePictures(window.GetProject(), 0, {3}));
    EXPECT_TRUE(WaitForNothing());
    window.GetView().SelectAll();
    window.Do(AddGalleryBelow(0));
    EXPECT_EQ(Selected().size(), 5U);
    window.GetDesk().ChooseGallery(1);
    EXPECT_TRUE(WaitForNothing());
}

TEST_F(PageSelection, WithoutOneTheFocusedPictureCounts)
{
    Focus(3);
    std::optional<Positions> given;
    window.GetView().WithPictures([&](const Positions& positions) { given = positions; });
    ASSERT_TRUE(WaitUntil([&] { return given.has_value(); }));
    EXPECT_THAT(*given, ElementsAre(2));
    given.reset();
    Ask(window.GetPage(), QStringLiteral("document.activeElement.blur()"));
    window.GetView().WithPictures([&](const Positions& positions) { given = positions; });
    ASSERT_TRUE(WaitUntil([&] { return given.has_value(); }));
    EXPECT_TRUE(given->empty());
}

TEST_F(PageSelection, TheMenuIsThatOfThePictureUnderTheMouse)
{
    QAction turn(QStringLiteral("Turn"));
    window.GetView().SetPictureCommands({&turn}, {&turn});
    QMenu& menu = *window.GetView().findChild<QMenu*>(QStringLiteral("PictureMenu"));
    Click(1, Qt::ControlModifier);
    ASSERT_TRUE(WaitForSelected({0}));
    ClickMouse(window.GetPage(), PlaceOf(3), Qt::NoModifier, Qt::RightButton);
    ASSERT_TRUE(WaitUntil([&] { return menu.isVisible(); }));
    EXPECT_EQ(Selected(), Positions{2});
    menu.close();
    // By keyboard it opens at the picture that has the focus.
    Focus(2);
    PressKey(window.GetPage(), Qt::Key_Menu);
    ASSERT_TRUE(WaitUntil([&] { return menu.isVisible(); }));
    EXPECT_EQ(Selected(), Positions{1});
    menu.close();
}

TEST_F(PageSelection, WordsThatMeanNothingSelectNothing)
{
    const QString none = QStringLiteral("photo9");
    window.GetView().Select(none, QStringLiteral("only"));
    window.GetView().Select(QStringLiteral("photo1\nphoto2"), QStringLiteral("only"));
    window.GetView().Select(QStringLiteral("photo1"), QStringLiteral("some"));
    EXPECT_FALSE(Bar().isVisible());
}
