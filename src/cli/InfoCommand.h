#pragma once

#include <QStringList>

// "info": prints a project's tree of galleries. Answers an ExitCode; throws CWrongUse and CExceptionBase.
int RunInfo(const QStringList& arguments);
