#pragma once

#include <QCursor>
#include <QGuiApplication>

// The cursor of waiting for as long as it lives. Screen's thread.
class CWaitCursor final {
public:
    CWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
};
