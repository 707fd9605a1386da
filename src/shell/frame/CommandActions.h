#pragma once

#include <functional>
#include <map>

#include "shell/frame/CommandIds.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

// The actions of the command table: each with its icon, keys, tooltip and status tip. The actions belong to
// the window, so that their keys work wherever the focus is. Owned by the frame.
class CCommandActions {
public:
    // command: called with the number of the command that was chosen.
    CCommandActions(QWidget& window, const std::function<void(int commandId)>& command);

    QAction* Get(CommandId id) const { return actions.at(id); }

private:
    std::map<CommandId, QAction*> actions;
};

// The menus of the frame. layouts, styles: filled by the pages view.
struct FrameMenus {
    FrameMenus(QMenuBar& menuBar, const CCommandActions& actions, QMenu& layouts, QMenu& styles);

    QMenu* file;
};
