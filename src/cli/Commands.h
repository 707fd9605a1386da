#pragma once

#include <QStringList>

class CNamedDestinations;

// The commands. Each answers an ExitCode and throws CWrongUse and CExceptionBase.

// "new": makes a project of pictures and folders. Never overwrites.
int RunNew(const QStringList& arguments);

// "deploy": writes the finished site of a project to a folder or a server. An interrupt cancels it.
int RunDeploy(const QStringList& arguments);

// "info": prints a project's tree of galleries, with "--clusters SIZE" also the pictures of each gallery
// grouped by date, groups below that size merged with their neighbours.
int RunInfo(const QStringList& arguments);

// "check": parses the pages of layout definitions with the files that they include and prints
// "FILE:LINE: TEXT" for each error and "FILE:LINE: warning: TEXT" for what is hardly meant.
int RunCheck(const QStringList& arguments);

// "relink": looks below the named folders for the pictures and watermarks of a project that are not there,
// and saves where they are now.
int RunRelink(const QStringList& arguments);

// "cache": prints how many bytes the images take that the views and covers keep from run to run, and the
// sites of servers, or removes them.
int RunCache(const QStringList& arguments);

// "destination": adds, lists or removes stored FTP destinations.
int RunDestination(const QStringList& arguments);
// The same over other stores than the program's own.
int RunDestination(const QStringList& arguments, CNamedDestinations& destinations);

// The commands that look at a server and its directories. No password is ever printed.

// "ftp-test": logs in, enters the directory and prints what came of it.
int RunFTPTest(const QStringList& arguments);
// "ftp-ls": lists a directory or, if that isn't there, the deepest one on its path that is.
int RunFTPList(const QStringList& arguments);
int RunFTPMakeDirectory(const QStringList& arguments);
int RunFTPRename(const QStringList& arguments);
