#pragma once

#include <QString>

// One form for all spellings of a path: absolute, without "." and "..". Case is kept: on a file system that
// tells case apart, projects that differ in it are two, and one must not be saved over the other.
QString NormalisedProjectPath(const QString& path);

// The file's last name without its extension: "/home/a/Trip.2024.gallery" gives "Trip.2024".
QString ProjectNameOf(const QString& path);

// Throws CGenericException for a file that exists and whose name does not end in ".gallery": any XML file can
// be read as a project, and it would be overwritten with one when the program ends.
void RequireProjectFile(const QString& path);
