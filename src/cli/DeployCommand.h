#pragma once

#include <QStringList>

// "deploy": writes the finished site of a project to a folder or a server. An interrupt cancels it. Answers
// an ExitCode; throws CWrongUse and CExceptionBase.
int RunDeploy(const QStringList& arguments);
