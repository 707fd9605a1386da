#pragma once

#include <QStringList>

// "new": makes a project of pictures and folders. Never overwrites. Answers an ExitCode; throws CWrongUse and
// CExceptionBase.
int RunNew(const QStringList& arguments);
