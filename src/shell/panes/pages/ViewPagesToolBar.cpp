#include "shell/panes/pages/ViewPagesToolBar.h"

#include <QActionGroup>
#include <QMenu>
#include <QToolButton>

#include "document/catalogue/GalleryCatalogue.h"
#include "document/galleries/Gallery.h"
#include "resources/StringTable.h"
#include "shell/look/Panel.h"

namespace {

// "&" is no keyboard letter in the name of a layout.
QString MenuText(QString name)
{
    return name.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

// The places of a menu count from its first id.
void FillMenu(QMenu& menu, const QStringList& names, int firstId)
{
    menu.clear();
    delete menu.findChild<QActionGroup*>();
    auto* const group = new QActionGroup(&menu);
    for (const QString& name : names) {
        QAction* const action = menu.addAction(MenuText(name));
        action->setCheckable(true);
        action->setData(firstId++);
        group->addAction(action);
    }
}

void CheckEntry(QMenu& menu, qsizetype place)
{
    const QList<QAction*> entries = menu.actions();
    if (place >= 0 && place < entries.size()) {
        entries[place]->setChecked(true);
    }
}

// The choice fills the menu anew, which must not happen while one of its entries is at work.
void ConnectMenu(QMenu& menu, int firstId, const std::function<void(int32_t)>& choose)
{
    QObject::connect(&menu, &QMenu::triggered, &menu, [&menu, firstId, choose](const QAction* action) {
        const int32_t place = action->data().toInt() - firstId;
        QMetaObject::invokeMethod(
            &menu, [choose, place] { choose(place); }, Qt::QueuedConnection);
    });
}

} // namespace

CViewPagesToolBar::CViewPagesToolBar(Commands newCommands, QWidget* parent)
    : CToolBarWithCombo(parent), commands(std::move(newCommands))
{
    setObjectName(QStringLiteral("PagesToolBar"));
    firstOwnAction = addSeparator();
    firstOwnAction->setVisible(false);
    layoutMenu = AddDropDown({.objectName = QStringLiteral("LayoutButton"),
                              .icon = QStringLiteral("layout"),
                              .text = Text(StringId::LayoutLabel),
                              .tip = Text(StringId::LayoutTip)});
    styleMenu = AddDropDown({.objectName = QStringLiteral("StyleButton"),
                             .icon = QStringLiteral("style"),
                             .text = Text(StringId::StyleLabel),
                             .tip = Text(StringId::StyleTip)});
    ConnectMenu(*layoutMenu, FirstLayoutId, commands.chooseLayout);
    ConnectMenu(*styleMenu, FirstStyleId, commands.chooseStyle);
    addSeparator();
    visibility = AddButton({.objectName = QStringLiteral("ChangeVisibility"),
                            .icon = QStringLiteral("visibility"),
                            .text = Text(StringId::VisibilityCommand),
                            .tip = Text(StringId::VisibilityTip)});
    connect(visibility, &QAction::triggered, this, [this] { commands.changeVisibility(); });
    title = new CPanelTitle(this);
    title->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    addWidget(title);
    recentMenu = new QMenu(this);
    recentMenu->setObjectName(QStringLiteral("RecentProjectsMenu"));
    ConnectMenu(*recentMenu, FirstRecentId, commands.chooseRecentProject);
}

void CViewPagesToolBar::AddDocumentCommands(const QList<QAction*>& actions)
{
    for (QAction* action : actions) {
        if (!action) {
            insertSeparator(firstOwnAction);
        } else {
            insertAction(firstOwnAction, action);
        }
        if (action && action->objectName() == QStringLiteral("OpenProject")) {
            auto* const button = qobject_cast<QToolButton*>(widgetForAction(action));
            button->setMenu(recentMenu);
            button->setPopupMode(QToolButton::MenuButtonPopup);
        }
    }
}

void CViewPagesToolBar::SetRecentProjects(const std::vector<RecentProject>& projects)
{
    recentMenu->clear();
    for (const RecentProject& project : projects) {
        QAction* const action = recentMenu->addAction(MenuText(project.name));
        action->setCheckable(true);
        action->setChecked(project.place == 0);
        action->setData(FirstRecentId + project.place);
    }
}

void CViewPagesToolBar::SetTitle(const QString& text)
{
    title->SetTitle(text);
}

QString CViewPagesToolBar::GetTitle() const
{
    return title->GetTitle();
}

void CViewPagesToolBar::UpdateLayoutMenu(const CGallery* gallery)
{
    QStringList names;
    qsizetype current = -1;
    if (gallery) {
        for (const auto& [key, layout] : gallery->GetLayout().GetCatalogue().GetTemplates()) {
            if (key == gallery->GetLayout().GetTemplateKey()) {
                current = names.size();
            }
            names += layout.GetName();
        }
    }
    FillMenu(*layoutMenu, names, FirstLayoutId);
    CheckEntry(*layoutMenu, current);
    ShowChoice(layoutMenu);
}

void CViewPagesToolBar::UpdateStyleMenu(const CGallery* gallery)
{
    QStringList names;
    qsizetype current = -1;
    if (gallery) {
        const CGalleryCatalogue::Styles& styles = gallery->GetLayout().GetCatalogue().GetStyles();
        for (const QString& key : GetStylesOfCurrentLayout(*gallery)) {
            if (key == gallery->GetLayout().GetStyleKey()) {
                current = names.size();
            }
            names += styles.at(key).name;
        }
    }
    FillMenu(*styleMenu, names, FirstStyleId);
    CheckEntry(*styleMenu, current);
    ShowChoice(styleMenu);
}

std::vector<QString> GetStylesOfCurrentLayout(const CGallery& gallery)
{
    const CGalleryTemplate* const layout = gallery.GetLayout().GetTemplate();
    const QString group = layout ? layout->GetGroup() : QString();
    std::vector<QString> keys;
    for (const auto& [key, style] : gallery.GetLayout().GetCatalogue().GetStyles()) {
        if (style.group == group) {
            keys.push_back(key);
        }
    }
    return keys;
}
