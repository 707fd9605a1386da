#include "shell/look/PanelToolBar.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>

#include "shell/look/Icons.h"

namespace {

// A tool button with a menu whose arrow stands after the text, at its height. The style's own arrow sits in
// the lower corner.
class CDropDownButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

    QSize sizeHint() const override { return QToolButton::sizeHint() + QSize(arrowMargin, 0); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QStylePainter painter(this);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        // The frame over the whole button, icon and text in what the arrow leaves.
        option.features &= ~QStyleOptionToolButton::HasMenu;
        QStyleOptionToolButton frame = option;
        frame.icon = QIcon();
        frame.text.clear();
        painter.drawComplexControl(QStyle::CC_ToolButton, frame);
        const QRect whole = option.rect;
        option.rect.adjust(0, 0, -arrowSize, 0);
        painter.drawControl(QStyle::CE_ToolButtonLabel, option);
        option.rect = QRect(whole.right() - arrowSize - arrowMargin / 2,
                            whole.center().y() - arrowSize / 2 + 1, arrowSize, arrowSize);
        painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, option);
    }

private:
    static constexpr int arrowSize = 12; // pixels
    static constexpr int arrowMargin = 4;
};

} // namespace

CToolBarDescriptor::CToolBarDescriptor(QWidget* parent) : QToolBar(parent)
{
    setMovable(false);
    setFloatable(false);
    setIconSize(QSize(20, 20));
    setContextMenuPolicy(Qt::PreventContextMenu);
}

QAction* CToolBarDescriptor::AddButton(const Button& button)
{
    QAction* const action = addAction(LoadIcon(button.icon), button.text);
    action->setObjectName(button.objectName);
    action->setToolTip(button.tip);
    action->setStatusTip(button.tip);
    return action;
}

CToolBarWithCombo::CToolBarWithCombo(QWidget* parent) : CToolBarDescriptor(parent) {}

QMenu* CToolBarWithCombo::AddDropDown(const Button& button, Label label)
{
    auto* const dropDown = new CDropDownButton(this);
    auto* const menu = new QMenu(dropDown);
    dropDown->setObjectName(button.objectName);
    dropDown->setIcon(LoadIcon(button.icon));
    dropDown->setToolButtonStyle(label == Label::Before ? Qt::ToolButtonTextBesideIcon
                                                        : Qt::ToolButtonIconOnly);
    dropDown->setPopupMode(QToolButton::InstantPopup);
    dropDown->setFocusPolicy(Qt::TabFocus);
    dropDown->setToolTip(button.tip);
    dropDown->setStatusTip(button.tip);
    dropDown->setAccessibleName(button.text.trimmed().remove(QLatin1Char(':')));
    dropDown->setMenu(menu);
    menu->setObjectName(button.objectName + QStringLiteral("Menu"));
    if (label == Label::Before) {
        auto* const text = new QLabel(button.text, this);
        text->setBuddy(dropDown);
        addWidget(text);
    }
    addWidget(dropDown);
    return menu;
}

void CToolBarWithCombo::ShowChoice(QMenu* menu)
{
    auto* const dropDown = qobject_cast<QToolButton*>(menu->parent());
    QString choice;
    for (const QAction* action : menu->actions()) {
        if (action->isChecked()) {
            choice = action->text();
        }
    }
    dropDown->setText(choice);
    dropDown->setEnabled(!menu->isEmpty());
    dropDown->setAccessibleDescription(choice);
}
