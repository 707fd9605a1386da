#pragma once

#include <functional>
#include <vector>

#include "shell/look/PanelToolBar.h"

class CPanelTitle;

// The toolbar of the folder view: the folders that were used last, the folder browser, and the name of the
// folder that is shown. Owned by its panel; screen's thread.
class CViewFolderToolBar final : public CToolBarWithCombo {
public:
    struct Commands {
        std::function<void()> browse;
        std::function<void(const QString& folder)> chooseFolder;
    };
    explicit CViewFolderToolBar(const Commands& commands, QWidget* parent = nullptr);

    void SetTitle(const QString& text);
    QString GetTitle() const;

    // The entries show the last names of the folders, and keep the full paths as their data; current has the
    // check mark. Entries that stay keep their places, new ones are appended.
    void UpdateFoldersMenu(const std::vector<QString>& folders, const QString& current);
    QMenu& GetFoldersMenu() { return *foldersMenu; }

private:
    QMenu* foldersMenu;
    CPanelTitle* title;
};
