#pragma once

#include <QString>

// What can be said of a project's file before it is opened. Thread-safe.

// "Trip" stands for "Trip.gallery", unless there is something of the name "Trip" and no "Trip.gallery". A
// path with the ending, in any letter case, and the empty path stay as they are.
QString WithProjectEnding(const QString& path);
bool HasProjectEnding(const QString& path);

// Throws CGenericException for what is there and can't be read from its beginning to its end: a folder, a
// pipe, a device. To open a pipe would wait for its other end for ever.
void RequireOrdinaryFile(const QString& path);

// RequireOrdinaryFile, and throws likewise for a file whose name does not end in ".gallery": any XML file can
// be read as a project, and it would be overwritten with one when the program ends.
void RequireProjectFile(const QString& path);
