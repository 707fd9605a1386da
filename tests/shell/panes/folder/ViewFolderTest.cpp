#include "shell/panes/folder/ViewFolder.h"

#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
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
        view = std::make_unique<CViewFolder>(
            CViewFolder::Services{.notify =
                                      [this](ViewId, UpdateHint hint, const UpdateParameter& parameter) {
                                          notifications.push_back(hint);
                                          if (takesNotifications) {
                                              view->UpdateProject(hint, parameter, fixture.GetProject());
                                          }
                                      },
                                  .browser = {}});
        view->AddConsumer(*view);
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
        Update(UpdateHint::ProjectReplaced);
    }
    void Update(UpdateHint hint)
    {
        const auto readyBefore = CountOf(UpdateHint::FolderReady);
        view->UpdateView(hint, fixture.GetProject());
        ASSERT_TRUE(
            WaitUntil([&] { return CountOf(UpdateHint::FolderReady) > readyBefore && view->IsLoaded(); }));
        Ask(view->GetHTMLView(), QStringLiteral("1"));
    }
    long CountOf(UpdateHint hint) const
    {
        return std::count(notifications.begin(), notifications.end(), hint);
    }
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
    std::vector<UpdateHint> notifications;
    bool takesNotifications = true;
    int shownCount = 0;
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
    view->UpdateView(UpdateHint::ProjectReplaced, fixture.GetProject());
    EXPECT_TRUE(PageText().contains(QStringLiteral("Choose a folder with pictures")));
}

TEST_F(ViewFolder, AnotherFolderEntersTheProjectAndTheSameOneDoesNot)
{
    Open("one");
    view->SetFolder(Folder("one/"));
    EXPECT_EQ(CountOf(UpdateHint::FolderChosen), 0);
    view->SetFolder(Folder("two"));
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::FolderReady) == 2; }));
    EXPECT_EQ(CountOf(UpdateHint::FolderChosen), 1);
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
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::PicturesAdded) == 1; }));
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetCount(), 4);
    view->SetFolder(Folder("ONE"));
    EXPECT_TRUE(WaitForPage(view->GetHTMLView(),
                            QStringLiteral("document.body.innerText.includes('( 1 picture )')")));
    EXPECT_EQ(fixture.GetProject().GetRecentFolder(), Folder("ONE"));
}

TEST_F(ViewFolder, AddsOnePictureAndTellsOfTheCover)
{
    Open("one");
    view->AddImage(QStringLiteral("i1"));
    // Not inside the call of a page's script.
    EXPECT_EQ(GalleryNames(), QString());
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::CoverChanged) == 1; }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    // It is gone from the list: a second click, which was under way, does nothing.
    view->AddImage(QStringLiteral("i1"));
    view->LoadURL(QStringLiteral("addpicture1"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    EXPECT_EQ(CountOf(UpdateHint::PictureAdded), 1);
}

TEST_F(ViewFolder, AddsAllPicturesInOrderThatAreNotThereYet)
{
    fixture.GetRoot().AppendPicture(Folder("one/b.jpg"), 0);
    Open("one");
    EXPECT_EQ(Heading(), QStringLiteral("one ( 3 pictures )"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    view->AddAllImages();
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::FolderReady) == 2; }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg a.jpg c.jpg"));
    EXPECT_EQ(Rows(), QString());
    view->AddAllImages();
    Ask(view->GetHTMLView(), QStringLiteral("1"));
    EXPECT_EQ(CountOf(UpdateHint::PicturesAdded), 1);
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
    Ask(view->GetHTMLView(), QStringLiteral("1"));
    EXPECT_EQ(CountOf(UpdateHint::PictureAdded), 0);
    view->LoadURL(QStringLiteral("addpicture2"));
    EXPECT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::PictureAdded) == 1; }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("c.jpg"));
}

TEST_F(ViewFolder, ARemovedPictureShowsAgain)
{
    fixture.GetRoot().AppendPicture(Folder("one/b.jpg"), 0);
    Open("one");
    EXPECT_EQ(Rows(), QStringLiteral("i0 i2"));
    fixture.GetRoot().RemovePicture(0);
    Update(UpdateHint::PictureRemoved);
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
}

TEST_F(ViewFolder, ListsAnewOnTheHintsThatConcernItAndOnNoOthers)
{
    Open("one");
    for (const UpdateHint hint :
         {UpdateHint::ProjectReplaced, UpdateHint::FolderChosen, UpdateHint::PicturesAdded,
          UpdateHint::PictureRemoved, UpdateHint::GalleryChosen}) {
        Update(hint);
    }
    const auto ready = CountOf(UpdateHint::FolderReady);
    const int shown = shownCount;
    for (const UpdateHint hint :
         {UpdateHint::PictureAdded, UpdateHint::CoverChanged, UpdateHint::TextEdited, UpdateHint::StyleChosen,
          UpdateHint::PictureMovedUp, UpdateHint::FolderReady}) {
        view->UpdateView(hint, fixture.GetProject());
    }
    Ask(view->GetHTMLView(), QStringLiteral("1"));
    EXPECT_EQ(CountOf(UpdateHint::FolderReady), ready);
    EXPECT_EQ(shownCount, shown);
}

// The answer of an earlier request comes when another folder has been chosen.
TEST_F(ViewFolder, AnAnswerThatComesTooLateIsDropped)
{
    Open("one");
    takesNotifications = false;
    view->UpdateView(UpdateHint::PictureRemoved, fixture.GetProject());
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::FolderReady) == 2; }));
    const int shown = shownCount;
    view->SetFolder(Folder("two"));
    view->UpdateView(UpdateHint::FolderReady, fixture.GetProject()); // before the hint of the other folder
    Ask(view->GetHTMLView(), QStringLiteral("1"));
    EXPECT_EQ(shownCount, shown);
    EXPECT_EQ(Heading(), QStringLiteral("one ( 3 pictures )"));
    view->UpdateView(UpdateHint::FolderChosen, fixture.GetProject());
    view->UpdateView(UpdateHint::FolderReady, fixture.GetProject()); // after it
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::FolderReady) == 3; }));
    view->UpdateView(UpdateHint::FolderReady, fixture.GetProject());
    ASSERT_TRUE(WaitForPage(view->GetHTMLView(),
                            QStringLiteral("document.body.innerText.includes('( 1 picture )')")));
    EXPECT_EQ(Heading(), QStringLiteral("two ( 1 picture )"));
}

TEST_F(ViewFolder, TheOldListCanBeUsedWhileTheSameFolderIsListedAnew)
{
    Open("one");
    takesNotifications = false;
    view->UpdateView(UpdateHint::GalleryChosen, fixture.GetProject());
    EXPECT_TRUE(view->IsLoaded());
    view->AddImage(QStringLiteral("i2"));
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::PictureAdded) == 1; }));
    // Meanwhile a picture has come before it.
    takesNotifications = true;
    Add("one/0.jpg");
    Update(UpdateHint::GalleryChosen);
    view->UpdateProject(UpdateHint::PictureAdded, int32_t{2}, fixture.GetProject());
    EXPECT_EQ(GalleryNames(), QStringLiteral("c.jpg"));
    EXPECT_EQ(Rows(), QStringLiteral("i0 i1 i2"));
}

TEST_F(ViewFolder, NothingCanBeAddedWhileAnotherFolderIsLoading)
{
    Open("one");
    view->SetFolder(Folder("two"));
    view->UpdateView(UpdateHint::FolderChosen, fixture.GetProject());
    EXPECT_FALSE(view->IsLoaded());
    view->AddImage(QStringLiteral("i0"));
    view->AddAllImages();
    ASSERT_TRUE(WaitUntil([&] { return view->IsLoaded(); }));
    EXPECT_EQ(CountOf(UpdateHint::PictureAdded) + CountOf(UpdateHint::PicturesAdded), 0);
}

TEST_F(ViewFolder, AnIndexFromElsewhereIsAddedOrIgnored)
{
    Open("one");
    view->UpdateProject(UpdateHint::PictureAdded, int32_t{0}, fixture.GetProject());
    view->UpdateProject(UpdateHint::PictureAdded, int32_t{7}, fixture.GetProject());
    view->UpdateProject(UpdateHint::PictureAdded, int32_t{-1}, fixture.GetProject());
    view->UpdateProject(UpdateHint::PictureAdded, {}, fixture.GetProject());
    EXPECT_EQ(GalleryNames(), QStringLiteral("a.jpg"));
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
    view->UpdateView(UpdateHint::ProjectReplaced, fixture.GetProject());
    EXPECT_FALSE(view->IsLoaded());
    view.reset();
    // Whatever was under way tells nobody any more.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(CountOf(UpdateHint::FolderReady), 0);
}

TEST_F(ViewFolder, ADraggedPictureIsAddedThoughTheListHasChangedMeanwhile)
{
    Open("one");
    Add("one/0.jpg"); // comes before all others
    Update(UpdateHint::GalleryChosen);
    view->AddPictureAt(1, Folder("one/b.jpg"));
    ASSERT_TRUE(WaitUntil([&] { return CountOf(UpdateHint::CoverChanged) == 1; }));
    EXPECT_EQ(GalleryNames(), QStringLiteral("b.jpg"));
    view->AddPictureAt(0, Folder("one/gone.jpg"));
    Ask(view->GetHTMLView(), QStringLiteral("1"));
    EXPECT_EQ(CountOf(UpdateHint::PictureAdded), 1);
}
