#pragma once

#include <QDialog>

struct CTaskResult;

// Shows the result of a task with its whole conversation. Owned by its caller; the result is borrowed for the
// construction alone.
class CFTPEngineResLibDlgTaskResult final : public QDialog {
    Q_OBJECT

public:
    CFTPEngineResLibDlgTaskResult(const CTaskResult& result, QWidget* parent);
};
