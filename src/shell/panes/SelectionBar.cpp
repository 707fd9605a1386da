#include "shell/panes/SelectionBar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "resources/StringTable.h"
#include "shell/look/Icons.h"

namespace {

QToolButton* MakeToolButton(const char* objectName, QWidget* parent)
{
    auto* const button = new QToolButton(parent);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setAutoRaise(true);
    // The view keeps the focus, and with it the picture that has it.
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

QFrame* MakeSeparator(QWidget* parent)
{
    auto* const line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

CSelectionBar::CSelectionBar(QWidget& over, const std::function<void()>& clear)
    : CFloatingBar(over), text(new QLabel(this)), buttons(new QHBoxLayout)
{
    setObjectName(QStringLiteral("SelectionBar"));
    text->setForegroundRole(QPalette::Text);
    buttons->setSpacing(2);
    QToolButton* const end = MakeToolButton("clearSelection", this);
    end->setIcon(LoadIcon(QStringLiteral("close")));
    end->setToolTip(Text(StringId::ClearSelection));
    end->setAccessibleName(Text(StringId::ClearSelection));
    connect(end, &QToolButton::clicked, this, [clear] { clear(); });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(14, 5, 6, 5);
    line->setSpacing(10);
    line->addWidget(text, 1);
    line->addLayout(buttons);
    line->addWidget(end);
}

void CSelectionBar::SetActions(const QList<QAction*>& actions)
{
    for (QAction* action : actions) {
        if (!action) {
            buttons->addWidget(MakeSeparator(this));
            continue;
        }
        QToolButton* const button = MakeToolButton("", this);
        button->setDefaultAction(action);
        button->setObjectName(action->objectName() + QStringLiteral("Button"));
        // A command without a drawing stands there with its words.
        button->setToolButtonStyle(action->icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
        button->setAccessibleName(action->toolTip());
        buttons->addWidget(button);
    }
}

void CSelectionBar::SetCount(int count)
{
    text->setText(count == 1 ? Text(StringId::PictureSelected) : Text(StringId::PicturesSelected, count));
    setVisible(count > 0);
    if (count > 0) {
        Fit();
    }
}

void FillMenu(QMenu& menu, const QList<QAction*>& actions)
{
    for (QAction* action : actions) {
        if (action) {
            menu.addAction(action);
        } else {
            menu.addSeparator();
        }
    }
}
