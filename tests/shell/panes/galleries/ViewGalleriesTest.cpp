#include "shell/panes/galleries/ViewGalleries.h"

#include <QApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QStyle>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <gtest/gtest.h>

#include "GalleriesWindow.h"
#include "common/FileSystem.h"
#include "editing/GalleryActs.h"
#include "editing/LookActs.h"
#include "editing/PictureActs.h"

using Cause = ViewUpdate::Cause;

namespace {

class ViewGalleries : public testing::Test {
protected:
    // The last child of the root, by a picture of one colour.
    int32_t AddChildWithPicture(const char* name, uint32_t colour)
    {
        const int32_t child = window.AddChild(0);
        window.GetGallery(child).AppendPicture(
            window.fixture.WritePicture(QString::fromLatin1(name), QSize(400, 300), colour), 0);
        return child;
    }

    // The colour in the middle of the cover as the page shows it.
    QString ColourOf(int32_t gallery)
    {
        return window
            .Ask(QStringLiteral("(i => { const c = document.createElement('canvas').getContext('2d'); "
                                "c.drawImage(i, -i.naturalWidth / 2, -i.naturalHeight / 2); "
                                "return [...c.getImageData(0, 0, 1, 1).data].slice(0, 3)"
                                ".map(v => v > 128 ? 1 : 0).join(''); })"
                                "(document.querySelector('img[id=\"gl_%1\"]'))")
                     .arg(gallery))
            .toString();
    }

    // A drag comes in before it does anything else.
    void Enter() { EXPECT_TRUE(SendDrag<QDragEnterEvent>({QStringLiteral("/a.png")}, QPoint(3, 3))); }

    template <class Event>
    bool SendDrag(const QStringList& paths, QPoint place)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls += QUrl::fromLocalFile(path);
        }
        data.setUrls(urls);
        Event event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(&window.GetView(), &event);
        return event.isAccepted();
    }

    QString Lit()
    {
        return window.Ask(QStringLiteral("[...document.querySelectorAll('.drop-lit')].map(i => i.id).join()"))
            .toString();
    }

    // A new gallery asks for its name, and is given none.
    void LeaveName()
    {
        ASSERT_TRUE(WaitUntil([&] { return window.FindNameEditor() != nullptr; }));
        QTest::keyClick(window.FindNameEditor(), Qt::Key_Escape);
    }

    bool WaitForFocus(int32_t gallery)
    {
        return WaitForPage(
            window.GetPage(),
            QStringLiteral("document.activeElement.getAttribute('href') == 'gl_%1'").arg(gallery));
    }

    CGalleriesWindow window;
};

} // namespace

TEST_F(ViewGalleries, ShowsTheCovers)
{
    AddChildWithPicture("red.jpg", 0xf01010);
    AddChildWithPicture("green.png", 0x10f010);
    window.Show();
    EXPECT_EQ(window.Ask(QStringLiteral("document.querySelector('th').innerText")).toString(),
              QStringLiteral("Gallery tree ( 3 sections )"));
    EXPECT_EQ(ColourOf(1), QStringLiteral("100"));
    EXPECT_EQ(ColourOf(2), QStringLiteral("010"));
}

TEST_F(ViewGalleries, TheNamesOfTheGalleriesAreTipsAndTexts)
{
    window.AddChild(0);
    window.GetGallery(1).SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("display_name"),
                                           CVariant(QStringLiteral("A \"b\" </script> 'c' \\ é")));
    window.Show();
    const QString cover = QStringLiteral("document.querySelector('img[id=gl_1]')");
    EXPECT_EQ(window.Ask(cover + QStringLiteral(".title")).toString(),
              QStringLiteral("A \"b\" </script> 'c' \\ é"));
    EXPECT_EQ(window.Ask(cover + QStringLiteral(".alt")).toString(),
              QStringLiteral("A \"b\" </script> 'c' \\ é"));
}

TEST_F(ViewGalleries, AClickOnACoverChoosesItsGallery)
{
    for (const int parent : {0, 0, 1}) {
        window.AddChild(parent);
    }
    window.Show();
    ClickMouse(window.GetPage(), window.PlaceOf(QStringLiteral("img[id=gl_1]")) + QPoint(0, 5));
    ASSERT_TRUE(window.WaitForGallery(1));
    EXPECT_EQ(window.GetCurrent(), 1);
    EXPECT_EQ(window.changes, 1);
    EXPECT_EQ(window.listener.causes, std::vector{Cause::GalleryChosen});
    ClickMouse(window.GetPage(), window.PlaceOf(QStringLiteral("img[id=gl_3]")) + QPoint(0, 5));
    ASSERT_TRUE(window.WaitForGallery(3));
    ClickMouse(window.GetPage(), window.PlaceOf(QStringLiteral("img[id=gl_1]")) + QPoint(0, 5));
    ASSERT_TRUE(window.WaitForGallery(1));
    ClickMouse(window.GetPage(), window.PlaceOf(QStringLiteral("img[id=gl_0]")) + QPoint(0, 5));
    ASSERT_TRUE(window.WaitForGallery(0));
}

// A gallery is the same on the page that comes.
TEST_F(ViewGalleries, WhatIsPressedWhileTheNextPageIsOnItsWayIsDone)
{
    for (int i = 0; i < 3; ++i) {
        window.AddChild(0);
    }
    window.Show();
    const auto showAnew = [&] {
        window.GetView().UpdateView({.cause = Cause::GalleryChosen}, window.GetProject());
    };
    ClickMouse(window.GetPage(), window.PlaceOf(QStringLiteral("img[id=gl_2]")) + QPoint(0, 5));
    showAnew();
    ASSERT_TRUE(window.WaitForGallery(2));
    ::PressKey(window.GetPage());
    window.GetPage().RunScript(QStringLiteral("external.RemoveGallery(1)"));
    showAnew();
    EXPECT_TRUE(WaitUntil([&] { return window.GetProject().FindGallery(1) == nullptr; }));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!document.querySelector('img[id=gl_1]')")));
    // Not on those of another project, whose covers have to be drawn before its page is there.
    window.AddChild(0);
    ::PressKey(window.GetPage());
    window.GetPage().RunScript(QStringLiteral("external.RemoveGallery(2)"));
    window.Show(Cause::ProjectReplaced);
    EXPECT_NE(window.GetProject().FindGallery(2), nullptr);
}

TEST_F(ViewGalleries, TheButtonsOfAGallery)
{
    window.AddChild(0);
    window.GetProject().SetCurrentGallery(1);
    window.Show();
    window.PressButton(1, QStringLiteral("Insert child section"));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_2]')")));
    EXPECT_EQ(window.GetCurrent(), 1);
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>{2});
    LeaveName();

    window.PressButton(2, QStringLiteral("Insert content section"));
    ASSERT_TRUE(window.WaitForGallery(3));
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>{3});
    EXPECT_EQ(window.GetGallery(3).GetChildren(), std::set<int32_t>{2});

    window.PressButton(3, QStringLiteral("Delete"));
    ASSERT_TRUE(window.WaitForGallery(0));
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>{2});
    EXPECT_EQ(window.GetProject().FindGallery(3), nullptr);
    EXPECT_EQ(window.listener.causes, std::vector(3, Cause::Edited));
    // And all of it is taken back.
    for (int i = 0; i < 3; ++i) {
        window.GetDesk().GetHistory().GetStack().undo();
    }
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>());
    EXPECT_EQ(window.GetProject().GetGalleries().size(), 2U);
}

TEST_F(ViewGalleries, AnotherCurrentGalleryIsToldOfHoweverItCame)
{
    window.AddChild(0);
    window.AddChild(0);
    window.GetProject().SetCurrentGallery(1);
    window.Show();
    CViewGalleriesExternalDispatchCommands& commands = window.GetView();
    commands.AddParentGallery(1);
    EXPECT_TRUE(window.listener.isOtherGallery);
    EXPECT_EQ(window.GetCurrent(), 3);
    commands.RemoveGallery(3);
    EXPECT_TRUE(window.listener.isOtherGallery);
    EXPECT_EQ(window.GetCurrent(), 0);
    commands.RemoveGallery(2);
    EXPECT_FALSE(window.listener.isOtherGallery);
    EXPECT_EQ(window.listener.causes, std::vector(3, Cause::Edited));
}

TEST_F(ViewGalleries, TheButtonsOfTheRoot)
{
    window.Show();
    // Without a child that could take its place it can't be deleted.
    EXPECT_EQ(window.Ask(QStringLiteral("gl_0_menu.length")).toInt(), 3);
    window.PressButton(0, QStringLiteral("Insert content section"));
    ASSERT_TRUE(window.WaitForGallery(1));
    EXPECT_EQ(window.GetProject().GetRootGalleryIndex(), 1);
    EXPECT_EQ(window.Ask(QStringLiteral("gl_1_menu.length")).toInt(), 4);
    window.PressButton(1, QStringLiteral("Delete"));
    ASSERT_TRUE(window.WaitForGallery(0));
    EXPECT_EQ(window.GetProject().GetRootGalleryIndex(), 0);
    window.PressButton(0, QStringLiteral("Insert child section"));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_1]')")));
    LeaveName();
    window.PressButton(0, QStringLiteral("Insert child section"));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_2]')")));
    EXPECT_EQ(window.Ask(QStringLiteral("gl_0_menu.length")).toInt(), 3);
}

TEST_F(ViewGalleries, AGalleryWithPicturesIsDeletedAsItIs)
{
    AddChildWithPicture("red.jpg", 0xf01010);
    window.Show();
    window.PressButton(1, QStringLiteral("Delete"));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!document.querySelector('img[id=gl_1]')")));
    EXPECT_EQ(window.GetProject().FindGallery(1), nullptr);
    EXPECT_EQ(window.GetGallery(0).GetPictures().GetCount(), 0);
}

TEST_F(ViewGalleries, WhatConcernsItIsDrawnAndNothingElse)
{
    window.AddChild(0);
    window.GetGallery(0).AddPicture(window.fixture.WritePicture(QStringLiteral("a.png")));
    window.Show();
    const int before = window.shownCount;
    window.GetView().UpdateView({.cause = Cause::ProjectRenamed}, window.GetProject());
    window.GetDesk().Do(ChooseStyle(0, QStringLiteral("plain.xml")));
    window.Ask(QStringLiteral("1")); // waits for a page that is on its way
    EXPECT_EQ(window.shownCount, before);
    int count = before;
    const Act acts[] = {TurnPictures(0, {0}, true), RenameGallery(1, QStringLiteral("Sea")),
                        AddGalleryBelow(0)};
    for (const Act& act : acts) {
        window.GetDesk().Do(act);
        EXPECT_TRUE(WaitUntil([&] { return window.shownCount > count; })) << qPrintable(act.name);
        count = window.shownCount;
    }
    for (const Cause cause : {Cause::ProjectReplaced, Cause::GalleryChosen}) {
        window.Show(cause);
        EXPECT_EQ(window.shownCount, ++count);
    }
}

TEST_F(ViewGalleries, CommandsForWhatIsNotThereDoNothing)
{
    window.Show();
    CViewGalleriesExternalDispatchCommands& commands = window.GetView();
    for (const int32_t gallery : {99, -7, std::numeric_limits<int32_t>::min()}) {
        commands.AddParentGallery(gallery);
        commands.AddChildGallery(gallery);
        commands.RemoveGallery(gallery);
        commands.SetCurrentGallery(gallery);
    }
    CContentURLLoader& loader = window.GetView();
    for (const char* url : {"", "gl_", "gl_x", "gl_1x", "gl_99999999999", "GL_0", "index.html", "gl_77"}) {
        loader.LoadURL(QString::fromLatin1(url));
    }
    EXPECT_TRUE(window.listener.causes.empty());
    EXPECT_EQ(window.changes, 0);
    EXPECT_EQ(window.GetProject().GetGalleries().size(), 1u);
    EXPECT_EQ(window.GetCurrent(), 0);
}

TEST_F(ViewGalleries, AChildOfMinusOneIsThatOfTheCurrentGallery)
{
    window.AddChild(0);
    window.GetProject().SetCurrentGallery(1);
    window.Show();
    CallByKey(window.GetPage(), QStringLiteral("external.AddChildGallery(-1)"));
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_2]')")));
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>{2});
}

TEST_F(ViewGalleries, ALayoutThatBreaksIsToldOf)
{
    window.Show();
    window.fixture.scratch.Write(QStringLiteral("program/Templates/a.xml"), "");
    QFile::remove(window.fixture.scratch.Path(QStringLiteral("program/Templates/a/index.html")));
    CViewGalleriesExternalDispatchCommands& commands = window.GetView();
    commands.AddParentGallery(0);
    // Either way the tree is whole.
    EXPECT_EQ(window.told.isEmpty(), window.GetProject().GetGalleries().size() == 2);
}

TEST_F(ViewGalleries, AProjectWithoutGalleriesIsAnEmptyPage)
{
    window.Show();
    window.GetProject().Clear();
    window.GetView().UpdateView({.cause = Cause::ProjectReplaced}, window.GetProject());
    EXPECT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("document.querySelector('a') == null")));
}

TEST_F(ViewGalleries, ANewSizeIsANewPageOnce)
{
    AddChildWithPicture("red.jpg", 0xf01010);
    window.Show();
    const int before = window.shownCount;
    for (int step = 1; step <= 40; ++step) {
        window.GetView().resize(320 + 5 * step, 320 + 3 * step);
        QCoreApplication::processEvents();
    }
    const QSize cell = GetGalleryCellSize(window.GetView().size(),
                                          window.GetView().style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    ASSERT_TRUE(
        WaitForPage(window.GetPage(),
                    QStringLiteral("document.querySelector('table').width == %1").arg(3 * cell.width())));
    ASSERT_TRUE(window.WaitForGallery(0));
    EXPECT_LE(window.shownCount, before + 3);
    EXPECT_EQ(ColourOf(1), QStringLiteral("100"));
}

TEST_F(ViewGalleries, ACoverThatChangesIsShownAnew)
{
    AddChildWithPicture("a.jpg", 0xf01010);
    window.Show();
    window.GetGallery(1).RemovePicture(0);
    MakeDirectoryPath(window.fixture.scratch.Path(QStringLiteral("photos/b")));
    window.GetGallery(1).AppendPicture(
        window.fixture.WritePicture(QStringLiteral("b/a.jpg"), QSize(400, 300), 0x10f010), 0);
    window.Show();
    EXPECT_TRUE(WaitUntil([&] { return ColourOf(1) == QStringLiteral("010"); }));
}

TEST_F(ViewGalleries, WhilePausedItLeavesTheDocumentAlone)
{
    window.Show();
    {
        const CViewGalleries::CPause pause(window.GetView());
        const CViewGalleries::CPause inner(window.GetView());
    }
    std::optional<CViewGalleries::CPause> pause(window.GetView());
    window.Ask(QStringLiteral("1")); // the end of the first pauses may have brought a page
    const int before = window.shownCount;
    window.AddChild(0);
    window.GetView().UpdateView({.cause = Cause::ProjectReplaced}, window.GetProject());
    EXPECT_FALSE(window.Ask(QStringLiteral("!!document.querySelector('img[id=gl_1]')")).toBool());
    EXPECT_EQ(window.shownCount, before);
    pause.reset();
    EXPECT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_1]')")));
}

TEST_F(ViewGalleries, ADroppedFileGoesIntoTheGalleryUnderIt)
{
    window.AddChild(0);
    window.AddChild(0);
    window.Show();
    const QString path = window.fixture.WritePicture(QStringLiteral("new.png"));
    const QPoint first = window.PlaceOf(QStringLiteral("img[id=gl_1]"));
    const QPoint second = window.PlaceOf(QStringLiteral("img[id=gl_2]"));
    Enter();
    EXPECT_TRUE(SendDrag<QDragMoveEvent>({path}, first));
    EXPECT_EQ(Lit(), QStringLiteral("gl_1"));
    EXPECT_TRUE(SendDrag<QDragMoveEvent>({path}, second));
    EXPECT_EQ(Lit(), QStringLiteral("gl_2"));
    EXPECT_TRUE(SendDrag<QDropEvent>({path}, second));
    EXPECT_FALSE(window.droppedOn); // the other program must not wait for it
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, 2);
    EXPECT_EQ(window.droppedPaths, QStringList{path});
    EXPECT_EQ(Lit(), QString());
}

TEST_F(ViewGalleries, AFileDroppedOnTheFrameOfACoverBelongsToIt)
{
    window.AddChild(0);
    window.Show();
    const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_1]"));
    Enter();
    SendDrag<QDropEvent>({QStringLiteral("/a.png")}, (cover.topLeft() - QPointF(1, 1)).toPoint());
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, 1);
}

TEST_F(ViewGalleries, AFileDroppedBesideTheCoversGoesIntoTheCurrentGallery)
{
    window.AddChild(0);
    window.Show();
    Enter();
    EXPECT_TRUE(
        SendDrag<QDragMoveEvent>({QStringLiteral("/a.png")}, window.PlaceOf(QStringLiteral("img[id=gl_1]"))));
    EXPECT_TRUE(SendDrag<QDragMoveEvent>({QStringLiteral("/a.png")}, QPoint(5, 5)));
    EXPECT_EQ(Lit(), QString());
    SendDrag<QDropEvent>({QStringLiteral("/a.png"), QStringLiteral("/folder")}, QPoint(5, 5));
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, CViewGalleries::CurrentGallery);
    EXPECT_EQ(window.droppedPaths.size(), 2);
}

TEST_F(ViewGalleries, ADragThatGoesAwayPutsOutTheLight)
{
    window.AddChild(0);
    window.Show();
    Enter();
    SendDrag<QDragMoveEvent>({QStringLiteral("/a.png")}, window.PlaceOf(QStringLiteral("img[id=gl_1]")));
    EXPECT_EQ(Lit(), QStringLiteral("gl_1"));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&window.GetView(), &leave);
    EXPECT_EQ(Lit(), QString());
}

TEST_F(ViewGalleries, WhatIsNoFileIsNotTaken)
{
    window.Show();
    EXPECT_FALSE(SendDrag<QDragEnterEvent>({}, QPoint(3, 3)));
}

TEST_F(ViewGalleries, CoversAndTheirMenusAreReachedByKeyboard)
{
    window.AddChild(0);
    window.AddChild(0);
    window.Show();
    window.FocusCover(1);
    window.PressKey(Qt::Key_Return);
    ASSERT_TRUE(window.WaitForGallery(1));
    // The keyboard stays at the cover that it has chosen.
    ASSERT_TRUE(WaitForFocus(1));
    window.PressKey(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("!!document.querySelector('img[id=gl_3]')")));
    EXPECT_EQ(window.GetGallery(1).GetChildren(), std::set<int32_t>{3});
    ASSERT_TRUE(WaitUntil([&] { return window.FindNameEditor() && window.FindNameEditor()->hasFocus(); }));
    window.PressKey(Qt::Key_Escape);
    ASSERT_TRUE(WaitForFocus(1));
}

TEST_F(ViewGalleries, TheStripLeavesASmallCoverFree)
{
    window.AddChild(0);
    window.GetView().resize(256, 256);
    window.Show();
    const QRectF cover = RectOf(window.GetPage(), QStringLiteral("img[id=gl_1]"));
    ASSERT_LT(cover.height(), 48);
    MoveMouse(window.GetPage(), cover.center().toPoint());
    ASSERT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("gl_1_menu[0].style.display == 'inline'")));
    EXPECT_EQ(window
                  .Ask(QStringLiteral("document.elementFromPoint(%1, %2).id")
                           .arg(cover.center().x())
                           .arg(cover.center().y()))
                  .toString(),
              QStringLiteral("gl_1"));
}
