#include "shell/panes/folder/ViewFolder.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"
#include "shell/frame/EditingDesk.h"
#include "shell_support/ViewWindow.h"
#include "support/ProjectFixture.h"

// The folder view over a real project: what it asks for is done as the frame does it, and noted.

namespace {

class ViewFolder : public testing::Test {
protected:
    ViewFolder()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                          "<%picture id=\"p\" width=\"9\" height=\"9\" href=\"\"%>");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
        fixture.GetRoot().SetTemplate(QStringLiteral("a.xml"));
        for (const char* name : {"one/a.jpg", "one/b.jpg", "one/c.jpg", "two/d.jpg"}) {
            Add(name);
        }
        desk = std::make_unique<CEditingDesk>(fixture.GetProject(),
                                              CEditingDesk::Listener{.changed = [this] { ++changes; },
                                                                     .edited =
                                                                         [this](const Edited& what) {
                                                                             edited.push_back(what);
                                                                         }});
        view = std::make_unique<CViewFolder>(CViewFolder::Services{.desk = *desk, .browser = {}});
        desk->AddView(*view);
        view->GetHTMLView().SetShownCallback([this] { ++shownCount; });
        view->resize(340, 500);
        view->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    }

    QString Folder(const char* name) const
    {
        return fixture.scratch.Path(QStringLiteral("photos/") + QString::fromLatin1(name));
    }
    QString Add(const char* name)
    {
        MakeDirectoryPath(ExtractFolder(Folder(name)));
        return fixture.WritePicture(QString::fromLatin1(name));
    }
    // Opens the project with that folder, and waits for its list.
    void Open(const char* folder)
    {
        fixture.GetProject().AddFolder(Folder(folder));
        fixture.GetProject().SetRecentFolder(Folder(folder));
        Update(ViewUpdate::Cause::ProjectReplaced);
    }
    void Update(ViewUpdate::Cause cause)
    {
        const int before = shownCount;
        view->UpdateView({.cause = cause}, fixture.GetProject());
        WaitForList(before);
    }
    void WaitForList(int shownBefore)
    {
        ASSERT_TRUE(WaitUntil([&] { return shownCount > shownBefore && view->IsLoaded(); }));
        Ask(view->GetHTMLView(), QStringLiteral("1"));
    }
    // Only what has been asked of the page by now.
    void Settle() { Ask(view->GetHTMLView(), QStringLiteral("1")); }
    // The middle of a row's picture, in the view.
    QPoint PlaceOf(const char* id)
    {
        return RectOf(view->GetHTMLView(), QLatin1Char('#') + QString::fromLatin1(id)).center().toPoint();
    }
    static QString MarkCount(int count)
    {
        return QStringLiteral("document.querySelectorAll('.preview-selected').length == %1").arg(count);
    }
    QUndoStack& Steps() { return desk->GetHistory().GetStack(); }
    QString PageText()
    {
        return Ask(view->GetHTMLView(), QStringLiteral("document.body.innerText")).toString();
    }
    QString Heading() { return PageText().section(QLatin1Char('\n'), 0, 0).trimmed(); }
    // The ids of the rows that show.
    QString Rows()
    {
        return Ask(view->GetHTMLView(),
                   QStringLiteral("[...document.querySelectorAll('td a img')].filter(i => i.offsetHeight)"
                                  ".map(i => i.id).join(' ')"))
            .toString();
    }
    QString GalleryNames()
    {
        QStringList names;
        for (int32_t i = 0; i < fixture.GetRoot().GetPictures().GetCount(); ++i) {
            names += ExtractLastName(fixture.GetRoot().GetPictures().GetAt(i)->GetPath());
        }
        return names.join(QLatin1Char(' '));
    }

    CProjectFixture fixture;
    std::vector<Edited> edited;
    int changes = 0; // that are to be saved
    int shownCount = 0;
    std::unique_ptr<CEditingDesk> desk;
    std::unique_ptr<CViewFolder> view;
};

} // namespace

TEST_F(ViewFolder, ShowsTheFolderOfTheProject)
{
    Open("one");
    EXPECT_EQ(view->GetFolder(), Folder("one"));
    EXPECT_EQ(view->GetToolBar().GetTitle(), QStringLiteral("one"));
    EXPECT_EQ(Heading(), QStringLiteral("one ( 3 pictures )"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
}

TEST_F(ViewFolder, AProjectWithoutAFolderSaysSo)
{
    fixture.GetProject().SetRecentFolder(QString());
    view->UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, fixture.GetProject());
    EXPECT_TRUE(PageText().contains(QStringLiteral("Choose a folder with pictures")));
}

TEST_F(ViewFolder, AnotherFolderEntersTheProjectAndTheSameOneDoesNot)
{
    Open("one");
    view->SetFolder(Folder("one/"));
    EXPECT_EQ(changes, 0);
    const int before = shownCount;
    view->SetFolder(Folder("two"));
    WaitForList(before);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(fixture.GetProject().GetRecentFolder(), Folder("two"));
    EXPECT_EQ(fixture.GetProject().GetFolders().back(), Folder("two"));
    EXPECT_EQ(Heading(), QStringLiteral("two ( 1 picture )"));
}

// Letters count: "Photos" and "photos" are two folders, "A.jpg" and "a.jpg" two pictures.
TEST_F(ViewFolder, NamesThatDifferInCapitalsAreTwo)
{
    Add("ONE/e.jpg");
    Add("one/A.jpg");
    fixture.GetRoot().AppendPicture(Folder("one/a.jpg"), 0);
    Open("one");
    EXPECT_EQ(Heading(), QStringLiteral("one ( 4 pictures )"));
    EXPECT_EQ(Rows().split(QLatin1Char(' ')).size(), 3);
    view->AddAllImages();
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetCount(), 4);
    view->SetFolder(Folder("ONE"));
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(),
                            QStringLiteral("document.body.innerText.includes('( 1 picture )')")));
    EXPECT_EQ(fixture.GetProject().GetRecentFolder(), Folder("ONE"));
}

TEST_F(ViewFolder, AddsOnePictureAndItsRowGoes)
{
    Open("one");
    view->AddImage(QStringLiteral("i1"));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    // It is gone from the list: a second click, which was under way, does nothing.
    view->AddImage(QStringLiteral("i1"));
    view->LoadURL(QStringLiteral("addpicture1"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    EXPECT_EQ(edited.size(), 1U);
}

TEST_F(ViewFolder, AddsAllPicturesInOrderThatAreNotThereYet)
{
    fixture.GetRoot().AppendPicture(Folder("one/b.jpg"), 0);
    Open("one");
    EXPECT_EQ(Heading(), QStringLiteral("one ( 3 pictures )"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    view->AddAllImages();
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg a.jpg c.jpg"));
    EXPECT_EQ(Rows(), QString());
    view->AddAllImages();
    EXPECT_EQ(edited.size(), 1U);
}

TEST_F(ViewFolder, WhatIsTakenBackShowsAgain)
{
    Open("one");
    view->AddImage(QStringLiteral("i1"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    int before = shownCount;
    Steps().undo();
    WaitForList(before);
    EXPECT_EQ(GalleryNames(), QString());
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
    Steps().redo();
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
}

TEST_F(ViewFolder, LinksAndIdsThatItDoesNotKnowDoNothing)
{
    Open("one");
    for (const char* url : {"addpicture", "addpicture9", "addpicture-1", "addpicturex", "index.html", ""}) {
        view->LoadURL(QString::fromLatin1(url));
    }
    for (const char* id : {"", "i", "x1", "i99", "i-1", "i1x", "photo1"}) {
        view->AddImage(QString::fromLatin1(id));
        view->DragImage(QString::fromLatin1(id), QString());
    }
    Settle();
    EXPECT_TRUE(edited.empty());
    view->LoadURL(QStringLiteral("addpicture2"));
    EXPECT_EQ(GalleryNames(), QStringLiteral("c.jpg"));
}

TEST_F(ViewFolder, ARemovedPictureShowsAgain)
{
    fixture.GetRoot().AppendPicture(Folder("one/b.jpg"), 0);
    Open("one");
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    const int before = shownCount;
    desk->Do(RemovePictures(fixture.GetProject(), 0, {0}));
    WaitForList(before);
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
}

TEST_F(ViewFolder, PicturesThatDifferInCapitalsAreTwo)
{
    Add("one/A.jpg");
    fixture.GetRoot().AppendPicture(Folder("one/a.jpg"), 0);
    Open("one");
    EXPECT_EQ(Heading(), QStringLiteral("one ( 4 pictures )"));
    EXPECT_EQ(Rows().split(QLatin1Char(' ')).size(), 3);
    view->AddAllImages();
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetCount(), 4);
}

TEST_F(ViewFolder, ListsAnewForWhatConcernsItAndForNothingElse)
{
    Open("one");
    Update(ViewUpdate::Cause::GalleryChosen);
    Update(ViewUpdate::Cause::ProjectReplaced);
    desk->Do(AddPictures(0, {Folder("two/d.jpg")}));
    Settle();
    const int shown = shownCount;
    view->UpdateView({.cause = ViewUpdate::Cause::ProjectRenamed}, fixture.GetProject());
    desk->Do(TurnPictures(0, {0}, true));
    desk->Do(RenameGallery(0, QStringLiteral("Sea")));
    Settle();
    EXPECT_EQ(shownCount, shown);
}

// The answer of an earlier request comes when another folder has been chosen.
TEST_F(ViewFolder, AnAnswerThatComesTooLateIsDropped)
{
    Open("one");
    const int before = shownCount;
    view->UpdateView({.cause = ViewUpdate::Cause::GalleryChosen}, fixture.GetProject());
    view->SetFolder(Folder("two"));
    WaitForList(before);
    EXPECT_EQ(Heading(), QStringLiteral("two ( 1 picture )"));
}

TEST_F(ViewFolder, TheOldListCanBeUsedWhileTheSameFolderIsListedAnew)
{
    Open("one");
    // Meanwhile a picture has come before it.
    Add("one/0.jpg");
    const int before = shownCount;
    view->UpdateView({.cause = ViewUpdate::Cause::GalleryChosen}, fixture.GetProject());
    EXPECT_TRUE(view->IsLoaded());
    view->AddImage(QStringLiteral("i2"));
    EXPECT_EQ(GalleryNames(), QStringLiteral("c.jpg"));
    WaitForList(before);
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
}

TEST_F(ViewFolder, NothingCanBeAddedWhileAnotherFolderIsLoading)
{
    Open("one");
    view->SetFolder(Folder("two"));
    EXPECT_FALSE(view->IsLoaded());
    view->AddImage(QStringLiteral("i0"));
    view->AddAllImages();
    ASSERT_TRUE(WaitUntil([&] { return view->IsLoaded(); }));
    EXPECT_TRUE(edited.empty());
}

TEST_F(ViewFolder, CardsAreMadeAnewForAnotherWidth)
{
    Open("one");
    const QString width = QStringLiteral("document.getElementById('i0').naturalWidth");
    EXPECT_EQ(Ask(view->GetHTMLView(), width).toInt(), 300);
    view->resize(440, 500);
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(), width + QStringLiteral(" == 400")));
}

TEST_F(ViewFolder, EndsInTheMiddleOfItsWork)
{
    for (int i = 0; i < 40; ++i) {
        Add(QStringLiteral("many/%1.jpg").arg(i).toUtf8().constData());
    }
    fixture.GetProject().AddFolder(Folder("many"));
    fixture.GetProject().SetRecentFolder(Folder("many"));
    view->UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, fixture.GetProject());
    EXPECT_FALSE(view->IsLoaded());
    view.reset(); // the desk has no more to tell it
    // Whatever was under way tells nobody any more.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_TRUE(edited.empty());
}

// --- Selected pictures.

TEST_F(ViewFolder, SelectedPicturesAreAddedTogether)
{
    Open("one");
    view->Select(QStringLiteral("i2"), QStringLiteral("only"));
    view->Select(QStringLiteral("i0"), QStringLiteral("toggle"));
    EXPECT_EQ(view->GetSelectedPaths(), (QStringList{Folder("one/a.jpg"), Folder("one/c.jpg")}));
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(), MarkCount(2)));
    EXPECT_TRUE(view->findChild<QWidget*>(QStringLiteral("SelectionBar"))->isVisible());
    view->AddSelected();
    EXPECT_EQ(GalleryNames(), QStringLiteral("a.jpg c.jpg"));
    EXPECT_EQ(Steps().undoText(), QStringLiteral("Add 2 Pictures"));
    EXPECT_TRUE(view->GetSelectedPaths().isEmpty());
    EXPECT_FALSE(view->findChild<QWidget*>(QStringLiteral("SelectionBar"))->isVisible());
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(), MarkCount(0)));
}

TEST_F(ViewFolder, AListWithoutRowsSaysWhy)
{
    Open("one");
    view->AddAllImages();
    EXPECT_EQ(GalleryNames(), QStringLiteral("a.jpg b.jpg c.jpg"));
    EXPECT_TRUE(WaitForPage(
        view->GetHTMLView(),
        QStringLiteral("document.body.innerText.includes('All pictures of this folder are in')")));
}

TEST_F(ViewFolder, TwoClicksTakeThePictureAndThoseThatAreSelectedWithIt)
{
    Open("one");
    view->TakeSelected(QStringLiteral("i1"));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
    view->SelectAll();
    view->TakeSelected(QStringLiteral("i2"));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg a.jpg c.jpg"));
    view->TakeSelected(QStringLiteral("i2"));
    view->TakeSelected(QStringLiteral("x"));
    EXPECT_EQ(edited.size(), 2U);
}

TEST_F(ViewFolder, ASelectionOutlivesANewListOfTheSameFolder)
{
    Open("one");
    view->Select(QStringLiteral("i1\ni2"), QStringLiteral("these"));
    Add("one/0.jpg"); // comes before all others
    Update(ViewUpdate::Cause::GalleryChosen);
    EXPECT_EQ(view->GetSelectedPaths(), (QStringList{Folder("one/b.jpg"), Folder("one/c.jpg")}));
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(), MarkCount(2)));
    view->SetFolder(Folder("two"));
    EXPECT_TRUE(view->GetSelectedPaths().isEmpty());
}

TEST_F(ViewFolder, ClicksSelectAndTheMenuIsThatOfTheSelection)
{
    Open("one");
    QMenu* const menu = view->findChild<QMenu*>(QStringLiteral("FolderPictureMenu"));
    QAction add(QStringLiteral("Add"));
    view->SetPictureCommands({&add}, {&add});
    CHTMLView& page = view->GetHTMLView();
    ClickMouse(page, PlaceOf("i1"));
    ASSERT_TRUE(WaitUntil([&] { return view->GetSelectedPaths() == QStringList{Folder("one/b.jpg")}; }));
    ClickMouse(page, PlaceOf("i0"), Qt::ShiftModifier);
    ASSERT_TRUE(WaitUntil([&] { return view->GetSelectedPaths().size() == 2; }));
    ClickMouse(page, PlaceOf("i1"), Qt::NoModifier, Qt::RightButton);
    ASSERT_TRUE(WaitUntil([&] { return menu->isVisible(); }));
    EXPECT_TRUE(menu->actions().contains(&add));
    EXPECT_EQ(view->GetSelectedPaths().size(), 2);
    menu->close();
    EXPECT_TRUE(edited.empty());
}

TEST_F(ViewFolder, TwoClicksAddAPictureAndOneDoesNot)
{
    Open("one");
    ClickMouse(view->GetHTMLView(), PlaceOf("i0"));
    ASSERT_TRUE(WaitUntil([&] { return !view->GetSelectedPaths().isEmpty(); }));
    EXPECT_TRUE(edited.empty());
    DoubleClickMouse(view->GetHTMLView(), PlaceOf("i1"));
    ASSERT_TRUE(WaitUntil([&] { return !edited.empty(); }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
}

TEST_F(ViewFolder, KeysSelectAndAdd)
{
    Open("one");
    CHTMLView& page = view->GetHTMLView();
    Ask(page, QStringLiteral("document.querySelector('a').focus()"));
    PressKey(page, Qt::Key_Space);
    ASSERT_TRUE(WaitUntil([&] { return view->GetSelectedPaths() == QStringList{Folder("one/a.jpg")}; }));
    PressKey(page, Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_TRUE(WaitUntil([&] { return view->GetSelectedPaths().size() == 2; }));
    PressKey(page, Qt::Key_Escape);
    ASSERT_TRUE(WaitUntil([&] { return view->GetSelectedPaths().isEmpty(); }));
    PressKey(page, Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return !edited.empty(); }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
}
