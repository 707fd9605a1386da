#include "shell/panes/pages/ViewPages.h"

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include "PagesWindow.h"
#include "common/FileSystem.h"
#include "document/pictures/PictureInfo.h"

using testing::ElementsAre;
using Cause = ViewUpdate::Cause;
using Wish = CPagesWindow::Wish;

namespace {

// Which pictures the page shows, by the first letters of their files.
QString Shown(CPagesWindow& window)
{
    return Ask(window.GetPage(),
               QStringLiteral("Array.from(document.images).filter(i => i.id.startsWith('photo') && "
                              "!i.id.endsWith('_menu')).map(i => i.alt[0]).join('')"))
        .toString();
}

int32_t AngleAt(CPagesWindow& window, int32_t position)
{
    return window.GetGallery().GetPictures().GetAt(position)->GetAngle();
}

void Send(CPagesWindow& window, const char* call)
{
    const int before = window.GetShownCount();
    CallByKey(window.GetPage(), QString::fromLatin1(call));
    window.WaitForPageShown(before + 1);
}

} // namespace

TEST(ViewPages, PicturesMoveUpAndDownAndAroundTheEnds)
{
    const struct {
        int count;
        Wish wish;
        int32_t position;
        const char* order;
        const char* page; // that is shown after it
    } rows[] = {
        {6, Wish::MoveUp, 1, "bacdef", "bacd"},
        {6, Wish::MoveUp, 5, "abcdfe", "fe"},
        {6, Wish::MoveUp, 4, "abcedf", "abce"},
        {6, Wish::MoveUp, 0, "fbcdea", "fbcd"}, // the first goes to the end
        {6, Wish::MoveDown, 0, "bacdef", "bacd"},
        {6, Wish::MoveDown, 3, "abcedf", "df"},
        {6, Wish::MoveDown, 5, "fbcdea", "ea"}, // the last goes to the front
        {1, Wish::MoveUp, 0, "a", "a"},
        {1, Wish::MoveDown, 0, "a", "a"},
        {2, Wish::MoveUp, 0, "ba", "ba"},
        {2, Wish::MoveUp, 2, "ab", "ab"}, // nothing is there
        {2, Wish::MoveUp, -1, "ab", "ab"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.count << ' ' << static_cast<int>(row.wish) << ' ' << row.position);
        CPagesWindow window(row.count);
        window.Do(row.wish, row.position);
        EXPECT_EQ(window.GetOrder(), QString::fromLatin1(row.order));
        EXPECT_EQ(Shown(window), QString::fromLatin1(row.page));
    }
}

TEST(ViewPages, APictureTurnsEitherWayAround)
{
    CPagesWindow window(2);
    for (const int32_t angle : {1, 2, 3, 0}) {
        window.Do(Wish::TurnRight, 1);
        EXPECT_EQ(AngleAt(window, 1), angle);
    }
    for (const int32_t angle : {3, 2, 1, 0}) {
        window.Do(Wish::TurnLeft, 1);
        EXPECT_EQ(AngleAt(window, 1), angle);
    }
    EXPECT_EQ(AngleAt(window, 0), 0);
    window.Do(Wish::TurnRight, 1);
    EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("photo2.naturalWidth")).toInt(),
              112); // 200 by 150, upright
}

TEST(ViewPages, ATurnedPictureOnAnotherPageComesIntoSight)
{
    CPagesWindow window(6);
    window.Do(Wish::TurnRight, 5);
    EXPECT_EQ(Shown(window), QStringLiteral("ef"));
}

TEST(ViewPages, ADeletedPictureLeavesThePageOfItsPlace)
{
    const struct {
        int count;
        int32_t position;
        const char* order;
        const char* page;
    } rows[] = {
        {6, 1, "acdef", "acde"}, {6, 5, "abcde", "e"},
        {5, 4, "abcd", "abcd"}, // the only one of the last page
        {1, 0, "", ""},          {2, 7, "ab", "ab"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.count << ' ' << row.position);
        CPagesWindow window(row.count);
        window.Follow("index1.html");
        window.Do(Wish::Remove, row.position);
        EXPECT_EQ(window.GetOrder(), QString::fromLatin1(row.order));
        EXPECT_EQ(Shown(window), QString::fromLatin1(row.page));
    }
}

TEST(ViewPages, TheOtherViewsHearOfEachAct)
{
    for (const Wish wish : {Wish::TurnRight, Wish::MoveUp, Wish::Remove}) {
        CPagesWindow window(6);
        window.Do(wish, 5);
        EXPECT_THAT(window.listener.causes, ElementsAre(Cause::Edited)) << static_cast<int>(wish);
        EXPECT_EQ(window.changes, 1);
    }
}

TEST(ViewPages, WhatIsTakenBackComesIntoSight)
{
    CPagesWindow window(6);
    window.Follow("index1.html");
    window.Do(Wish::Remove, 5);
    window.Follow("index.html");
    EXPECT_EQ(Shown(window), QStringLiteral("abcd"));
    window.GetDesk().GetHistory().GetStack().undo();
    Ask(window.GetPage(), QStringLiteral("1"));
    EXPECT_EQ(Shown(window), QStringLiteral("ef"));
    window.GetDesk().GetHistory().GetStack().redo();
    Ask(window.GetPage(), QStringLiteral("1"));
    EXPECT_EQ(Shown(window), QStringLiteral("e"));
}

TEST(ViewPages, AStyleIsChosenByItsPlaceAmongThoseOfTheLayout)
{
    CPagesWindow window(2);
    EXPECT_EQ(Entries(window.GetView().GetToolBar().GetStyleMenu()),
              QStringList({QStringLiteral("*Amber 5200"), QStringLiteral("Blue 5201")}));
    window.GetView().ChooseStyle(1);
    EXPECT_EQ(window.GetGallery().GetLayout().GetStyle()->name, QStringLiteral("Blue"));
    EXPECT_EQ(Entries(window.GetView().GetToolBar().GetStyleMenu()),
              QStringList({QStringLiteral("Amber 5200"), QStringLiteral("*Blue 5201")}));
    for (const int32_t place : {2, -1}) {
        window.GetView().ChooseStyle(place);
        EXPECT_EQ(window.GetGallery().GetLayout().GetStyle()->name, QStringLiteral("Blue"));
    }
}

TEST(ViewPages, ALayoutIsChosenByItsPlaceAndBringsItsStyles)
{
    CPagesWindow window(6);
    CViewPagesToolBar& toolBar = window.GetView().GetToolBar();
    EXPECT_EQ(Entries(toolBar.GetLayoutMenu()),
              QStringList({QStringLiteral("*one 5000"), QStringLiteral("two 5001")}));
    window.GetView().ChooseLayout(1);
    EXPECT_EQ(Entries(toolBar.GetLayoutMenu()),
              QStringList({QStringLiteral("one 5000"), QStringLiteral("*two 5001")}));
    // Groups compare exactly, case included.
    EXPECT_EQ(Entries(toolBar.GetStyleMenu()), QStringList({QStringLiteral("Other 5200")}));
    EXPECT_EQ(Shown(window), QStringLiteral("ab"));
    EXPECT_TRUE(window.GetPageText().startsWith(QStringLiteral("Two")));
    for (const int32_t place : {2, -1}) {
        window.GetView().ChooseLayout(place);
        EXPECT_EQ(window.GetGallery().GetLayout().GetTemplate()->GetName(), QStringLiteral("two"));
    }
}

TEST(ViewPages, AChoiceInAMenuIsAnAct)
{
    CPagesWindow window(2);
    CViewPagesToolBar& toolBar = window.GetView().GetToolBar();
    toolBar.GetLayoutMenu().actions()[1]->trigger();
    ASSERT_TRUE(WaitUntil([&] { return window.edited.size() == 1; }));
    EXPECT_EQ(window.GetGallery().GetLayout().GetTemplate()->GetName(), QStringLiteral("two"));
    toolBar.GetStyleMenu().actions()[0]->trigger();
    ASSERT_TRUE(WaitUntil([&] { return window.edited.size() == 2; }));
    EXPECT_EQ(window.edited[0].name, QStringLiteral("Choose Layout"));
    EXPECT_EQ(window.edited[1].name, QStringLiteral("Choose Style"));
    window.GetDesk().GetHistory().GetStack().undo();
    window.GetDesk().GetHistory().GetStack().undo();
    EXPECT_EQ(Entries(toolBar.GetLayoutMenu()),
              QStringList({QStringLiteral("*one 5000"), QStringLiteral("two 5001")}));
}

TEST(ViewPages, ALinkLeadsToAPageOfTheGallery)
{
    CPagesWindow window(6);
    window.Follow("index1.html");
    EXPECT_EQ(Shown(window), QStringLiteral("ef"));
    window.Follow("large2.html");
    EXPECT_EQ(Shown(window), QStringLiteral("c"));
    EXPECT_EQ(window.changes, 2); // the page is kept in the project
    EXPECT_TRUE(window.listener.causes.empty());
}

TEST(ViewPages, ALinkThatLeadsElsewhereMakesNoNewPage)
{
    CPagesWindow window(6);
    for (const char* link : {"nowhere.html", "", "http://example.org/", "mailto:a@example.org", "?", "%%%"}) {
        window.Follow(link);
    }
    EXPECT_EQ(window.GetShownCount(), 1);
    EXPECT_EQ(window.changes, 0);
}

TEST(ViewPages, ALinkToAnotherGalleryTellsAllViews)
{
    CPagesWindow window(2);
    const int32_t child = window.GetProject().AddChildGallery(window.GetProject().GetRootGalleryIndex());
    window.GetProject().SetCurrentGallery(window.GetProject().GetRootGalleryIndex());
    window.GetProject().FindGallery(child)->SetTemplate(QStringLiteral("two.xml"));
    window.Follow(qPrintable(QStringLiteral("%1/index.html").arg(child)));
    EXPECT_EQ(window.GetProject().GetCurrentGalleryIndex(), child);
    EXPECT_THAT(window.listener.causes, ElementsAre(Cause::GalleryChosen));
    EXPECT_TRUE(window.GetPageText().startsWith(QStringLiteral("Two")));
    EXPECT_EQ(Entries(window.GetView().GetToolBar().GetLayoutMenu()).last(), QStringLiteral("*two 5001"));
}

TEST(ViewPages, ALinkThatIsClickedIsFollowed)
{
    CPagesWindow window(6);
    ClickMouse(window.GetPage(), RectOf(window.GetPage(), QStringLiteral("#photo3")).center().toPoint());
    window.WaitForPageShown(2);
    EXPECT_EQ(Shown(window), QStringLiteral("c"));
}

TEST(ViewPages, AButtonOfAStripChangesTheDocument)
{
    const struct {
        int button;
        const char* order;
        int32_t angle; // of the second picture
    } rows[] = {{1, "bacd", 0}, {2, "acbd", 0}, {3, "acd", 0}, {4, "abcd", 1}, {5, "abcd", 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.button);
        CPagesWindow window(4);
        const QRectF picture = RectOf(window.GetPage(), QStringLiteral("#photo2"));
        MoveMouse(window.GetPage(), picture.center().toPoint());
        ASSERT_TRUE(
            WaitForPage(window.GetPage(), QStringLiteral("photo2_menu[0].style.display == 'inline'")));
        const QPoint button = (picture.topLeft() + QPointF(24 * row.button - 12, 12)).toPoint();
        MoveMouse(window.GetPage(), button);
        ASSERT_TRUE(WaitForPage(window.GetPage(),
                                QStringLiteral("photo2_menu[%1].style.display == 'inline'").arg(row.button)));
        ClickMouse(window.GetPage(), button);
        window.WaitForPageShown(2);
        EXPECT_EQ(window.GetOrder(), QString::fromLatin1(row.order));
        EXPECT_EQ(AngleAt(window, 1), row.angle);
    }
}

TEST(ViewPages, AnIdThatIsNoPicturesDoesNothing)
{
    CPagesWindow window(2);
    for (const char* id : {"photo9", "", "photo3", "nothing", "PHOTO"}) {
        for (const char* method : {"MoveImageUp", "MoveImageDown", "DeleteImage", "RotateImageLeft"}) {
            CallByKey(window.GetPage(),
                      QStringLiteral("external.%1('%2')").arg(QLatin1String(method), QLatin1String(id)));
        }
    }
    Send(window, "external.RotateImageRight('photo2')");
    EXPECT_EQ(window.edited.size(), 1U);
    EXPECT_EQ(window.GetOrder(), QStringLiteral("ab"));
    EXPECT_EQ(AngleAt(window, 1), 1);
}

TEST(ViewPages, AFloodOfCommandsLeavesTheProgramAtWork)
{
    CPagesWindow window(2);
    Send(window, "for (var i = 0; i < 10000; ++i) { external.RotateImageRight('photo1'); } 1");
    EXPECT_EQ(AngleAt(window, 0), 1);
    Send(window, "external.MoveImageUp('photo2')");
    EXPECT_TRUE(WaitUntil([&] { return window.GetOrder() == QStringLiteral("ba"); }));
    EXPECT_EQ(AngleAt(window, 1), 1);
}

TEST(ViewPages, EachCauseShowsWhatItConcerns)
{
    const struct {
        Cause cause;
        bool newPage;
    } rows[] = {{Cause::ProjectReplaced, true}, {Cause::ProjectRenamed, false}, {Cause::GalleryChosen, true}};
    CPagesWindow window(2);
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.cause));
        window.GetView().GetToolBar().SetTitle(QStringLiteral("old"));
        const int before = window.GetShownCount();
        window.GetView().UpdateView({.cause = row.cause}, window.GetProject());
        Ask(window.GetPage(), QStringLiteral("1"));
        EXPECT_EQ(window.GetShownCount() - before, row.newPage ? 1 : 0);
        EXPECT_NE(window.GetView().GetToolBar().GetTitle(), QStringLiteral("old"));
    }
}

TEST(ViewPages, TheScrollPlaceStaysOnThePageAndIsLeftOnAnother)
{
    CPagesWindow window(6);
    Ask(window.GetPage(), QStringLiteral("window.scrollTo(0, 200)"));
    for (const Wish wish : {Wish::TurnRight, Wish::MoveUp}) {
        window.Do(wish, 2);
        EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("scrollY")).toInt(), 200) << static_cast<int>(wish);
    }
    window.Follow("index1.html");
    EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("scrollY")).toInt(), 0);
}

TEST(ViewPages, ABrokenLayoutShowsItsErrorUntilItIsMended)
{
    CPagesWindow window(2);
    const QString file = QStringLiteral("program/Templates/one/index.html");
    const QByteArray good = window.fixture.scratch.Read(file);
    window.fixture.scratch.Write(file, "line 1\nline 2 <%nonsense%> & more");
    window.ShowAnew();
    const QString text = window.GetPageText();
    EXPECT_TRUE(text.contains(QStringLiteral("Error occured during layout loading:"))) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("Unknown template section 'nonsense'.")));
    EXPECT_TRUE(text.contains(window.fixture.scratch.Path(file)));
    EXPECT_FALSE(text.contains(QStringLiteral("<%pageheader")));
    // No command finds a picture there.
    CallByKey(window.GetPage(), QStringLiteral("external.DeleteImage('photo1')"));
    window.fixture.scratch.Write(file, good);
    window.ShowAnew();
    EXPECT_EQ(Shown(window), QStringLiteral("ab"));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(ViewPages, ALayoutThatFailsAtItsEvaluationShowsItsErrorToo)
{
    CPagesWindow window(2);
    window.fixture.WritePage(QStringLiteral("one"), QStringLiteral("index.html"),
                             "<%textspan property=\"nopoint\" default=\"x\" name=\"y\"%>");
    window.ShowAnew();
    EXPECT_TRUE(window.GetPageText().contains(QStringLiteral("Error occured during layout loading:")));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(ViewPages, APageFileThatIsGoneIsNamed)
{
    CPagesWindow window(2);
    const QString path = window.fixture.scratch.Path(QStringLiteral("program/Templates/one/index.html"));
    ASSERT_TRUE(QFile::remove(path));
    window.ShowAnew();
    EXPECT_TRUE(window.GetPageText().contains(QStringLiteral("Could not open file ") + path))
        << qPrintable(window.GetPageText());
}

// Which page shows a picture can't be told without the file. What was asked for is done all the same.
TEST(ViewPages, APageFileThatGoesAwayIsNamedAfterAnyChange)
{
    for (const Wish wish : {Wish::TurnRight, Wish::TurnLeft, Wish::MoveUp, Wish::MoveDown, Wish::Remove}) {
        CPagesWindow window(3);
        const QString path = window.fixture.scratch.Path(QStringLiteral("program/Templates/one/index.html"));
        ASSERT_TRUE(QFile::remove(path));
        window.Do(wish, 1);
        EXPECT_TRUE(window.GetPageText().contains(path)) << static_cast<int>(wish);
        EXPECT_TRUE(AngleAt(window, 1) != 0 || window.GetOrder() != QStringLiteral("abc"));
        EXPECT_EQ(window.edited.size(), 1U);
    }
}

TEST(ViewPages, ALinkToAGalleryWithoutItsPageFileShowsWhatIsWrong)
{
    CPagesWindow window(2);
    const int32_t child = window.GetProject().AddChildGallery(window.GetGallery().GetIndex());
    window.GetProject().FindGallery(child)->SetTemplate(QStringLiteral("two.xml"));
    const QString path = window.fixture.scratch.Path(QStringLiteral("program/Templates/two/index.html"));
    ASSERT_TRUE(QFile::remove(path));
    window.Follow(qPrintable(QStringLiteral("../%1/index.html").arg(child)));
    EXPECT_EQ(window.GetProject().GetCurrentGalleryIndex(), child);
    EXPECT_TRUE(window.GetPageText().contains(path)) << qPrintable(window.GetPageText());
}

TEST(ViewPages, ALayoutThatCannotBeChosenSaysWhyAndChangesNothing)
{
    CPagesWindow window(2);
    ASSERT_TRUE(
        QFile::remove(window.fixture.scratch.Path(QStringLiteral("program/Templates/two/index.html"))));
    window.GetView().ChooseLayout(1);
    EXPECT_TRUE(window.GetPageText().contains(QStringLiteral("two/index.html")))
        << qPrintable(window.GetPageText());
    EXPECT_EQ(window.GetGallery().GetLayout().GetTemplate()->GetName(), QStringLiteral("one"));
    EXPECT_EQ(Entries(window.GetView().GetToolBar().GetLayoutMenu()).first(), QStringLiteral("*one 5000"));
    window.ShowAnew();
    EXPECT_EQ(Shown(window), QStringLiteral("ab"));
}

TEST(ViewPages, APictureWithoutItsFileLeavesTheOthersOnThePage)
{
    CPagesWindow window(3);
    window.GetGallery().AppendPicture(window.fixture.scratch.Write(QStringLiteral("photos/x.png"), "broken"),
                                      0);
    window.ShowAnew();
    EXPECT_EQ(Shown(window), QStringLiteral("abcx"));
    EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("photo1.naturalWidth + photo4.naturalWidth")).toInt(),
              200);
    // And it can be taken out.
    Send(window, "external.DeleteImage('photo4')");
    EXPECT_EQ(window.GetOrder(), QStringLiteral("abc"));
}

// A disk that isn't connected, say.
TEST(ViewPages, APictureThatIsNotThereIsACardThatCanOnlyBeFoundMovedAndTakenOut)
{
    CPagesWindow window(3);
    const QString path = window.GetGallery().GetPictures().GetAt(1)->GetPath();
    ASSERT_TRUE(QFile::remove(path));
    window.ShowAnew();
    EXPECT_EQ(Shown(window), QStringLiteral("abc"));
    EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("[photo2.naturalWidth, photo2.naturalHeight].join()"))
                  .toString(),
              QStringLiteral("200,150"));
    const auto tips = [&](const char* id) {
        return Ask(window.GetPage(),
                   QStringLiteral(
                       "[...document.images].filter(i => i.id == '%1_menu').map(i => i.alt).join('|')")
                       .arg(QLatin1String(id)))
            .toString();
    };
    EXPECT_EQ(tips("photo2"), QStringLiteral("|Find...|Move up|Move down|Delete"));
    EXPECT_EQ(tips("photo1"),
              QStringLiteral("|Move up|Move down|Delete|Rotate clockwise|Rotate counter-clockwise"));
    EXPECT_EQ(
        Ask(window.GetPage(), QStringLiteral("document.querySelectorAll('.preview-missing').length")).toInt(),
        0);
    CallByKey(window.GetPage(), QStringLiteral("external.FindImage('photo2')"));
    EXPECT_TRUE(WaitUntil([&] { return window.sought == QStringList(path); }));
    Send(window, "external.DeleteImage('photo2')");
    EXPECT_EQ(window.GetOrder(), QStringLiteral("ac"));
}

TEST(ViewPages, ABarSaysHowManyPicturesAreNotThereAndLeadsToTheFirst)
{
    CPagesWindow window(6);
    auto* const bar = window.GetView().findChild<QWidget*>(QStringLiteral("AbsentBar"));
    ASSERT_NE(bar, nullptr);
    EXPECT_FALSE(bar->isVisible());
    const int32_t child = window.GetProject().AddChildGallery(window.GetGallery().GetIndex());
    const auto lose = [&](int32_t gallery, int32_t position) {
        auto* const picture = dynamic_cast<CFilePictureInfo*>(
            window.GetProject().FindGallery(gallery)->GetPictures().GetAt(position));
        ASSERT_NE(picture, nullptr);
        picture->SetState({});
    };
    const auto says = [&] {
        return bar->findChild<QLabel*>()->text();
    };
    lose(0, 5);
    window.ShowAnew();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(says(), QStringLiteral("One picture is not there."));
    window.GetProject().FindGallery(child)->AppendPicture(
        window.fixture.WritePicture(QStringLiteral("x.png")), 0);
    lose(child, 0);
    window.GetDesk().ChooseGallery(child);
    EXPECT_EQ(says(), QStringLiteral("2 pictures are not there."));
    bar->findChild<QPushButton*>(QStringLiteral("findAbsent"))->click();
    EXPECT_EQ(window.searches, 1);
    bar->findChild<QPushButton*>(QStringLiteral("showAbsent"))->click();
    EXPECT_TRUE(WaitForPage(window.GetPage(),
                            QStringLiteral("document.querySelectorAll('img[data-absent]').length == 1")));
    EXPECT_EQ(window.GetProject().GetCurrentGalleryIndex(), 0);
    EXPECT_EQ(window.GetGallery().GetLayout().GetPageNumber(), 1);
    EXPECT_THAT(window.listener.causes, ElementsAre(Cause::GalleryChosen, Cause::GalleryChosen));
}

TEST(ViewPages, AProjectThatIsNotLoadedShowsNothingAndTakesNoCommand)
{
    CPagesWindow window(2);
    window.GetProject().Clear();
    window.ShowAnew();
    EXPECT_EQ(window.GetPageText(), QString());
    EXPECT_TRUE(window.GetView().GetToolBar().GetLayoutMenu().isEmpty());
    CallByKey(window.GetPage(), QStringLiteral("external.DeleteImage('photo1')"));
    CallByKey(window.GetPage(), QStringLiteral("external.EditReference('a','b.c','d')"));
    window.Do(Wish::MoveUp, 0);
    window.GetView().ChooseLayout(0);
}

TEST(ViewPages, TheToolBarTakesTheDocumentCommands)
{
    CPagesWindow window(1);
    CViewPagesToolBar& toolBar = window.GetView().GetToolBar();
    QAction open(QStringLiteral("Open"), &window.GetView());
    open.setObjectName(QStringLiteral("OpenProject"));
    QAction save(QStringLiteral("Save"), &window.GetView());
    toolBar.AddDocumentCommands({&open, &save, nullptr});
    EXPECT_EQ(toolBar.actions()[0], &open);
    EXPECT_EQ(toolBar.actions()[1], &save);
    toolBar.SetRecentProjects({{QStringLiteral("Alps & Lakes"), 1}, {QStringLiteral("Now"), 0}});
    QMenu* const recent = qobject_cast<QToolButton*>(toolBar.widgetForAction(&open))->menu();
    EXPECT_EQ(Entries(*recent),
              QStringList({QStringLiteral("Alps && Lakes 57602"), QStringLiteral("*Now 57601")}));
    recent->actions()[0]->trigger();
    EXPECT_TRUE(WaitUntil([&] { return window.recent == 1; }));
}
