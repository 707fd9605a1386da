#pragma once

#include <functional>

#include <QTimer>

#include "shell/look/FloatingBar.h"

class QLabel;

// A short notice over the lower edge of a widget, with a button that takes back what it tells of. Goes by
// itself after some seconds. Owned by the widget; screen's thread.
class CUndoNotice final : public CFloatingBar {
public:
    // undo: what the button does.
    CUndoNotice(QWidget& over, const std::function<void()>& undo);

    void Tell(const QString& text);

private:
    QLabel* const text;
    QTimer timer;
};
