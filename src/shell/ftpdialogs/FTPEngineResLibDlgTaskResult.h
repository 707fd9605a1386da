#pragma once

#include <QDialog>
#include <QString>

struct CTaskResult;

// What the result of a task says to a person: a head, and for a failure the whole conversation, in which the
// password is masked already. Lines end in "\r\n".
QString DescribeTaskResult(const CTaskResult& result);

// Shows the result of a task with its whole conversation. Owned by its caller; the result is borrowed for the
// construction alone.
class CFTPEngineResLibDlgTaskResult final : public QDialog {
    Q_OBJECT

public:
    CFTPEngineResLibDlgTaskResult(const CTaskResult& result, QWidget* parent);
};
