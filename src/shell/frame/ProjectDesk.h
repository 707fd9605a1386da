#pragma once

#include <functional>

#include "shell/frame/ProjectKeeper.h"
#include "shell/frame/RecentProjects.h"

class CSettingsStore;
class QStatusBar;
class QWidget;

// Opens, saves and changes projects as a person asks for it, and tells them when that fails; keeps the list
// of the projects that were opened last. The project that is open stays open until another one is. Owned by
// the frame. Screen's thread.
class CProjectDesk {
public:
    // What the desk has to do with the window. All are borrowed.
    struct Window {
        QWidget* widget = nullptr; // parent of the dialogs
        QStatusBar* statusBar = nullptr;
        std::function<void()> projectReplaced; // another project is open
        std::function<void()> projectRenamed;  // the same project has another file
        std::function<void()> recentListChanged;
    };

    CProjectDesk(CGalleryProject& project, CSettingsStore& settings, Window window);

    // The first project of a run: the wanted one, whose path may lack its ending, or the last one if that is
    // empty. A project that can't be read is told of and left alone: a new one takes its place. Throws what
    // CGalleryProject::New throws.
    void Start(const QString& wanted);

    // Throws what CGalleryProject::Open throws. Nothing happens if it is open elsewhere and the person would
    // rather not look at it; false then.
    bool Open(const QString& path);
    // Throws CExceptionBase: a project that is read-only can't be saved either.
    void Save();
    void SaveAs();
    void OpenByDialog();
    // Asks for an earlier state of the project that is open and goes back to it.
    void OpenEarlierVersion();
    // By the place in the list of recent projects, from 0; -1 asks for a new project.
    void OpenRecent(int index);
    // Saves the current project, opens the other one and enters it in the list. If it can't be read the
    // current project stays. Throws what Save throws.
    void Switch(const QString& path);
    void AddRecent(const QString& path);
    // Saves, at the end of a run. False if the person wants the window to stay.
    bool SaveAtEnd();
    // "Trip", or "Trip (read-only)".
    QString GetTitle() const;

    CProjectKeeper& GetKeeper() { return keeper; }
    CRecentProjects& GetRecentProjects() { return recentProjects; }
    const CRecentProjects& GetRecentProjects() const { return recentProjects; }

private:
    void OpenSubstitute();
    bool OfferEarlierVersion(const QString& path);
    void Reopen(const QString& path);
    void ShowWithoutFile(const QString& path);

    CGalleryProject& project;
    const Window window;
    CProjectKeeper keeper;
    CRecentProjects recentProjects;
};
