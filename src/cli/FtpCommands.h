#pragma once

#include <QStringList>

// The commands that look at a server and its directories. Each answers an ExitCode and throws CWrongUse and
// CExceptionBase. No password is ever printed.

// "ftp-test": logs in, enters the directory and prints what came of it.
int RunFtpTest(const QStringList& arguments);
// "ftp-ls": lists a directory or, if that isn't there, the deepest one on its path that is.
int RunFtpList(const QStringList& arguments);
int RunFtpMakeDirectory(const QStringList& arguments);
int RunFtpRename(const QStringList& arguments);
