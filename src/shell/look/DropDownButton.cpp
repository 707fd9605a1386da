#include "shell/look/DropDownButton.h"

#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace {

constexpr int arrowSize = 12; // pixels
constexpr int arrowMargin = 4;

} // namespace

QSize CDropDownButton::sizeHint() const
{
    return QToolButton::sizeHint() + QSize(arrowMargin, 0);
}

void CDropDownButton::paintEvent(QPaintEvent*)
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
    option.rect = QRect(whole.right() - arrowSize - arrowMargin / 2, whole.center().y() - arrowSize / 2 + 1,
                        arrowSize, arrowSize);
    painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, option);
}
