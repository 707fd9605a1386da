#pragma once

#include <functional>
#include <vector>

#include "shell/look/PanelToolBar.h"

class CGallery;
class CGalleryProject;
class CPanelTitle;

// The toolbar of the pages view: the document commands, the menus of layouts and styles, and the name of the
// project. Owned by its panel; screen's thread.
class CViewPagesToolBar final : public CToolBarWithCombo {
public:
    // What the choices call, with a place from 0.
    struct Commands {
        std::function<void(int32_t place)> chooseLayout;
        std::function<void(int32_t place)> chooseStyle;
        std::function<void(int32_t place)> chooseRecentProject;
        std::function<void()> changeVisibility;
    };
    // A line of the recent projects; the place in the list of recent projects is from 0.
    struct RecentProject {
        QString name;
        int32_t place = 0;
    };

    static constexpr int FirstLayoutId = 5000;
    static constexpr int FirstStyleId = 5200;
    static constexpr int FirstRecentId = 0xE101;

    explicit CViewPagesToolBar(Commands commands, QWidget* parent = nullptr);

    // The frame's actions, at the front; a null entry is a separator. Borrowed. The action whose object name
    // is "OpenProject" gets the drop-down of recent projects.
    void AddDocumentCommands(const QList<QAction*>& actions);
    // The one at place 0, the current project, has the check mark. In the order in which they are to stand.
    void SetRecentProjects(const std::vector<RecentProject>& projects);

    // The same menus are for the frame's menu bar. The id of an entry is its action's data.
    QMenu& GetLayoutMenu() { return *layoutMenu; }
    QMenu& GetStyleMenu() { return *styleMenu; }
    QAction& GetVisibility() { return *visibility; }

    void SetTitle(const QString& text);
    QString GetTitle() const;

    // Null: the menus become empty.
    void UpdateLayoutMenu(const CGallery* gallery);
    void UpdateStyleMenu(const CGallery* gallery);

private:
    Commands commands;
    QMenu* layoutMenu;
    QMenu* styleMenu;
    QAction* visibility = nullptr;
    QMenu* recentMenu;
    CPanelTitle* title;
    QAction* firstOwnAction;
};

// The keys of the styles that go with the gallery's layout, in the order of the menu: those whose group is
// exactly that of the layout, in the order of their keys.
std::vector<QString> GetStylesOfCurrentLayout(const CGallery& gallery);
