#pragma once

#include <QString>

class CExceptionBase;
class QWidget;

// Tells a person of a failure from which the program goes on: what happened, why, and what to do.
void ShowFailure(const CExceptionBase& failure, QWidget* parent);

// The three texts of a failure that nobody has handled.
QString LastResortText(const CExceptionBase& failure);
