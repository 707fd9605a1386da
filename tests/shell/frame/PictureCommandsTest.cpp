#include "shell/frame/PictureCommands.h"

#include <QClipboard>
#include <QDialog>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>

#include "MainFrameFixture.h"
#include "shell/panes/folder/ViewFolder.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell_support/DialogTools.h"
#include "shell_support/ViewWindow.h"

// What can be done with selected pictures, from the bar over the page and by the commands' keys.

namespace {

// A gallery of the pictures a.png to e.png.
class PictureCommands : public CMainFrameFixture {
protected:
    PictureCommands()
    {
        QGuiApplication::clipboard()->clear();
        Start(Path("a.gallery"));
        QStringList files;
        for (const char* name : {"a.png", "b.png", "c.png", "d.png", "e.png"}) {
            files += fixture.WritePicture(QString::fromLatin1(name));
        }
        frame->AddDropped(files);
        frame->show();
        frame->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    }

    CGallery& Gallery() { return *frame->GetProject().GetCurrentGallery(); }
    QString Order(int32_t gallery = 0)
    {
        QString letters;
        const CPictureList& pictures = frame->GetProject().FindGallery(gallery)->GetPictures();
        for (int32_t position = 0; position < pictures.GetCount(); ++position) {
            letters += ExtractLastName(pictures.GetAt(position)->GetPath()).at(0);
        }
        return letters;
    }
    int32_t AngleAt(int32_t position) { return Gallery().GetPictures().GetAt(position)->GetAngle(); }
    void PressOnBar(const char* button)
    {
        QWidget* const bar = frame->GetPagesView().findChild<QWidget*>(QStringLiteral("SelectionBar"));
        ASSERT_TRUE(bar->isVisible());
        auto* const found = bar->findChild<QToolButton*>(QString::fromLatin1(button));
        ASSERT_NE(found, nullptr) << button;
        EXPECT_FALSE(found->icon().isNull()) << button;
        QTest::mouseClick(found, Qt::LeftButton);
    }
    void Command(CommandId command) { frame->OnCommand(static_cast<int>(command)); }
    // Takes the first gallery that the dialog offers below the one that is shown.
    void ChooseGallery(const std::function<void()>& ask, const char* title)
    {
        const CModalAnswer answer([&](QWidget& dialog) {
            EXPECT_EQ(dialog.windowTitle(), QString::fromLatin1(title));
            QTest::keyClicks(dialog.focusWidget(), QStringLiteral("gallery"));
            static_cast<QDialog&>(dialog).accept();
        });
        ask();
        EXPECT_TRUE(answer.WasAsked());
    }
};

} // namespace

TEST_F(PictureCommands, TheBarTurnsMovesAndDeletesWhatIsSelected)
{
    Command(CommandId::SelectAll);
    PressOnBar("TurnLeftButton");
    EXPECT_EQ(AngleAt(0), 3);
    EXPECT_EQ(AngleAt(4), 3);
    PressOnBar("TurnRightButton");
    EXPECT_EQ(AngleAt(4), 0);
    PressOnBar("ClearButton");
    EXPECT_EQ(Order(), QString());
    Command(CommandId::Undo);
    EXPECT_EQ(Order(), QStringLiteral("abcde"));
    EXPECT_FALSE(frame->GetPagesView().findChild<QWidget*>(QStringLiteral("SelectionBar"))->isVisible());
}

TEST_F(PictureCommands, TheArrowsInTheToolbarTakeBackAndDoAgainWhatTheirTipsName)
{
    auto* const toolBar = frame->findChild<QToolBar*>(QStringLiteral("PagesToolBar"));
    ASSERT_NE(toolBar, nullptr);
    const auto button = [&](const char* name) {
        auto* const action = frame->findChild<QAction*>(QString::fromLatin1(name));
        return qobject_cast<QToolButton*>(toolBar->widgetForAction(action));
    };
    ASSERT_NE(button("Undo"), nullptr);
    ASSERT_NE(button("Redo"), nullptr);
    EXPECT_FALSE(button("Undo")->icon().isNull());
    EXPECT_FALSE(button("Redo")->isEnabled());
    EXPECT_EQ(button("Redo")->toolTip(), QStringLiteral("Redo (Ctrl+Shift+Z)"));
    Command(CommandId::SelectAll);
    Command(CommandId::Clear);
    ASSERT_TRUE(WaitUntil([&] { return Order().isEmpty(); }));
    EXPECT_EQ(button("Undo")->toolTip(), QStringLiteral("Undo Delete 5 Pictures (Ctrl+Z)"));
    QTest::mouseClick(button("Undo"), Qt::LeftButton);
    EXPECT_EQ(Order(), QStringLiteral("abcde"));
    EXPECT_EQ(button("Redo")->toolTip(), QStringLiteral("Redo Delete 5 Pictures (Ctrl+Shift+Z)"));
    QTest::mouseClick(button("Redo"), Qt::LeftButton);
    EXPECT_EQ(Order(), QString());
}

TEST_F(PictureCommands, WhatIsCopiedIsPastedElsewhereWithItsTexts)
{
    Gallery().GetPictures().GetAt(1)->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("B")));
    Command(CommandId::SelectAll);
    Command(CommandId::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->urls().size(), 5);
    EXPECT_EQ(frame->statusBar()->currentMessage(), QStringLiteral("5 pictures copied."));
    Command(CommandId::Cut);
    EXPECT_EQ(Order(), QString());
    Command(CommandId::Paste);
    ASSERT_TRUE(WaitUntil([&] { return Order() == QStringLiteral("abcde"); }));
    EXPECT_EQ(Gallery().GetPictures().GetAt(1)->GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("B")));
}

TEST_F(PictureCommands, WithoutAnythingSelectedThePersonIsTold)
{
    for (const CommandId command : {CommandId::Clear, CommandId::TurnLeft, CommandId::MoveToEnd}) {
        frame->statusBar()->clearMessage();
        Command(command);
        EXPECT_TRUE(WaitUntil([&] {
            return frame->statusBar()->currentMessage().startsWith(QStringLiteral("No picture is selected."));
        }));
    }
    Command(CommandId::Paste);
    EXPECT_TRUE(WaitUntil([&] {
        return frame->statusBar()->currentMessage() ==
               QStringLiteral("There are no pictures on the clipboard.");
    }));
    EXPECT_EQ(Order(), QStringLiteral("abcde"));
}

TEST_F(PictureCommands, AnotherGalleryIsChosenInADialog)
{
    Command(CommandId::SelectAll);
    Command(CommandId::MoveToGallery);
    EXPECT_EQ(frame->statusBar()->currentMessage(), QStringLiteral("There is no other gallery yet."));
    frame->GetProject().AddChildGallery(0);
    frame->GetProject().FindGallery(1)->SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("title"),
                                                          CVariant(QStringLiteral("Other gallery")));
    ChooseGallery([&] { PressOnBar("CopyToGalleryButton"); }, "Copy to gallery");
    EXPECT_EQ(Order(1), QStringLiteral("abcde"));
    EXPECT_EQ(Gallery().GetPictures().GetCount(), 6);
    Command(CommandId::Undo);
    EXPECT_EQ(Order(1), QString());
    ChooseGallery([&] { PressOnBar("MoveToGalleryButton"); }, "Move to gallery");
    EXPECT_EQ(Order(1), QStringLiteral("abcde"));
    EXPECT_EQ(Gallery().GetPictures().GetCount(), 1);
}

TEST_F(PictureCommands, InTheFolderPaneTheyMeanItsFiles)
{
    const QString folder = fixture.scratch.Path(QStringLiteral("photos"));
    fixture.WritePicture(QStringLiteral("x.png"));
    CViewFolder& view = frame->GetFolderView();
    view.SetFolder(folder);
    ASSERT_TRUE(WaitUntil([&] { return view.IsLoaded(); }));
    view.GetHTMLView().setFocus();
    ClickMouse(view.GetHTMLView(), QPoint(3, 3)); // the page takes the keyboard
    ASSERT_TRUE(WaitUntil([&] { return view.isAncestorOf(QApplication::focusWidget()); }));
    // The file may come onto the list a little later.
    ASSERT_TRUE(WaitUntil([&] {
        Command(CommandId::SelectAll);
        return view.GetSelectedPaths() == QStringList{JoinPath(folder, QStringLiteral("x.png"))};
    }));
    Command(CommandId::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->urls().size(), 1);
    Command(CommandId::Clear); // means nothing there
    EXPECT_EQ(Order(), QStringLiteral("abcde"));
    Command(CommandId::AddSelected);
    EXPECT_EQ(Order(), QStringLiteral("abcdex"));
    Command(CommandId::AddSelected);
    EXPECT_TRUE(frame->statusBar()->currentMessage().startsWith(QStringLiteral("No picture is selected.")));
}
