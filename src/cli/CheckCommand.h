#pragma once

#include <QStringList>

// "check": parses the pages of layout definitions with the files that they include and prints
// "FILE:LINE: TEXT" for each error and "FILE:LINE: warning: TEXT" for what is hardly meant. Answers
// ExitFailed if there was an error; throws CWrongUse.
int RunCheck(const QStringList& arguments);
