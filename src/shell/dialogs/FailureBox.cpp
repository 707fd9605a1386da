#include "shell/dialogs/FailureBox.h"

#include <QMessageBox>
#include <QPushButton>

#include "common/Exceptions.h"

namespace {

void Fill(QMessageBox& box, const CExceptionBase& failure)
{
    box.setObjectName(QStringLiteral("failure"));
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(Text(StringId::FailureTitle));
    box.setTextFormat(Qt::PlainText);
    box.setText(failure.GetCaption());
    box.setInformativeText(failure.GetDescription() + QStringLiteral("\n\n") + failure.GetAdvice());
}

} // namespace

void ShowFailure(const CExceptionBase& failure, QWidget* parent)
{
    QMessageBox box(parent);
    Fill(box, failure);
    box.exec();
}

UnsavedChoice AskAboutUnsaved(const CExceptionBase& failure, QWidget* parent)
{
    QMessageBox box(parent);
    Fill(box, failure);
    auto* elsewhere = box.addButton(Text(StringId::SaveElsewhere), QMessageBox::AcceptRole);
    auto* close = box.addButton(Text(StringId::CloseWithoutSaving), QMessageBox::DestructiveRole);
    auto* stay = box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(elsewhere);
    box.setEscapeButton(stay);
    box.exec();
    if (box.clickedButton() == elsewhere) {
        return UnsavedChoice::SaveElsewhere;
    }
    return box.clickedButton() == close ? UnsavedChoice::CloseAnyway : UnsavedChoice::Stay;
}

QString LastResortText(const CExceptionBase& failure)
{
    return QStringLiteral("what:") + failure.GetCaption() + QStringLiteral("\nwhy:") +
           failure.GetDescription() + QStringLiteral("\ntodo:") + failure.GetAdvice();
}
