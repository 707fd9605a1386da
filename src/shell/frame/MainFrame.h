#pragma once

#include <functional>
#include <memory>

#include <QMainWindow>

#include "document/project/GalleryProject.h"
#include "shell/frame/Commands.h"
#include "shell/frame/EditingDesk.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/ProjectDesk.h"

class CCommandActions;
class CFramePanes;
class CPictureCommands;
class CViewFolder;
class CViewGalleries;
class CUndoNotice;
class CViewPages;
struct FrameMenus;

// The one window of the program: the menu and the three views between their bars. Owns the
// project. Screen's thread.
class CMainFrame final : public QMainWindow {
public:
    using CRegistrySettings = CMainFrameSettings;

    // environment: what it points at outlives the frame. commandLinePath: of the project to begin with; empty
    // for the one that was open last.
    CMainFrame(const CProjectEnvironment& environment, const QString& commandLinePath);
    ~CMainFrame() override;

    // Shows the window as it was left, in a first run maximised, and opens the first project. A
    // project that can't be read is told of and left alone: a new one takes its place. Throws
    // what CGalleryProject::New throws.
    void Start();

    // The commands of the menu and of the keys, by their numbers; see Commands.h. Other numbers do nothing.
    void OnCommand(int commandId);

    // Opening and saving; paths need not be normalised.
    CProjectDesk& GetProjects() { return projects; }
    // Pictures, the pictures of folders, and projects, dropped on the window or on the cover of a gallery;
    // gallery -1 is the current one.
    void AddDropped(const QStringList& paths, int32_t gallery = -1);

    // No project is saved from now on: the program ends by a failure.
    void GiveUpSaving();

    CGalleryProject& GetProject() { return project; }
    CViewPages& GetPagesView() { return *pagesView; }
    CViewFolder& GetFolderView() { return *folderView; }
    CViewGalleries& GetGalleriesView() { return *galleriesView; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void CreateViews();
    void Deploy();
    void CreateMenus();
    void OnNamedCommand(CommandId command);
    // path: of the one that is looked for; empty: all of them.
    void FindMissing(const QString& path = QString());
    void EmptyCache();
    void OnEffectCommand(CommandId command);
    void OnSortCommand(CommandId command);
    void ShowProject();
    void UpdateTitle();
    void OnEdited(const Edited& edited);
    void Undo();
    void Redo();
    void UpdateUndoCommands();
    void UpdateRecentProjectsMenus();
    void Try(const std::function<void()>& action);

    // In the order of their making; the widgets are owned by the window.
    CProjectEnvironment environment;
    CViewPages* pagesView = nullptr;
    CViewFolder* folderView = nullptr;
    CViewGalleries* galleriesView = nullptr;
    CGalleryProject project;
    const QString commandLinePath;
    CProjectDesk projects;
    CEditingDesk desk;
    std::unique_ptr<CFramePanes> panes;
    std::unique_ptr<CPictureCommands> pictureCommands;
    std::unique_ptr<CCommandActions> actions;
    std::unique_ptr<FrameMenus> menus;
    CUndoNotice* undoNotice = nullptr; // owned by the pages view
    bool savesAtEnd = true;
};
