#include "shell/frame/RecentProjectsMenus.h"

#include <QMenu>

#include "shell/frame/CommandIds.h"
#include "shell/frame/Icons.h"
#include "shell/frame/RecentProjects.h"

namespace {

// Odd on purpose: 0xE101 is also the number of the command Open (57601). The two never meet, since entries of
// the toolbar's menu go to the pages view and not through the frame's commands.
constexpr int ToolbarCommandBase = 0xE100;

constexpr int FileMenuItemCount = 6; // that always stand in the file menu
constexpr int SeparatorPosition = 4;

QAction* MakeEntry(QMenu& menu, const QString& path, int commandId)
{
    QString name = ProjectNameOf(path);
    auto* entry = new QAction(name.replace(QLatin1Char('&'), QStringLiteral("&&")), &menu);
    entry->setIcon(LoadIcon(QStringLiteral("recent")));
    entry->setData(commandId);
    entry->setToolTip(path);
    entry->setStatusTip(path);
    return entry;
}

void CallWhenChosen(QAction& entry, const CRecentProjectsMenus::Chosen& chosen)
{
    // Queued: opening the project makes the menu's entries anew.
    QObject::connect(
        &entry, &QAction::triggered, &entry, [chosen, id = entry.data().toInt()] { chosen(id); },
        Qt::QueuedConnection);
}

} // namespace

int CRecentProjectsMenus::ToolbarCommandOf(int position)
{
    return ToolbarCommandBase + position + 1;
}

int CRecentProjectsMenus::PositionOfToolbarCommand(int commandId)
{
    return commandId - ToolbarCommandBase - 1;
}

void CRecentProjectsMenus::FillToolbarMenu(QMenu& menu, const CRecentProjects& projects, const Chosen& chosen)
{
    menu.clear();
    for (const int position : projects.GetOrderByName()) {
        QAction* const entry = MakeEntry(menu, projects.GetPaths()[position], ToolbarCommandOf(position));
        if (position == 0) {
            entry->setIcon(QIcon());
        }
        entry->setCheckable(true);
        entry->setChecked(position == 0);
        CallWhenChosen(*entry, chosen);
        menu.addAction(entry);
    }
}

void CRecentProjectsMenus::UpdateFileMenu(QMenu& menu, const CRecentProjects& projects, const Chosen& chosen)
{
    while (menu.actions().size() > FileMenuItemCount) {
        QAction* const entry = menu.actions().at(SeparatorPosition);
        menu.removeAction(entry);
        entry->deleteLater();
    }
    if (projects.GetPaths().size() <= 1) {
        return;
    }
    // The separator of the menu proper ends the list.
    QAction* const listEnd = menu.actions().at(SeparatorPosition);
    menu.insertSeparator(listEnd);
    for (const int position : projects.GetOrderByName()) {
        if (position == 0) {
            continue;
        }
        // Odd on purpose: 32999 plus the place counted from 1. The current project has the place 1, so that
        // 33000 stands for it and never in this menu.
        const int commandId = CommandRange::FirstRecentProject - 1 + (position + 1);
        QAction* const entry = MakeEntry(menu, projects.GetPaths()[position], commandId);
        CallWhenChosen(*entry, chosen);
        menu.insertAction(listEnd, entry);
    }
}
