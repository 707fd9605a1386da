#include "shell/frame/MainFrame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "content/ImageCache.h"
#include "shell/dialogs/DlgAbout.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/drag/DropWatcher.h"
#include "shell/frame/Commands.h"
#include "shell/frame/FrameMenus.h"
#include "shell/frame/FramePanes.h"
#include "shell/frame/GalleryCommands.h"
#include "shell/frame/MissingPictures.h"
#include "shell/frame/StandardCommands.h"
#include "shell/look/Icons.h"
#include "shell/panes/folder/ViewFolder.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell/wizard/DeployGallery.h"

namespace {

// Of what views ask for: it changes nothing in the document.
bool IsHarmless(UpdateHint hint)
{
    return hint == UpdateHint::CoverChanged || hint == UpdateHint::FolderReady;
}

} // namespace

CMainFrame::CMainFrame(const CProjectEnvironment& environment, const QString& commandLinePath)
    : environment(environment),
      project(environment),
      commandLinePath(commandLinePath),
      projects(project, *environment.settings,
               {.widget = this,
                .statusBar = statusBar(),
                .projectReplaced = [this] { ShowProject(); },
                .projectRenamed =
                    [this] {
                        UpdateTitle();
                        pagesView->UpdateView(UpdateHint::ProjectRenamed, project);
                    },
                .recentListChanged =
                    [this] {
                        UpdateRecentProjectsMenus();
                    }})
{
    setObjectName(QStringLiteral("frame"));
    setWindowIcon(LoadProgramIcon());
    setWindowTitle(Text(StringId::ProgramName));
    actions = std::make_unique<CCommandActions>(*this, [this](int commandId) { OnCommand(commandId); });
    CreateViews();
    CreateMenus();
    RegisterConsumers();
}

// The views go first: they look at the project.
CMainFrame::~CMainFrame()
{
    menus.reset();
    panes.reset();
    delete takeCentralWidget();
}

void CMainFrame::CreateViews()
{
    const CHTMLView::Options browser = ReadBrowserOptions(*environment.settings);
    const CViewNotification notify = [this](ViewId view, UpdateHint hint, const UpdateParameter& parameter) {
        OnViewChanged(view, hint, parameter);
    };
    pagesView = new CViewPages(
        {.notify = notify,
         .browser = browser,
         .deploy = [this](CGalleryProject&) { Deploy(); },
         .addFromFolder = [this](int32_t index,
                                 const QString& path) { folderView->AddPictureAt(index, path); },
         .findMissing = [this] { Try([this] { FindMissing(); }); },
         .findPicture =
             [this](const QString& path) {
                 Try([&] { FindMissing(path); });
             }},
        this);
    folderView = new CViewFolder({.notify = notify, .browser = browser}, this);
    galleriesView = new CViewGalleries(
        {.addDropped = [this](const QStringList& paths, int32_t gallery) { AddDropped(paths, gallery); },
         .tell = [this](const CExceptionBase& failure) { ShowFailure(failure, this); },
         .notify = notify,
         .browser = browser},
        this);
    panes = std::make_unique<CFramePanes>(
        *this, CFramePanes::Views{.pages = pagesView, .galleries = galleriesView, .folder = folderView});
    new CDropWatcher(*this, {.filesDropped = [this](const QStringList& paths) {
        AddDropped(paths);
    }});
}

// The wizard may have changed the choices that stand in the project's file.
void CMainFrame::Deploy()
{
    if (!project.IsLoaded()) {
        return;
    }
    CProjectKeeper& keeper = projects.GetKeeper();
    Try([&] { keeper.Save(); });
    {
        const CProjectKeeper::CPause noSaving(keeper);
        const CViewGalleries::CPause noCovers(*galleriesView);
        DeployGallery(project, *environment.settings, this);
    }
    keeper.MarkChanged();
    Try([&] { keeper.Save(); });
}

void CMainFrame::CreateMenus()
{
    CViewPagesToolBar& toolBar = pagesView->GetToolBar();
    menus =
        std::make_unique<FrameMenus>(*menuBar(), *actions, toolBar.GetLayoutMenu(), toolBar.GetStyleMenu());
    toolBar.AddDocumentCommands({actions->Get(CommandId::New), actions->Get(CommandId::Open),
                                 actions->Get(CommandId::Save), actions->Get(CommandId::Deploy), nullptr});
}

// In this order the views hear of a change.
void CMainFrame::RegisterConsumers()
{
    folderView->AddConsumer(*pagesView);
    folderView->AddConsumer(*folderView);
    folderView->AddConsumer(*galleriesView);
    pagesView->AddConsumer(*folderView);
    pagesView->AddConsumer(*galleriesView);
    galleriesView->AddConsumer(*galleriesView);
    galleriesView->AddConsumer(*pagesView);
    galleriesView->AddConsumer(*folderView);
}

void CMainFrame::Start()
{
    RestoreWindowPlace(*this, *panes, *environment.settings);
    projects.Start(commandLinePath);
}

void CMainFrame::ShowProject()
{
    UpdateViews(UpdateHint::ProjectReplaced);
    UpdateTitle();
}

void CMainFrame::UpdateViews(UpdateHint hint)
{
    pagesView->UpdateView(hint, project);
    folderView->UpdateView(hint, project);
    galleriesView->UpdateView(hint, project);
}

void CMainFrame::UpdateTitle()
{
    setWindowTitle(Text(StringId::ProgramName) + QStringLiteral(" - ") + projects.GetTitle());
}

void CMainFrame::UpdateRecentProjectsMenus()
{
    const CRecentProjects& recent = projects.GetRecentProjects();
    UpdateRecentProjectsMenu(*menus->file, recent, [this](int commandId) { OnCommand(commandId); });
    UpdateRecentProjectsMenu(pagesView->GetToolBar(), recent);
}

void CMainFrame::AddDropped(const QStringList& paths, int32_t gallery)
{
    // A drop comes through to a window behind a dialog, and that dialog, or the thread of a deployment, is at
    // work on the project.
    if (QApplication::activeModalWidget() != nullptr) {
        return;
    }
    const DroppedFiles files = SortDropped(paths);
    if (!files.project.isEmpty()) {
        Try([&] { projects.Switch(files.project); });
    } else if (CGallery* const target =
                   project.FindGallery(gallery == -1 ? project.GetCurrentGalleryIndex() : gallery)) {
        statusBar()->showMessage(Text(StringId::PicturesDropped, AddPictures(*target, files.pictures)));
        UpdateViews(UpdateHint::PicturesAdded);
        projects.GetKeeper().MarkChanged();
    }
}

// What a view asks for changes the project as a rule; a save too many does no harm. A dialog, or the thread
// of a deployment, has the project to itself: what comes late is not done.
void CMainFrame::OnViewChanged(ViewId view, UpdateHint hint, const UpdateParameter& parameter)
{
    if (QApplication::activeModalWidget() != nullptr && !IsHarmless(hint)) {
        return;
    }
    projects.GetKeeper().MarkChanged();
    switch (view) {
    case ViewId::Folder: {
        const TraceScope scope(QStringLiteral("CMainFrame::OnFolderViewChanged"));
        folderView->UpdateProject(hint, parameter, project);
        return;
    }
    case ViewId::Galleries: {
        const TraceScope scope(QStringLiteral("CMainFrame::OnGalleriesViewChanged"));
        galleriesView->UpdateProject(hint, parameter, project);
        return;
    }
    case ViewId::Pages:
        if (hint == UpdateHint::RecentProjectChosen) {
            Try([&] { projects.OpenRecent(std::get<int32_t>(parameter)); });
        } else {
            pagesView->UpdateProject(hint, parameter, project);
        }
        return;
    }
}

void CMainFrame::OnCommand(int commandId)
{
    if (commandId >= CommandRange::FirstLayout && commandId < CommandRange::FirstStyle) {
        pagesView->ChooseLayout(commandId - CommandRange::FirstLayout);
    } else if (commandId >= CommandRange::FirstStyle && commandId < CommandRange::AfterLastStyle) {
        pagesView->ChooseStyle(commandId - CommandRange::FirstStyle);
    } else if (commandId >= CommandRange::FirstRecentProject &&
               commandId <= CommandRange::LastRecentProject) {
        Try([&] { projects.OpenRecent(commandId - CommandRange::FirstRecentProject); });
    } else {
        Try([&] { OnNamedCommand(static_cast<CommandId>(commandId)); });
    }
}

void CMainFrame::OnNamedCommand(CommandId command)
{
    switch (command) {
    case CommandId::New:
        return projects.OpenRecent(-1);
    case CommandId::Open:
        return projects.OpenByDialog();
    case CommandId::Save:
        return projects.Save();
    case CommandId::SaveAs:
        return projects.SaveAs();
    case CommandId::EarlierVersion:
        return projects.OpenEarlierVersion();
    case CommandId::Exit:
        close();
        return;
    case CommandId::Deploy:
        return pagesView->UpdateProject(UpdateHint::Deploy, {}, project);
    case CommandId::ImageWatermark:
    case CommandId::ImageSignature:
    case CommandId::Ads:
        return OnEffectCommand(command);
    case CommandId::OpenFolder:
        return folderView->ChooseFolder();
    case CommandId::FindMissing:
        return FindMissing();
    case CommandId::EmptyCache:
        return EmptyCache();
    case CommandId::About:
        CDlgAbout(this).exec();
        return;
    case CommandId::NextPane:
        return panes->FocusNext();
    case CommandId::PreviousPane:
        return panes->FocusPrevious();
    case CommandId::Print:
    case CommandId::Undo:
    case CommandId::Cut:
    case CommandId::Copy:
    case CommandId::Paste:
    case CommandId::Clear:
        return PerformStandardCommand(command, focusWidget());
    case CommandId::LayoutMenu:
    case CommandId::StyleMenu:
        return; // they only open their menus
    }
}

void CMainFrame::FindMissing(const QString& path)
{
    project.LookForFiles();
    const int32_t found =
        path.isEmpty() ? FindMissingPictures(project, this) : FindMissingPicture(project, path, this);
    if (found > 0) {
        statusBar()->showMessage(Text(StringId::PicturesFoundAgain, found));
        projects.GetKeeper().MarkChanged();
    }
    UpdateViews(UpdateHint::ProjectReplaced);
}

void CMainFrame::EmptyCache()
{
    const QString size = QLocale().formattedDataSize(GetSizeOfCaches());
    QMessageBox box(QMessageBox::Question, Text(StringId::EmptyCacheTitle),
                    Text(StringId::EmptyCacheQuestion, size), QMessageBox::Ok | QMessageBox::Cancel, this);
    box.button(QMessageBox::Ok)->setText(Text(StringId::EmptyCacheButton));
    if (box.exec() != QMessageBox::Ok) {
        return;
    }
    ClearCaches();
    UpdateViews(UpdateHint::ProjectReplaced);
    statusBar()->showMessage(Text(StringId::CacheEmptied, size));
}

// Files come, go and change while the person is in other windows.
void CMainFrame::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow() || !project.IsLoaded() ||
        QApplication::activeModalWidget() != nullptr) {
        return;
    }
    if (project.LookForFiles()) {
        galleriesView->UpdateView(UpdateHint::ProjectReplaced, project);
    }
    pagesView->LookAtFiles(project);
}

void CMainFrame::OnEffectCommand(CommandId command)
{
    CGallery* const gallery = project.GetCurrentGallery();
    // The names of the pictures, or the page's texts, have changed: the page is made anew.
    if (gallery != nullptr && EditGallery(command, *gallery, this)) {
        pagesView->UpdateView(UpdateHint::ProjectReplaced, project);
        projects.GetKeeper().MarkChanged();
    }
}

// A failure with a project's file leaves the program as it is: nothing that a person has done is lost.
void CMainFrame::Try(const std::function<void()>& action)
{
    try {
        action();
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, this);
    }
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    if (savesAtEnd && !projects.SaveAtEnd()) {
        event->ignore();
        return;
    }
    projects.GetRecentProjects().Store();
    StoreWindowPlace(*this, *panes, *environment.settings);
    event->accept();
}

void CMainFrame::GiveUpSaving()
{
    savesAtEnd = false;
    projects.GetKeeper().GiveUp();
}
