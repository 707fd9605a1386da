#include "shell/look/DialogParts.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPlainTextEdit>
#include <QPushButton>

#include "resources/StringTable.h"

namespace {

constexpr int SpaceAboveButtons = 6; // beside that of the layout

// Without a key of its own, which the dialog's other controls need: Enter and Escape do it.
void NameButton(QPushButton& button, const char* objectName, const QString& label)
{
    button.setText(label);
    NameControl(button, objectName, label);
}

QDialogButtonBox* AddButtons(QDialogButtonBox::StandardButtons kinds, QDialog& dialog, QBoxLayout& layout)
{
    auto* buttons = new QDialogButtonBox(kinds, &dialog);
    NameButton(*buttons->button(QDialogButtonBox::Ok), "ok", Text(StringId::OkButton));
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addSpacing(SpaceAboveButtons);
    layout.addWidget(buttons);
    return buttons;
}

} // namespace

QString AccessibleNameOf(const QString& label)
{
    QString name = label;
    name.remove(QLatin1Char('&'));
    while (name.endsWith(QLatin1Char(':')) || name.endsWith(QLatin1Char('.'))) {
        name.chop(1);
    }
    return name;
}

void NameControl(QWidget& control, const char* objectName, const QString& label)
{
    control.setObjectName(QLatin1String(objectName));
    control.setAccessibleName(AccessibleNameOf(label));
}

QLabel* MakeLabel(const QString& label, QWidget& control)
{
    auto* widget = new QLabel(label);
    widget->setBuddy(&control);
    return widget;
}

void AddRow(QFormLayout& form, const QString& label, QWidget& control)
{
    form.addRow(MakeLabel(label, control), &control);
}

QPushButton* MakeButton(const QString& label, const char* objectName, QWidget* parent)
{
    auto* button = new QPushButton(label, parent);
    NameControl(*button, objectName, label);
    // Enter stays with the button that ends the dialog.
    button->setAutoDefault(false);
    return button;
}

QPlainTextEdit* MakeReport(const QString& text, const char* objectName, const QString& label)
{
    auto* report = new QPlainTextEdit(text);
    NameControl(*report, objectName, label);
    report->setReadOnly(true);
    report->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    report->setTabChangesFocus(true);
    return report;
}

QDialogButtonBox* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout)
{
    QDialogButtonBox* buttons = AddButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog, layout);
    NameButton(*buttons->button(QDialogButtonBox::Cancel), "cancel", Text(StringId::CancelButton));
    return buttons;
}

QDialogButtonBox* AddOk(QDialog& dialog, QBoxLayout& layout)
{
    return AddButtons(QDialogButtonBox::Ok, dialog, layout);
}
