#pragma once

#include <functional>

class CRecentProjects;
class QMenu;

// The two places that list the recent projects. The actions' data is their command number.
class CRecentProjectsMenus {
public:
    // Called with the command number of the entry that was chosen.
    using Chosen = std::function<void(int commandId)>;

    // A menu of the numbers 0xE101 and up: all projects, the current one checked.
    static void FillToolbarMenu(QMenu& menu, const CRecentProjects& projects, const Chosen& chosen);
    // The file menu, with the numbers 33001 and up: all projects but the current one.
    static void UpdateFileMenu(QMenu& menu, const CRecentProjects& projects, const Chosen& chosen);

    static int ToolbarCommandOf(int position);
    static int PositionOfToolbarCommand(int commandId);
};
