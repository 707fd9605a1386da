#pragma once

#include <QLabel>
#include <QString>

class QBoxLayout;
class QDialog;
class QDialogButtonBox;
class QFormLayout;
class QPlainTextEdit;
class QPushButton;
class QWidget;

// What all dialogs do alike, so that each control has a label with a key, a name for screen readers, and an
// object name by which tests find it. Screen's thread.

// "&Margin:" gives "Margin".
QString AccessibleNameOf(const QString& label);

// Gives the control both names; label is as AccessibleNameOf takes it.
void NameControl(QWidget& control, const char* objectName, const QString& label);

// A label with the control as its buddy, for layouts that place it themselves.
QLabel* MakeLabel(const QString& label, QWidget& control);

// A row of a form: label and control.
void AddRow(QFormLayout& form, const QString& label, QWidget& control);

QPushButton* MakeButton(const QString& label, const char* objectName, QWidget* parent);

// A text of several lines to read, to select from and to copy.
QPlainTextEdit* MakeReport(const QString& text, const char* objectName, const QString& label);

// "OK" and "Cancel" ("ok" and "cancel") at the end of the layout, connected to the dialog's
// accept and reject.
QDialogButtonBox* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout);

// One button "OK", which Enter and Escape press as well.
QDialogButtonBox* AddOk(QDialog& dialog, QBoxLayout& layout);
