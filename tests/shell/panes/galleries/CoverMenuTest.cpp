#include "shell/panes/galleries/CoverMenu.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

#include "GalleriesWindow.h"

namespace {

class CoverMenu : public testing::Test {
protected:
    void SetUp() override
    {
        window.AddChild(0);
        window.AddChild(0);
        window.Show();
    }

    QMenu* Find()
    {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        return menu && menu->objectName() == QStringLiteral("CoverMenu") ? menu : nullptr;
    }

    QMenu* OpenByMouse(int32_t gallery)
    {
        window.ClickRight(window.PlaceOf(QStringLiteral("img[id=gl_%1]").arg(gallery)));
        EXPECT_TRUE(WaitUntil([&] { return Find() != nullptr; })) << gallery;
        return Find();
    }

    // "New gallery inside|..."
    static QString Entries(const QMenu& menu)
    {
        QStringList entries;
        for (const QAction* action : menu.actions()) {
            entries +=
                action->isSeparator()
                    ? QStringLiteral("-")
                    : action->text().remove(QLatin1Char('&')).replace(QLatin1Char('\t'), QLatin1Char(' '));
            EXPECT_TRUE(action->isSeparator() || !action->icon().isNull());
        }
        return entries.join(QLatin1Char('|'));
    }

    // Chooses by the letter of the entry.
    void Choose(int32_t gallery, Qt::Key letter)
    {
        QMenu* const menu = OpenByMouse(gallery);
        ASSERT_TRUE(menu);
        QTest::keyClick(menu, letter);
        EXPECT_TRUE(WaitUntil([&] { return Find() == nullptr; }));
    }

    CGalleriesWindow window;
};

} // namespace

TEST_F(CoverMenu, OpensWhereTheCoverIsClicked)
{
    const QPoint place = window.PlaceOf(QStringLiteral("img[id=gl_1]"));
    const QMenu* const menu = OpenByMouse(1);
    ASSERT_TRUE(menu);
    EXPECT_LE((menu->pos() - window.GetPage().mapToGlobal(place)).manhattanLength(), 4);
    EXPECT_EQ(Entries(*menu),
              QStringLiteral("New gallery inside|Insert gallery above|-|Rename|Duplicate|-|Delete"));
    EXPECT_EQ(window.GetCurrent(), 0);
}

// The keys are for the current gallery.
TEST_F(CoverMenu, NamesTheKeysThatDoTheSame)
{
    const QMenu* const menu = OpenByMouse(0);
    ASSERT_TRUE(menu);
    EXPECT_EQ(Entries(*menu),
              QStringLiteral("New gallery inside|Insert gallery above|-|Rename F2|Duplicate|-|Delete Del"));
}

TEST_F(CoverMenu, IsOpenedByKeyboardOverTheCover)
{
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    } rows[] = {{Qt::Key_Menu, Qt::NoModifier}, {Qt::Key_F10, Qt::ShiftModifier}};
    window.FocusCover(2);
    for (const auto& row : rows) {
        window.PressKey(row.key, row.modifiers);
        ASSERT_TRUE(WaitUntil([&] { return Find() != nullptr; }));
        const QRect cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_2]")).toRect();
        EXPECT_TRUE(cover.adjusted(-3, -3, 3, 3).contains(window.GetPage().mapFromGlobal(Find()->pos())));
        // The strip of buttons doesn't come up below it.
        EXPECT_FALSE(window
                         .Ask(QStringLiteral("[...document.querySelectorAll('#gl_2_menu')].some(s => "
                                             "s.style.display == 'inline')"))
                         .toBool());
        QTest::keyClick(Find(), Qt::Key_Escape);
        EXPECT_TRUE(WaitUntil([&] { return Find() == nullptr; }));
    }
    window.PressKey(Qt::Key_Menu);
    ASSERT_TRUE(WaitUntil([&] { return Find() != nullptr; }));
    QTest::keyClick(Find(), Qt::Key_Up);
    QTest::keyClick(Find(), Qt::Key_Return);
    EXPECT_TRUE(WaitUntil([&] { return window.GetProject().FindGallery(2) == nullptr; }));
}

TEST_F(CoverMenu, EachEntryDoesItsWork)
{
    Choose(1, Qt::Key_N);
    EXPECT_EQ(window.ChildrenOf(1), QStringLiteral("3"));
    window.Undo();
    Choose(1, Qt::Key_I);
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("3 2"));
    EXPECT_EQ(window.ChildrenOf(3), QStringLiteral("1"));
    window.Undo();
    Choose(1, Qt::Key_U);
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("1 3 2"));
    window.Undo();
    Choose(2, Qt::Key_D);
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("1"));
    window.Undo();
    Choose(2, Qt::Key_R);
    ASSERT_TRUE(WaitUntil([&] { return window.FindNameEditor() != nullptr; }));
    const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_2]"));
    EXPECT_TRUE(window.FindNameEditor()->geometry().contains(
        QPoint(qRound(cover.center().x()), qRound(cover.bottom()) - 2)));
}

// Beside the covers there is nothing to be done.
TEST_F(CoverMenu, BelongsToACover)
{
    window.ClickRight(QPoint(3, 3));
    window.Ask(QStringLiteral("1"));
    QCoreApplication::processEvents();
    EXPECT_EQ(Find(), nullptr);
    CViewGalleriesExternalDispatchCommands& commands = window.GetView();
    commands.OpenMenu(99, 10, 10);
    EXPECT_EQ(Find(), nullptr);
}

TEST_F(CoverMenu, WhatTheRootCantDoIsTold)
{
    Choose(0, Qt::Key_D);
    EXPECT_EQ(window.told,
              QStringLiteral("It is the first gallery of the project. Only one gallery can take its "
                             "place, and 2 stand below it."));
    window.told.clear();
    Choose(0, Qt::Key_U);
    EXPECT_EQ(window.told,
              QStringLiteral("It is the first gallery of the project, which holds all the others."));
    EXPECT_EQ(window.changes, 0);
}

TEST_F(CoverMenu, WhatTheKeysDoIsForTheCurrentGallery)
{
    window.GetProject().SetCurrentGallery(1);
    window.Show(ViewUpdate::Cause::GalleryChosen);
    window.GetView().DuplicateGallery();
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("1 3 2"));
    window.GetView().DeleteGallery();
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("3 2"));
    EXPECT_EQ(window.GetCurrent(), 0);
    window.GetView().DeleteGallery();
    EXPECT_FALSE(window.told.isEmpty());
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("3 2"));
}
