#include "shell/frame/FailureBox.h"

#include <QMessageBox>

#include "common/Exceptions.h"

void ShowFailure(const CExceptionBase& failure, QWidget* parent)
{
    QMessageBox box(QMessageBox::Warning, Text(StringId::ProgramName), failure.GetCaption(), QMessageBox::Ok,
                    parent);
    box.setObjectName(QStringLiteral("failure"));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(failure.GetDescription() + QStringLiteral("\n\n") + failure.GetAdvice());
    box.exec();
}

QString LastResortText(const CExceptionBase& failure)
{
    return QStringLiteral("what:") + failure.GetCaption() + QStringLiteral("\nwhy:") +
           failure.GetDescription() + QStringLiteral("\ntodo:") + failure.GetAdvice();
}
