#pragma once

#include <QStringList>

// "info": prints a project's tree of galleries, with "--clusters SIZE" also the pictures of each gallery
// grouped by date, groups below that size merged with their neighbours. Answers an ExitCode; throws CWrongUse
// and CExceptionBase.
int RunInfo(const QStringList& arguments);
