#pragma once

#include <functional>

class CCommandActions;
class CRecentProjects;
class CViewPagesToolBar;
class QMenu;
class QMenuBar;

// The menus of the frame. layouts, styles: filled by the pages view.
struct FrameMenus {
    FrameMenus(QMenuBar& menuBar, const CCommandActions& actions, QMenu& layouts, QMenu& styles);

    QMenu* file;
};

// Lists the recent projects, all but the current one, in the file menu: by their names, above the
// last separator. The data of an entry's action is its command number, 33001 and up. chosen: called
// with that number.
void UpdateRecentProjectsMenu(QMenu& menu, const CRecentProjects& projects,
                              const std::function<void(int commandId)>& chosen);

// The same for the toolbar, by their names.
void UpdateRecentProjectsMenu(CViewPagesToolBar& toolBar, const CRecentProjects& projects);
