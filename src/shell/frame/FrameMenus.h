#pragma once

#include <functional>

#include <QList>

class CCommandActions;
class CRecentProjects;
class CViewPagesToolBar;
class QAction;
class QMenu;
class QMenuBar;

// The menus of the frame.
struct FrameMenus {
    // What the pages view gives: menus that it fills, and the button of the toolbar.
    struct PageCommands {
        QMenu& layouts;
        QMenu& styles;
        QAction& visibility;
    };
    FrameMenus(QMenuBar& menuBar, const CCommandActions& actions, const PageCommands& page);

    QMenu* file;
};

// What the views offer for selected pictures. A null entry is a separator.
struct PictureMenus {
    QList<QAction*> pageBar;
    QList<QAction*> pageMenu;
    QList<QAction*> folderBar;
    QList<QAction*> folderMenu;
};
PictureMenus ListPictureCommands(const CCommandActions& actions);

// Lists the recent projects, all but the current one, in the file menu: by their names, above the
// last separator. The data of an entry's action is its command number, 33001 and up. chosen: called
// with that number.
void UpdateRecentProjectsMenu(QMenu& menu, const CRecentProjects& projects,
                              const std::function<void(int commandId)>& chosen);

// The same for the toolbar, by their names.
void UpdateRecentProjectsMenu(CViewPagesToolBar& toolBar, const CRecentProjects& projects);
