#pragma once

#include <QString>

class CExceptionBase;
class QWidget;

// Tells a person of a failure from which the program goes on: what happened, why, and what to do.
void ShowFailure(const CExceptionBase& failure, QWidget* parent);

// The three texts of a failure that nobody has handled.
QString LastResortText(const CExceptionBase& failure);

// What a person chose for a project that could not be saved while the window closes.
enum class UnsavedChoice { SaveElsewhere, CloseAnyway, Stay };
UnsavedChoice AskAboutUnsaved(const CExceptionBase& failure, QWidget* parent);
