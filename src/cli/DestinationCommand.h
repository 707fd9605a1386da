#pragma once

#include <QStringList>

#include "cli/NamedDestinations.h"

// "destination": adds, lists or removes stored FTP destinations. Answers an ExitCode; throws CWrongUse and
// CExceptionBase.
int RunDestination(const QStringList& arguments);

// The same over other stores than the program's own.
int RunDestination(const QStringList& arguments, CNamedDestinations& destinations);
