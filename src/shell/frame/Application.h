#pragma once

#include <memory>

#include <QApplication>
#include <QString>

#include "common/Exceptions.h"

class QSocketNotifier;

// The application object: ends the message loop at a failure that nobody has handled, and closes the windows
// when the system asks the program to end. One per process, made by Run.
class CApplication final : public QApplication {
public:
    CApplication(int& argumentCount, char** arguments);
    ~CApplication() override;

    bool notify(QObject* receiver, QEvent* event) override;

    // The three texts of the failure that has ended the message loop; empty if it ended in peace.
    const QString& GetFailureText() const { return failureText; }

private:
    void CloseOnSignals();
    void CloseInOrder();
    void EndBy(const CExceptionBase& failure);

    QString failureText;
    std::unique_ptr<QSocketNotifier> signalNotifier;
};

// A run of the program from its start to its end. Returns the exit code.
int RunApplication(int& argumentCount, char** arguments);
