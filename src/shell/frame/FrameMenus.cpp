#include "shell/frame/FrameMenus.h"

#include <QMenu>
#include <QMenuBar>

#include "shell/frame/Commands.h"
#include "shell/frame/ProjectPath.h"
#include "shell/frame/RecentProjects.h"
#include "shell/look/Icons.h"
#include "shell/panes/pages/ViewPagesToolBar.h"

namespace {

constexpr int LastingItemCount = 7; // that always stand in the menu
constexpr int SeparatorPosition = 5;

void RemoveFormerEntries(QMenu& menu)
{
    while (menu.actions().size() > LastingItemCount) {
        QAction* const entry = menu.actions().at(SeparatorPosition);
        menu.removeAction(entry);
        entry->deleteLater();
    }
}

QAction* MakeEntry(QMenu& menu, const QString& path, int commandId)
{
    QString name = ProjectNameOf(path);
    auto* entry = new QAction(LoadIcon(QStringLiteral("recent")),
                              name.replace(QLatin1Char('&'), QStringLiteral("&&")), &menu);
    entry->setData(commandId);
    entry->setToolTip(path);
    entry->setStatusTip(path);
    return entry;
}

} // namespace

FrameMenus::FrameMenus(QMenuBar& menuBar, const CCommandActions& actions, const PageCommands& page)
{
    file = menuBar.addMenu(Text(StringId::FileMenu));
    file->addActions({actions.Get(CommandId::New), actions.Get(CommandId::Open), actions.Get(CommandId::Save),
                      actions.Get(CommandId::SaveAs), actions.Get(CommandId::EarlierVersion)});
    file->addSeparator();
    file->addAction(actions.Get(CommandId::Exit));
    file->setToolTipsVisible(true);

    QMenu* const edit = menuBar.addMenu(Text(StringId::EditMenu));
    edit->addActions({actions.Get(CommandId::Undo), actions.Get(CommandId::Redo)});
    edit->addSeparator();
    edit->addActions({actions.Get(CommandId::Cut), actions.Get(CommandId::Copy),
                      actions.Get(CommandId::Paste), actions.Get(CommandId::Clear)});
    edit->addSeparator();
    edit->addAction(actions.Get(CommandId::SelectAll));

    QAction* const layoutItem = actions.Get(CommandId::LayoutMenu);
    layoutItem->setMenu(&page.layouts);
    QAction* const styleItem = actions.Get(CommandId::StyleMenu);
    styleItem->setMenu(&page.styles);
    QMenu* const gallery = menuBar.addMenu(Text(StringId::GalleryMenu));
    gallery->addActions({actions.Get(CommandId::Deploy), layoutItem, styleItem, &page.visibility});
    gallery->addMenu(Text(StringId::PicturesMenu))
        ->addActions({actions.Get(CommandId::TurnLeft), actions.Get(CommandId::TurnRight),
                      actions.Get(CommandId::MoveToFront), actions.Get(CommandId::MoveToEnd),
                      actions.Get(CommandId::MoveToGallery), actions.Get(CommandId::CopyToGallery)});
    gallery->addMenu(Text(StringId::SortMenu))
        ->addActions({actions.Get(CommandId::SortByName), actions.Get(CommandId::SortByDateTaken),
                      actions.Get(CommandId::SortByFileDate), actions.Get(CommandId::ReverseOrder)});
    gallery->addAction(actions.Get(CommandId::EditPictureTexts));
    gallery->addSeparator();
    gallery->addActions({actions.Get(CommandId::RenameGallery), actions.Get(CommandId::DuplicateGallery),
                         actions.Get(CommandId::DeleteGallery)});

    menuBar.addMenu(Text(StringId::EffectsMenu))
        ->addActions({actions.Get(CommandId::ImageWatermark), actions.Get(CommandId::ImageSignature),
                      actions.Get(CommandId::Ads)});
    menuBar.addMenu(Text(StringId::SourceMenu))
        ->addActions({actions.Get(CommandId::OpenFolder), actions.Get(CommandId::FindMissing),
                      actions.Get(CommandId::EmptyCache)});
    menuBar.addMenu(Text(StringId::HelpMenu))->addAction(actions.Get(CommandId::About));
}

PictureMenus ListPictureCommands(const CCommandActions& actions)
{
    const auto get = [&](CommandId id) {
        return actions.Get(id);
    };
    return {.pageBar = {get(CommandId::TurnLeft), get(CommandId::TurnRight), nullptr,
                        get(CommandId::MoveToFront), get(CommandId::MoveToEnd), get(CommandId::MoveToGallery),
                        get(CommandId::CopyToGallery), nullptr, get(CommandId::Clear)},
            .pageMenu = {get(CommandId::TurnLeft), get(CommandId::TurnRight), nullptr,
                         get(CommandId::MoveToFront), get(CommandId::MoveToEnd),
                         get(CommandId::MoveToGallery), get(CommandId::CopyToGallery), nullptr,
                         get(CommandId::Cut), get(CommandId::Copy), get(CommandId::Paste), nullptr,
                         get(CommandId::SelectAll), get(CommandId::Clear)},
            .folderBar = {get(CommandId::AddSelected), get(CommandId::Copy)},
            .folderMenu = {get(CommandId::AddSelected), nullptr, get(CommandId::Copy),
                           get(CommandId::SelectAll)}};
}

void UpdateRecentProjectsMenu(QMenu& menu, const CRecentProjects& projects,
                              const std::function<void(int commandId)>& chosen)
{
    RemoveFormerEntries(menu);
    if (projects.GetPaths().size() <= 1) {
        return;
    }
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
        // Queued: opening a project makes the menu's entries anew.
        QObject::connect(
            entry, &QAction::triggered, entry, [chosen, commandId] { chosen(commandId); },
            Qt::QueuedConnection);
        menu.insertAction(listEnd, entry);
    }
}

void UpdateRecentProjectsMenu(CViewPagesToolBar& toolBar, const CRecentProjects& projects)
{
    std::vector<CViewPagesToolBar::RecentProject> entries;
    for (const int position : projects.GetOrderByName()) {
        entries.push_back({ProjectNameOf(projects.GetPaths()[position]), position});
    }
    toolBar.SetRecentProjects(entries);
}
