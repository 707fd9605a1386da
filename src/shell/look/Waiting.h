#pragma once

#include <functional>

#include <QString>

class CStopSignal;
class QWidget;

// Does long work on a thread of its own while a dialog says so, with a button that stops it. Returns when the
// work has ended, which it does soon after the signal. Screen's thread.
void WorkWhileWaiting(const QString& text, const std::function<void(const CStopSignal& stop)>& work,
                      QWidget* parent);
