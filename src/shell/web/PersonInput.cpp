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

bool CPersonInput::eventFilter(QObject*, QEvent* event)
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
            Press();
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
        Press();
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

void CPersonInput::Press()
{
    ++lastPress;
    isPressed = true;
    isUnderway = false;
    Renew();
}

void CPersonInput::Renew()
{
    if (!isPressed || isUnderway) {
        return;
    }
    deadline.setRemainingTime(life);
    isUnderway = true;
    pressed(lastPress);
}

void CPersonInput::Arrived(int press)
{
    if (press == lastPress) {
        isUnderway = false;
        deadline.setRemainingTime(life);
    }
}

bool CPersonInput::Take()
{
    const bool isGood = isPressed && (isUnderway || !deadline.hasExpired());
    isPressed = false;
    return isGood;
}
