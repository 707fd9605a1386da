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
#include "editing/PictureActs.h"
#include "shell/dialogs/DlgAbout.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/drag/DropWatcher.h"
#include "shell/frame/Commands.h"
#include "shell/frame/FrameMenus.h"
#include "shell/frame/FramePanes.h"
#include "shell/frame/GalleryCommands.h"
#include "shell/frame/MissingPictures.h"
#include "shell/frame/PictureCommands.h"
#include "shell/frame/StandardCommands.h"
#include "shell/frame/UndoNotice.h"
#include "shell/look/Icons.h"
#include "shell/panes/folder/ViewFolder.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell/wizard/DeployGallery.h"

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
                        desk.UpdateViews(ViewUpdate::Cause::ProjectRenamed);
                    },
                .recentListChanged =
                    [this] {
                        UpdateRecentProjectsMenus();
                    }}),
      desk(project, {.changed = [this] { projects.GetKeeper().MarkChanged(); },
                     .edited =
                         [this](const Edited& edited) {
                             OnEdited(edited);
                         }})
{
    setObjectName(QStringLiteral("frame"));
    setWindowIcon(LoadProgramIcon());
    setWindowTitle(Text(StringId::ProgramName));
    actions = std::make_unique<CCommandActions>(*this, [this](int commandId) { OnCommand(commandId); });
    CreateViews();
    CreateMenus();
    UpdateUndoCommands();
    // An act is heard of before it stands in the history.
    connect(&desk.GetHistory().GetStack(), &QUndoStack::indexChanged, this, [this] { UpdateUndoCommands(); });
}

// The views go first: they look at the project.
CMainFrame::~CMainFrame()
{
    // The history tells of its end, when the commands are gone.
    disconnect(&desk.GetHistory().GetStack(), nullptr, this, nullptr);
    menus.reset();
    panes.reset();
    delete takeCentralWidget();
}

void CMainFrame::CreateViews()
{
    const CHTMLView::Options browser = ReadBrowserOptions(*environment.settings);
    pagesView =
        new CViewPages({.desk = desk,
                        .browser = browser,
                        .openRecent = [this](int32_t place) { Try([&] { projects.OpenRecent(place); }); },
                        .findMissing = [this] { Try([this] { FindMissing(); }); },
                        .findPicture =
                            [this](const QString& path) {
                                Try([&] { FindMissing(path); });
                            }},
                       this);
    folderView = new CViewFolder({.desk = desk, .browser = browser}, this);
    galleriesView = new CViewGalleries(
        {.addDropped = [this](const QStringList& paths, int32_t gallery) { AddDropped(paths, gallery); },
         .tell = [this](const CExceptionBase& failure) { ShowFailure(failure, this); },
         .desk = desk,
         .browser = browser},
        this);
    pictureCommands = std::make_unique<CPictureCommands>(
        CPictureCommands::Services{.desk = desk,
                                   .pages = *pagesView,
                                   .folder = *folderView,
                                   .galleries = *galleriesView,
                                   .window = *this,
                                   .say = [this](const QString& text) { statusBar()->showMessage(text); },
                                   .attempt =
                                       [this](const std::function<void()>& action) {
                                           Try(action);
                                       }});
    const PictureMenus commands = ListPictureCommands(*actions);
    pagesView->SetPictureCommands(commands.pageBar, commands.pageMenu);
    folderView->SetPictureCommands(commands.folderBar, commands.folderMenu);
    undoNotice = new CUndoNotice(*pagesView, [this] { Undo(); });
    desk.AddView(*pagesView);
    desk.AddView(*folderView);
    desk.AddView(*galleriesView);
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
    menus = std::make_unique<FrameMenus>(
        *menuBar(), *actions,
        FrameMenus::PageCommands{toolBar.GetLayoutMenu(), toolBar.GetStyleMenu(), toolBar.GetVisibility()});
    toolBar.AddDocumentCommands({actions->Get(CommandId::New), actions->Get(CommandId::Open),
                                 actions->Get(CommandId::Save), actions->Get(CommandId::Deploy), nullptr,
                                 actions->Get(CommandId::Undo), actions->Get(CommandId::Redo), nullptr});
}

void CMainFrame::Start()
{
    RestoreWindowPlace(*this, *panes, *environment.settings);
    projects.Start(commandLinePath);
}

void CMainFrame::ShowProject()
{
    desk.BeginAnew();
    UpdateTitle();
}

void CMainFrame::OnEdited(const Edited& edited)
{
    const StringId said = edited.way == Edited::Way::Undone   ? StringId::ActUndone
                          : edited.way == Edited::Way::Redone ? StringId::ActRedone
                                                              : StringId::ActDone;
    statusBar()->showMessage(Text(said, edited.name));
    if (edited.way == Edited::Way::Undone || edited.notice.isEmpty()) {
        undoNotice->hide();
    } else {
        undoNotice->Tell(edited.notice);
    }
}

// "Undo Delete Picture".
void CMainFrame::UpdateUndoCommands()
{
    const QUndoStack& steps = desk.GetHistory().GetStack();
    actions->Get(CommandId::Undo)->setEnabled(steps.canUndo());
    actions->Get(CommandId::Redo)->setEnabled(steps.canRedo());
    actions->SetText(CommandId::Undo, steps.canUndo() ? Text(StringId::UndoAct, steps.undoText())
                                                      : Text(StringId::UndoCommand));
    actions->SetText(CommandId::Redo, steps.canRedo() ? Text(StringId::RedoAct, steps.redoText())
                                                      : Text(StringId::RedoCommand));
}

void CMainFrame::Undo()
{
    desk.GetHistory().GetStack().undo();
}

void CMainFrame::Redo()
{
    desk.GetHistory().GetStack().redo();
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
    } else if (const CGallery* const target =
                   project.FindGallery(gallery == -1 ? project.GetCurrentGalleryIndex() : gallery)) {
        const int before = target->GetPictures().GetCount();
        desk.Do(AddPictures(target->GetIndex(), files.pictures));
        statusBar()->showMessage(Text(StringId::PicturesDropped, target->GetPictures().GetCount() - before));
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
        return Deploy();
    case CommandId::ImageWatermark:
    case CommandId::ImageSignature:
    case CommandId::Ads:
        return OnEffectCommand(command);
    case CommandId::SortByName:
    case CommandId::SortByDateTaken:
    case CommandId::SortByFileDate:
    case CommandId::ReverseOrder:
        return OnSortCommand(command);
    case CommandId::RenameGallery:
        return galleriesView->RenameGallery();
    case CommandId::DuplicateGallery:
        return galleriesView->DuplicateGallery();
    case CommandId::DeleteGallery:
        return galleriesView->DeleteGallery();
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
    case CommandId::Undo:
        return Undo();
    case CommandId::Redo:
        return Redo();
    case CommandId::Print:
        return PerformStandardCommand(command, focusWidget());
    default:
        return pictureCommands->Perform(command);
    }
}

void CMainFrame::FindMissing(const QString& path)
{
    if (project.LookForFiles()) {
        desk.UpdateViews(ViewUpdate::Cause::ProjectReplaced);
    }
    const auto move = [this](const std::vector<FileMove>& moves) {
        return desk.Do(RelocateFiles(moves));
    };
    path.isEmpty() ? FindMissingPictures(project, move, this) : FindMissingPicture(project, path, move, this);
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
    desk.UpdateViews(ViewUpdate::Cause::ProjectReplaced);
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
        galleriesView->UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, project);
    }
    pagesView->LookAtFiles(project);
}

void CMainFrame::OnEffectCommand(CommandId command)
{
    const CGallery* const gallery = project.GetCurrentGallery();
    if (const std::optional<Act> act = gallery ? AskForEffect(command, *gallery, this) : std::nullopt) {
        desk.Do(*act);
    }
}

void CMainFrame::OnSortCommand(CommandId command)
{
    const CGallery* const gallery = project.GetCurrentGallery();
    if (const std::optional<Act> act = gallery ? SortBy(command, *gallery, this) : std::nullopt) {
        desk.Do(*act);
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
    if (QWidget* const focus = focusWidget()) {
        focus->clearFocus(); // a name that is being typed is part of what is saved
    }
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
