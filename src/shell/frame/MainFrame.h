#pragma once

#include <functional>
#include <memory>

#include <QMainWindow>

#include "document/GalleryProject.h"
#include "shell/frame/CommandIds.h"
#include "shell/frame/RecentProjects.h"
#include "shell/host/ViewNotification.h"

class CCommandActions;
class CEmptyView;
class CFramePanes;
class CViewFolder;
class CViewPages;
struct FrameMenus;

// The one window of the program: the menu and the three views between their bars. Owns the project, which is
// always saved at the front entry of the list of recent projects: when another one is opened and when the
// window closes. Screen's thread.
class CMainFrame final : public QMainWindow {
public:
    class CRegistrySettings;

    // environment: what it points at outlives the frame. commandLinePath: of the project to begin with; empty
    // for the one that was open last.
    CMainFrame(const CProjectEnvironment& environment, const QString& commandLinePath);
    ~CMainFrame() override;

    // Shows the window as it was left, in a first run maximised, and opens the first project. A project that
    // can't be read is told of and left alone: a new one takes its place. Throws what CGalleryProject::New
    // throws.
    void Start();

    // The commands of the menu and of the keys, by their numbers; see CommandIds.h. Other numbers do nothing.
    void OnCommand(int commandId);

    // --- Projects. Paths need not be normalised.

    // Throws what CGalleryProject::Open throws.
    void OpenProject(const QString& path);
    void SaveProject();
    void SaveProjectAs();
    void OpenProjectDialog();
    void NewProject() { OpenRecent(-1); }
    // By the place in the list of recent projects, from 0; -1 asks for a new project.
    void OpenRecent(int index);
    void AddRecentProject(const QString& path);
    // Saves the current project, opens the other one and enters it in the list. If it can't be read the
    // current project stays.
    void SwitchProject(const QString& path);
    // Pictures, the pictures of folders, and projects, dropped on the window.
    void AddDropped(const QStringList& paths);

    // No project is saved when the window closes from now on: the program ends by a failure.
    void GiveUpSaving() { savesAtEnd = false; }

    CGalleryProject& GetProject() { return project; }
    CViewPages& GetPagesView() { return *pagesView; }
    CViewFolder& GetFolderView() { return *folderView; }
    const CRecentProjects& GetRecentProjects() const { return recentProjects; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void CreateViews();
    void RegisterConsumers();
    void Deploy();
    void CreateMenus();
    void OnViewChanged(ViewId view, UpdateHint hint, const UpdateParameter& parameter);
    void OnNamedCommand(CommandId command);
    void OnEffectCommand(CommandId command);
    void OpenFirstProject();
    void OpenSubstituteProject();
    void ReopenProject(const QString& path);
    void ShowProject(const QString& path);
    void UpdateTitle(const QString& path);
    void UpdateViews(UpdateHint hint);
    void UpdateRecentProjectsMenus();
    bool SaveAtEnd();
    void Try(const std::function<void()>& action);

    // In the order of their making; the widgets are owned by the window.
    CProjectEnvironment environment;
    CViewPages* pagesView = nullptr;
    CViewFolder* folderView = nullptr;
    CEmptyView* galleriesView = nullptr;
    CGalleryProject project;
    const QString commandLinePath;
    CRecentProjects recentProjects;
    std::unique_ptr<CFramePanes> panes;
    std::unique_ptr<CCommandActions> actions;
    std::unique_ptr<FrameMenus> menus;
    bool savesAtEnd = true;
};
