#include "shell/frame/MainFrame.h"

#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include "MainFrameFixture.h"
#include "common/FileSystem.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell_support/DialogTools.h"
#include "shell_support/ViewWindow.h"

using MainFrame = CMainFrameFixture;

TEST_F(MainFrame, TheTitleIsTheProjectsName)
{
    Start(Path("Trip to the sea.2024.gallery"));
    EXPECT_EQ(frame->windowTitle(), QStringLiteral("Vistorama - Trip to the sea"));
    EXPECT_EQ(RecentNames(),
              (QStringList{QStringLiteral("Trip to the sea.2024"), QStringLiteral("My Vistorama")}));
}

TEST_F(MainFrame, DroppedPicturesAndFoldersGoIntoTheCurrentGallery)
{
    Start(Path("a.gallery"));
    const QString one = fixture.WritePicture(QStringLiteral("one.jpg"));
    MakeDirectoryPath(Path("photos/more"));
    const QString deep = fixture.WritePicture(QStringLiteral("more/deep.png"));
    frame->AddDropped({one, ExtractFolder(deep), Path("nothing.txt"), one});
    EXPECT_EQ(frame->GetProject().GetCurrentGallery()->GetPictures().GetCount(), 2);
    frame->AddDropped({});
    EXPECT_EQ(frame->GetProject().GetCurrentGallery()->GetPictures().GetCount(), 2);
}

TEST_F(MainFrame, FilesDroppedOnACoverGoIntoItsGallery)
{
    Start(Path("a.gallery"));
    CGalleryProject& project = frame->GetProject();
    const int32_t child = project.AddChildGallery(-1);
    MakeDirectoryPath(Path("photos/more"));
    const QString one = fixture.WritePicture(QStringLiteral("one.jpg"));
    fixture.WritePicture(QStringLiteral("more/deep.png"));
    const QString cover = project.FindGallery(child)->GetCover().GetName();
    frame->AddDropped({one, Path("photos/more"), Path("nothing.txt")}, child);
    EXPECT_EQ(project.FindGallery(child)->GetPictures().GetCount(), 2);
    EXPECT_EQ(project.GetRootGallery()->GetPictures().GetCount(), 1); // the child
    EXPECT_NE(project.FindGallery(child)->GetCover().GetName(), cover);
    EXPECT_EQ(project.GetCurrentGallery(), project.GetRootGallery());
    // The gallery may be gone by the time of the drop.
    frame->AddDropped({one}, 99);
    EXPECT_EQ(project.GetGalleries().size(), 2u);
}

TEST_F(MainFrame, ADroppedProjectIsOpenedAndTheFormerOneSaved)
{
    Start(Path("a.gallery"));
    frame->AddDropped({fixture.WritePicture(QStringLiteral("one.jpg"))});
    frame->AddDropped({Path("b.gallery")});
    EXPECT_EQ(frame->windowTitle(), QStringLiteral("Vistorama - b"));
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("one.jpg"));
    EXPECT_EQ(frame->GetProject().GetCurrentGallery()->GetPictures().GetCount(), 0);
}

TEST_F(MainFrame, CommandsAreKnownByTheirNumbers)
{
    Start(Path("a.gallery"));
    frame->GetProjects().Switch(Path("b.gallery"));
    const auto layout = [this] {
        return ExtractLastName(frame->GetProject().GetCurrentGallery()->GetLayout().GetTemplateKey());
    };
    const auto style = [this] {
        return ExtractLastName(frame->GetProject().GetCurrentGallery()->GetLayout().GetStyleKey());
    };
    frame->OnCommand(5001);
    EXPECT_TRUE(QTest::qWaitFor([&] { return layout() == QStringLiteral("two.xml"); }));
    frame->OnCommand(5000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return layout() == QStringLiteral("one.xml"); }));
    frame->OnCommand(5201);
    EXPECT_TRUE(QTest::qWaitFor([&] { return style() == QStringLiteral("rich.xml"); }));
    frame->OnCommand(33001);
    EXPECT_EQ(RecentNames().first(), QStringLiteral("a"));
    // Numbers that stand for nothing.
    for (const int command : {0, -1, 1, 5199, 5399, 33015, 33020, 33021, 57599, 65535}) {
        frame->OnCommand(command);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(RecentNames().first(), QStringLiteral("a"));
}

TEST_F(MainFrame, TitlesOfAllPicturesAreEditedInOneStep)
{
    Start(Path("a.gallery"));
    frame->OnCommand(32807);
    EXPECT_EQ(frame->statusBar()->currentMessage(), QStringLiteral("The gallery has no pictures yet."));
    frame->AddDropped(
        {fixture.WritePicture(QStringLiteral("one.jpg")), fixture.WritePicture(QStringLiteral("two.jpg"))});
    const auto titles = [this] {
        QStringList found;
        const CPictureList& pictures = frame->GetProject().GetCurrentGallery()->GetPictures();
        for (const int32_t position : {0, 1}) {
            const auto title = pictures.GetAt(position)->GetVariable(QStringLiteral("title"));
            found += title ? title->GetString() : QStringLiteral("none");
        }
        return found.join(QLatin1Char(' '));
    };
    const CModalAnswer answer([](QWidget& dialog) {
        QAbstractItemModel& model = *Find<QTableView>(dialog, "pictures").model();
        model.setData(model.index(0, 1), QStringLiteral("One"), Qt::EditRole);
        model.setData(model.index(1, 1), QStringLiteral("Two"), Qt::EditRole);
        Click(dialog, "ok");
    });
    frame->OnCommand(32807);
    EXPECT_EQ(titles(), QStringLiteral("One Two"));
    frame->OnCommand(57643);
    EXPECT_EQ(titles(), QStringLiteral("none none"));
}

// What a view has sent may come when a dialog is open already, which has the project to itself.
TEST_F(MainFrame, WhileADialogIsOpenNoViewChangesTheProject)
{
    Start(Path("a.gallery"));
    const auto layout = [this] {
        return ExtractLastName(frame->GetProject().GetCurrentGallery()->GetLayout().GetTemplateKey());
    };
    const int32_t gallery = frame->GetProject().GetCurrentGalleryIndex();
    QDialog dialog(frame.get());
    dialog.setModal(true);
    dialog.show();
    frame->GetPagesView().ChooseLayout(1);
    CViewGalleriesExternalDispatchCommands& galleries = frame->GetGalleriesView();
    galleries.AddChildGallery(gallery);
    QCoreApplication::processEvents();
    EXPECT_EQ(layout(), QStringLiteral("one.xml"));
    EXPECT_EQ(frame->GetProject().GetGalleries().size(), 1u);
    dialog.close();
    frame->GetPagesView().ChooseLayout(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return layout() == QStringLiteral("two.xml"); }));
}

// One lock and one file for a project and a link to it.
TEST_F(MainFrame, AProjectThatIsOpenedByALinkIsSavedAsItsFile)
{
    const QString file = Path("a.gallery");
    Start(file);
    frame.reset();
    const QString link = Path("link.gallery");
    ASSERT_TRUE(QFile::link(file, link));
    Start(link);
    EXPECT_TRUE(FileExists(CProjectLock::PathFor(file)));
    frame->AddDropped({fixture.WritePicture(QStringLiteral("one.jpg"))});
    frame->OnCommand(57603);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_FALSE(QFileInfo(file).isSymLink());
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("one.jpg"));
}

TEST_F(MainFrame, AProjectWithoutItsEndingIsMadeWithItAndFoundAgain)
{
    for (int run = 1; run <= 2; ++run) {
        Start(Path("Trip"));
        EXPECT_EQ(frame->windowTitle(), QStringLiteral("Vistorama - Trip"));
        EXPECT_EQ(frame->GetProjects().GetKeeper().GetPath(), Path("Trip.gallery"));
        EXPECT_TRUE(frame->close());
        frame.reset();
        EXPECT_TRUE(FileExists(Path("Trip.gallery")));
        EXPECT_FALSE(FileExists(Path("Trip")));
    }
}

TEST_F(MainFrame, TheToolbarAndTheMenuListTheRecentProjects)
{
    Start(Path("m.gallery"));
    frame->GetProjects().Switch(Path("z.gallery"));
    frame->GetProjects().Switch(Path("B.gallery"));
    const QMenu* const toolbarMenu = frame->findChild<QMenu*>(QStringLiteral("RecentProjectsMenu"));
    ASSERT_NE(toolbarMenu, nullptr);
    QStringList entries;
    for (const QAction* action : toolbarMenu->actions()) {
        entries += QStringLiteral("%1%2 %3")
                       .arg(action->isChecked() ? QStringLiteral("*") : QString(), action->text())
                       .arg(action->data().toInt() - 0xE100);
    }
    EXPECT_EQ(entries.join(QLatin1Char('|')), QStringLiteral("*B 1|m 3|My Vistorama 4|z 2"));
    EXPECT_EQ(FileMenu().actions().size(), 11);
    // The entry of "z" in the toolbar.
    toolbarMenu->actions().at(3)->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return frame->windowTitle() == QStringLiteral("Vistorama - z"); }));
    EXPECT_EQ(RecentNames().first(), QStringLiteral("z"));
}

TEST_F(MainFrame, TheWindowKeepsTheProjectThatIsGivenAgain)
{
    Start(Path("a.gallery"));
    frame->GetProjects().AddRecent(fixture.scratch.Path() + QStringLiteral("/x/../a.gallery"));
    EXPECT_EQ(RecentNames(), (QStringList{QStringLiteral("a"), QStringLiteral("My Vistorama")}));
}

TEST_F(MainFrame, ClosingSavesTheProjectAndTheList)
{
    Start(Path("a.gallery"));
    frame->AddDropped({fixture.WritePicture(QStringLiteral("late.jpg"))});
    EXPECT_TRUE(frame->close());
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("late.jpg"));
    EXPECT_EQ(CMainFrame::CRegistrySettings(*fixture.settings).GetString(QStringLiteral("ProjectFileName")),
              Path("a.gallery"));
}

TEST_F(MainFrame, ARunThatEndsByAFailureIsNotSaved)
{
    Start(Path("a.gallery"));
    const QByteArray before = fixture.scratch.Read(QStringLiteral("a.gallery"));
    frame->AddDropped({fixture.WritePicture(QStringLiteral("late.jpg"))});
    frame->GiveUpSaving();
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("a.gallery")), before);
}

TEST_F(MainFrame, SaveWritesTheProjectToItsFileAtOnce)
{
    Start(Path("a.gallery"));
    frame->AddDropped({fixture.WritePicture(QStringLiteral("one.jpg"))});
    EXPECT_FALSE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("one.jpg"));
    frame->OnCommand(57603);
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("one.jpg"));
}

TEST_F(MainFrame, TheOptionsOfTheViewsComeFromTheSettings)
{
    const CHTMLView::Options options = ReadBrowserOptions(*fixture.settings);
    EXPECT_EQ(options.settings, fixture.settings.get());
    EXPECT_EQ(options.optionKeyPath, QStringLiteral("Corvane/Vistorama/InternetExplorer"));
    EXPECT_FALSE(options.allowContextMenu);
    for (const char* value : {"1", "0", "yes"}) {
        fixture.settings->Write(CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
                                QStringLiteral("EnableExplorerPopupMenu"), QString::fromLatin1(value));
        EXPECT_EQ(ReadBrowserOptions(*fixture.settings).allowContextMenu, value[0] == '1') << value;
    }
}

TEST_F(MainFrame, TheCurrentGalleryIsDuplicatedDeletedAndRenamedByCommands)
{
    Start(Path("a.gallery"));
    CGalleryProject& project = frame->GetProject();
    project.SetCurrentGallery(project.AddChildGallery(project.GetRootGalleryIndex()));
    frame->OnCommand(32811);
    EXPECT_EQ(project.GetGalleries().size(), 3u);
    frame->OnCommand(32812);
    EXPECT_EQ(project.GetGalleries().size(), 2u);
    EXPECT_EQ(project.GetCurrentGalleryIndex(), project.GetRootGalleryIndex());
    frame->OnCommand(32810);
    const auto* const field =
        frame->GetGalleriesView().findChild<QLineEdit*>(QStringLiteral("GalleryNameEditor"));
    EXPECT_TRUE(WaitUntil([&] { return field->isVisible(); }));
}

// Nothing that was typed is lost.
TEST_F(MainFrame, ANameThatIsBeingTypedIsSavedAtTheEnd)
{
    Start(Path("a.gallery"));
    frame->activateWindow();
    frame->OnCommand(32810);
    auto* const field = frame->GetGalleriesView().findChild<QLineEdit*>(QStringLiteral("GalleryNameEditor"));
    ASSERT_TRUE(WaitUntil([&] { return field->hasFocus(); }));
    field->setText(QStringLiteral("Summer"));
    EXPECT_TRUE(frame->close());
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("a.gallery")).contains("Summer"));
}
