#include "shell/look/FloatingBar.h"

#include <algorithm>

#include <QEvent>
#include <QGraphicsDropShadowEffect>

namespace {

constexpr int distance = 16; // pixels from the edges of the widget
constexpr int gap = 8;       // pixels between two bars
constexpr int shadowSize = 18;

} // namespace

CFloatingBar::CFloatingBar(QWidget& over) : QFrame(&over), over(over)
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    auto* const shadow = new QGraphicsDropShadowEffect(this);
    shadow->setBlurRadius(shadowSize);
    shadow->setOffset(0, 2);
    shadow->setColor(QColor(0, 0, 0, 110));
    setGraphicsEffect(shadow);
    over.installEventFilter(this);
    hide();
}

void CFloatingBar::Fit()
{
    const QSize wanted = sizeHint();
    resize(std::min(wanted.width(), over.width() - 2 * distance), wanted.height());
    Arrange(over);
}

bool CFloatingBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &over && event->type() == QEvent::Resize && isVisible()) {
        Fit();
    }
    return QFrame::eventFilter(watched, event);
}

void CFloatingBar::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    Fit();
    raise();
}

void CFloatingBar::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    Arrange(over);
}

void CFloatingBar::Arrange(const QWidget& over)
{
    int bottom = over.height() - distance;
    for (QObject* child : over.children()) {
        auto* const bar = dynamic_cast<CFloatingBar*>(child);
        if (bar && !bar->isHidden()) {
            bar->move((over.width() - bar->width()) / 2, bottom - bar->height());
            bottom -= bar->height() + gap;
        }
    }
}
