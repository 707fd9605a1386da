#pragma once

#include <functional>
#include <vector>

#include "shell/views/ViewPagesToolBar.h"

class CRecentProjects;
class QMenu;

// Lists the recent projects, all but the current one, in the file menu: by their names, above the last
// separator. The data of an entry's action is its command number, 33001 and up. chosen: called with that
// number.
void UpdateRecentProjectsMenu(QMenu& menu, const CRecentProjects& projects,
                              const std::function<void(int commandId)>& chosen);

// All of them, in the order of their names, for the toolbar.
std::vector<CViewPagesToolBar::RecentProject> EntriesByName(const CRecentProjects& projects);
