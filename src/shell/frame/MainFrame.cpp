#include "shell/frame/MainFrame.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QStatusBar>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "shell/dialogs/DlgNewGallery.h"
#include "shell/dialogs/GalleryNames.h"
#include "shell/folder/ViewFolder.h"
#include "shell/frame/CommandActions.h"
#include "shell/frame/DlgAbout.h"
#include "shell/frame/DroppedFiles.h"
#include "shell/frame/FailureBox.h"
#include "shell/frame/FramePanes.h"
#include "shell/frame/GalleryDialogs.h"
#include "shell/frame/GallerySaveDialog.h"
#include "shell/frame/Icons.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/PictureDrop.h"
#include "shell/frame/ProjectFile.h"
#include "shell/frame/RecentProjectsMenu.h"
#include "shell/frame/StandardCommands.h"
#include "shell/frame/WindowPlace.h"
#include "shell/views/EmptyView.h"
#include "shell/views/ViewPages.h"
#include "shell/wizard/DeployGallery.h"

CMainFrame::CMainFrame(const CProjectEnvironment& environment, const QString& commandLinePath)
    : environment(environment),
      project(environment),
      commandLinePath(commandLinePath),
      recentProjects(*environment.settings)
{
    setObjectName(QStringLiteral("frame"));
    setWindowIcon(LoadProgramIcon());
    setWindowTitle(Text(StringId::ProgramName));
    actions = std::make_unique<CCommandActions>(*this, [this](int commandId) { OnCommand(commandId); });
    CreateViews();
    CreateMenus();
    RegisterConsumers();
    statusBar();
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
    const CRegistrySettings settings(*environment.settings);
    const CHTMLView::Options browser{
        .settings = environment.settings,
        .optionKeyPath = CRegistrySettings::GetKeyName() + QStringLiteral("/InternetExplorer"),
        .allowContextMenu = settings.GetDWord(QStringLiteral("EnableExplorerPopupMenu")) != 0};
    const CViewNotification notify = [this](ViewId view, UpdateHint hint, const UpdateParameter& parameter) {
        OnViewChanged(view, hint, parameter);
    };
    pagesView = new CViewPages({.notify = notify,
                                .browser = browser,
                                .deploy = [this](CGalleryProject&) { Deploy(); },
                                .addFromFolder =
                                    [this](int32_t index) {
                                        folderView->AddPictureAt(index);
                                    }},
                               this);
    folderView = new CViewFolder({.notify = notify, .browser = browser}, this);
    galleriesView = new CEmptyView(this);
    panes = std::make_unique<CFramePanes>(
        *this, CFramePanes::Views{.pages = pagesView, .galleries = galleriesView, .folder = folderView});
    (new CPictureDrop(this, [this](const QStringList& paths) { AddDropped(paths); }))->Watch(*this);
    setAcceptDrops(true);
}

// The wizard may have changed the choices that stand in the project's file.
void CMainFrame::Deploy()
{
    if (project.IsLoaded()) {
        DeployGallery(project, *environment.settings, this);
        Try([this] { SaveProject(); });
    }
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
    recentProjects.Load();
    OpenFirstProject();
}

void CMainFrame::OpenFirstProject()
{
    const QString path = commandLinePath.isEmpty() ? recentProjects.GetFront() : commandLinePath;
    try {
        OpenProject(path);
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, this);
        if (!project.IsLoaded()) {
            OpenSubstituteProject();
            return;
        }
        // A new project that could not be written yet: it can be saved elsewhere.
        ShowProject(path);
    }
    AddRecentProject(path);
}

// At a path where nothing is, so that no file is put at risk; the project that can't be read least of all.
void CMainFrame::OpenSubstituteProject()
{
    GalleryPath path = SplitSuggestion(GetDefaultProjectPath());
    path.name = FindFreeName(path);
    try {
        OpenProject(path.Join());
    } catch (const CExceptionBase& failure) {
        if (!project.IsLoaded()) {
            throw;
        }
        ShowFailure(failure, this);
        ShowProject(path.Join());
    }
    AddRecentProject(path.Join());
}

void CMainFrame::OpenProject(const QString& path)
{
    Trace(QStringLiteral("Opening a gallery"));
    const QString normalised = NormalisedProjectPath(path);
    RequireProjectFile(normalised);
    project.Open(normalised);
    ShowProject(normalised);
}

void CMainFrame::ShowProject(const QString& path)
{
    UpdateViews(UpdateHint::ProjectReplaced);
    UpdateTitle(path);
}

void CMainFrame::UpdateViews(UpdateHint hint)
{
    pagesView->UpdateView(hint, project);
    folderView->UpdateView(hint, project);
    galleriesView->UpdateView(hint, project);
}

void CMainFrame::UpdateTitle(const QString& path)
{
    setWindowTitle(Text(StringId::ProgramName) + QStringLiteral(" - ") + ProjectNameOf(path));
}

void CMainFrame::SaveProject()
{
    if (!recentProjects.GetFront().isEmpty()) {
        project.Save(recentProjects.GetFront());
    }
}

void CMainFrame::SaveProjectAs()
{
    const QString chosen = AskForProject(CGallerySaveDialog::Purpose::Save, recentProjects.GetFront(), this);
    if (chosen.isEmpty() || recentProjects.IsCurrent(chosen)) {
        return;
    }
    const QString path = NormalisedProjectPath(chosen);
    project.Save(path);
    AddRecentProject(path);
    UpdateTitle(path);
    pagesView->UpdateView(UpdateHint::ProjectRenamed, project);
}

void CMainFrame::OpenProjectDialog()
{
    const QString chosen = AskForProject(CGallerySaveDialog::Purpose::Open, recentProjects.GetFront(), this);
    if (!chosen.isEmpty() && !recentProjects.IsCurrent(chosen)) {
        SwitchProject(chosen);
    }
}

void CMainFrame::OpenRecent(int index)
{
    if (index == -1) {
        CDlgNewGallery dialog(GetDefaultProjectPath(), this);
        if (dialog.exec() == QDialog::Accepted) {
            SwitchProject(dialog.GetProjectPath());
        }
        return;
    }
    const std::vector<QString>& paths = recentProjects.GetPaths();
    if (index >= 0 && index < static_cast<int>(paths.size())) {
        // A copy: the list changes meanwhile.
        SwitchProject(QString(paths[index]));
    }
}

void CMainFrame::SwitchProject(const QString& path)
{
    SaveProject();
    const QString former = recentProjects.GetFront();
    try {
        OpenProject(path);
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, this);
        ReopenProject(former);
        return;
    }
    AddRecentProject(path);
}

void CMainFrame::ReopenProject(const QString& path)
{
    try {
        OpenProject(path);
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, this);
        OpenSubstituteProject();
    }
}

void CMainFrame::AddRecentProject(const QString& path)
{
    recentProjects.Add(path);
    UpdateRecentProjectsMenus();
}

void CMainFrame::UpdateRecentProjectsMenus()
{
    UpdateRecentProjectsMenu(*menus->file, recentProjects, [this](int commandId) { OnCommand(commandId); });
    pagesView->GetToolBar().SetRecentProjects(EntriesByName(recentProjects));
}

void CMainFrame::AddDropped(const QStringList& paths)
{
    const DroppedFiles files = SortDropped(paths);
    if (!files.project.isEmpty()) {
        Try([&] { SwitchProject(files.project); });
        return;
    }
    if (CGallery* const gallery = project.GetCurrentGallery()) {
        statusBar()->showMessage(Text(StringId::PicturesDropped, AddPictures(*gallery, files.pictures)));
        UpdateViews(UpdateHint::PicturesAdded);
    }
}

void CMainFrame::OnViewChanged(ViewId view, UpdateHint hint, const UpdateParameter& parameter)
{
    switch (view) {
    case ViewId::Folder: {
        const CTraceScope scope("CMainFrame::OnFolderViewChanged");
        folderView->UpdateProject(hint, parameter, project);
        return;
    }
    case ViewId::Galleries: {
        const CTraceScope scope("CMainFrame::OnGalleriesViewChanged");
        galleriesView->UpdateProject(hint, parameter, project);
        return;
    }
    case ViewId::Pages:
        if (hint == UpdateHint::RecentProjectChosen) {
            Try([&] { OpenRecent(std::get<int32_t>(parameter)); });
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
    } else if (commandId >= CommandRange::FirstStyle && commandId < CommandRange::BehindLastStyle) {
        pagesView->ChooseStyle(commandId - CommandRange::FirstStyle);
    } else if (commandId >= CommandRange::FirstRecentProject &&
               commandId <= CommandRange::LastRecentProject) {
        Try([&] { OpenRecent(commandId - CommandRange::FirstRecentProject); });
    } else {
        Try([&] { OnNamedCommand(static_cast<CommandId>(commandId)); });
    }
}

void CMainFrame::OnNamedCommand(CommandId command)
{
    switch (command) {
    case CommandId::New:
        return NewProject();
    case CommandId::Open:
        return OpenProjectDialog();
    case CommandId::Save:
        return SaveProject();
    case CommandId::SaveAs:
        return SaveProjectAs();
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

void CMainFrame::OnEffectCommand(CommandId command)
{
    CGallery* const gallery = project.GetCurrentGallery();
    // The names of the pictures, or the page's texts, have changed: the page is made anew.
    if (gallery != nullptr && EditGallery(command, *gallery, this)) {
        pagesView->UpdateView(UpdateHint::ProjectReplaced, project);
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
    if (savesAtEnd && !SaveAtEnd()) {
        event->ignore();
        return;
    }
    recentProjects.Store();
    StoreWindowPlace(*this, *panes, *environment.settings);
    event->accept();
}

// False if the person wants the window to stay.
bool CMainFrame::SaveAtEnd()
{
    try {
        SaveProject();
        return true;
    } catch (const CExceptionBase& failure) {
        switch (AskAboutUnsaved(failure, this)) {
        case UnsavedChoice::SaveElsewhere:
            Try([this] { SaveProjectAs(); });
            return false;
        case UnsavedChoice::CloseAnyway:
            return true;
        case UnsavedChoice::Stay:
            break;
        }
        return false;
    }
}
