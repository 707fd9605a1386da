#include "shell/panes/folder/ViewFolderToolBar.h"

#include <algorithm>

#include <QActionGroup>
#include <QMenu>
#include <QToolButton>

#include "resources/StringTable.h"
#include "shell/look/Panel.h"
#include "shell/panes/folder/FolderPages.h"

namespace {

bool Contains(const std::vector<QString>& folders, const QString& folder)
{
    return std::any_of(folders.begin(), folders.end(), [&](const QString& each) { return each == folder; });
}

bool HasEntry(const QMenu& menu, const QString& folder)
{
    const QList<QAction*> entries = menu.actions();
    return std::any_of(entries.begin(), entries.end(),
                       [&](const QAction* entry) { return entry->data().toString() == folder; });
}

} // namespace

CViewFolderToolBar::CViewFolderToolBar(const Commands& commands, QWidget* parent) : CToolBarWithCombo(parent)
{
    setObjectName(QStringLiteral("FolderToolBar"));
    foldersMenu = AddDropDown({.objectName = QStringLiteral("FoldersButton"),
                               .icon = QStringLiteral("recent"),
                               .text = Text(StringId::RecentFoldersName),
                               .tip = Text(StringId::ChooseFolderFromList)},
                              Label::None);
    foldersMenu->setToolTipsVisible(true);
    new QActionGroup(foldersMenu); // of all entries
    connect(foldersMenu, &QMenu::triggered, this,
            [commands](const QAction* entry) { commands.chooseFolder(entry->data().toString()); });
    QAction* const browse = AddButton({.objectName = QStringLiteral("BrowseFolder"),
                                       .icon = QStringLiteral("open-folder"),
                                       .text = Text(StringId::LocateFolder),
                                       .tip = Text(StringId::LocateFolder)});
    connect(browse, &QAction::triggered, this, [commands] { commands.browse(); });
    title = new CPanelTitle(this);
    addWidget(title);
}

void CViewFolderToolBar::SetTitle(const QString& text)
{
    title->SetTitle(text);
}

QString CViewFolderToolBar::GetTitle() const
{
    return title->GetTitle();
}

void CViewFolderToolBar::UpdateFoldersMenu(const std::vector<QString>& folders, const QString& current)
{
    for (QAction* const entry : foldersMenu->actions()) {
        if (!Contains(folders, entry->data().toString())) {
            delete entry;
        }
    }
    auto* const group = foldersMenu->findChild<QActionGroup*>();
    for (const QString& folder : folders) {
        if (!HasEntry(*foldersMenu, folder)) {
            // "&" is no keyboard letter in the name of a folder.
            QAction* const entry =
                foldersMenu->addAction(FolderName(folder).replace(QLatin1Char('&'), QStringLiteral("&&")));
            entry->setCheckable(true);
            entry->setData(folder);
            entry->setToolTip(folder);
            entry->setStatusTip(folder);
            group->addAction(entry);
        }
    }
    for (QAction* const entry : foldersMenu->actions()) {
        entry->setChecked(entry->data().toString() == current);
    }
    ShowChoice(foldersMenu);
}
