#pragma once

#include <QString>

// Throws CGenericException for a file that exists and whose name does not end in ".gallery": any XML file can
// be read as a project, and it would be overwritten with one when the program ends.
void RequireProjectFile(const QString& path);
