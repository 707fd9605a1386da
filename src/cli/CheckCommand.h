#pragma once

#include <QStringList>

// "check": parses the pages of layout definitions and prints "FILE:LINE: TEXT" for each error. Answers
// ExitFailed if there was any; throws CWrongUse.
int RunCheck(const QStringList& arguments);
