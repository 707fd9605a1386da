#include "shell/web/PersonInput.h"

#include <QChildEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace {

// Alone they ask for nothing.
bool IsModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr;
}

} // namespace

void CPersonInput::Watch(QWidget& widget)
{
    widget.installEventFilter(this);
    for (QWidget* child : widget.findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
}

bool CPersonInput::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ChildAdded: {
        QObject* const child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType()) {
            Watch(*static_cast<QWidget*>(child));
        }
        break;
    }
    case QEvent::KeyPress:
        if (!IsModifier(static_cast<QKeyEvent*>(event)->key())) {
            Press(*static_cast<QWidget*>(watched), *static_cast<QInputEvent*>(event));
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
        Press(*static_cast<QWidget*>(watched), *static_cast<QInputEvent*>(event));
        break;
    case QEvent::MouseMove:
        // A button that is held down while the mouse moves: a drag begins late.
        if (static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton) {
            Renew();
        }
        break;
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
        // A click happens when the button is let go, however long it was down.
        Renew();
        break;
    default:
        break;
    }
    return false;
}

void CPersonInput::Press(QWidget& target, const QInputEvent& event)
{
    // What a widget has no use for comes to its parent as well.
    if (lastTarget && lastTarget != &target && target.isAncestorOf(lastTarget) &&
        event.timestamp() == lastTime) {
        return;
    }
    lastTarget = &target;
    lastTime = event.timestamp();
    ++lastPress;
    presses.emplace_back(life);
    isUnderway = false;
    Renew();
}

void CPersonInput::Renew()
{
    if (presses.empty() || isUnderway) {
        return;
    }
    presses.back().setRemainingTime(life);
    isUnderway = true;
    pressed(lastPress);
}

void CPersonInput::Arrived(int press)
{
    if (press == lastPress) {
        isUnderway = false;
        if (!presses.empty()) {
            presses.back().setRemainingTime(life);
        }
    }
}

bool CPersonInput::Take()
{
    while (presses.size() > (isUnderway ? 1 : 0) && presses.front().hasExpired()) {
        presses.pop_front();
    }
    const bool isGood = !presses.empty();
    if (isGood) {
        presses.pop_front();
    }
    return isGood;
}
