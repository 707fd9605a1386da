#pragma once

#include <QStringList>

// Runs the named command with the arguments after the program's name. Answers an ExitCode. Failures go to
// standard error: three lines for failed work, the reason and the usage for wrong use.
int RunCommandLine(const QStringList& arguments);
