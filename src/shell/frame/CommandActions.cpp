#include "shell/frame/CommandActions.h"

#include <QAction>
#include <QMenuBar>

#include "shell/frame/CommandTable.h"
#include "shell/look/Icons.h"

namespace {

// "New (Ctrl+N)"
QString ToolTipOf(const QAction& action)
{
    QString text = action.text();
    text.remove(QLatin1Char('&')).remove(QStringLiteral("..."));
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    return keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys);
}

QAction* MakeAction(const CommandRow& row, QWidget& window)
{
    auto* action = new QAction(LoadIcon(QString::fromLatin1(row.icon)), Text(row.text), &window);
    action->setObjectName(QString::fromLatin1(row.name));
    action->setShortcuts(KeysOf(row));
    action->setToolTip(ToolTipOf(*action));
    action->setStatusTip(Text(row.tip));
    action->setData(static_cast<int>(row.id));
    // No guess of the platform's by the text: the menu is settled.
    action->setMenuRole(QAction::NoRole);
    return action;
}

} // namespace

CCommandActions::CCommandActions(QWidget& window, const std::function<void(int commandId)>& command)
{
    for (const CommandRow& row : GetCommandTable()) {
        QAction* const action = MakeAction(row, window);
        QObject::connect(action, &QAction::triggered, &window,
                         [command, id = static_cast<int>(row.id)] { command(id); });
        window.addAction(action);
        actions[row.id] = action;
    }
}

FrameMenus::FrameMenus(QMenuBar& menuBar, const CCommandActions& actions, QMenu& layouts, QMenu& styles)
{
    file = menuBar.addMenu(Text(StringId::FileMenu));
    file->addActions({actions.Get(CommandId::New), actions.Get(CommandId::Open), actions.Get(CommandId::Save),
                      actions.Get(CommandId::SaveAs)});
    file->addSeparator();
    file->addAction(actions.Get(CommandId::Exit));
    file->setToolTipsVisible(true);

    QAction* const layoutItem = actions.Get(CommandId::LayoutMenu);
    layoutItem->setMenu(&layouts);
    QAction* const styleItem = actions.Get(CommandId::StyleMenu);
    styleItem->setMenu(&styles);
    menuBar.addMenu(Text(StringId::GalleryMenu))
        ->addActions({actions.Get(CommandId::Deploy), layoutItem, styleItem});

    menuBar.addMenu(Text(StringId::EffectsMenu))
        ->addActions({actions.Get(CommandId::ImageWatermark), actions.Get(CommandId::ImageSignature),
                      actions.Get(CommandId::Ads)});
    menuBar.addMenu(Text(StringId::SourceMenu))->addAction(actions.Get(CommandId::OpenFolder));
    menuBar.addMenu(Text(StringId::HelpMenu))->addAction(actions.Get(CommandId::About));
}
