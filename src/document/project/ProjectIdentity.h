#pragma once

#include <QString>

// The id by which a project is known whatever its file is called: 32 hexadecimal digits.

// A new one, from the system's source of random numbers.
QString MakeProjectId();

bool IsProjectId(const QString& text);

// Whether two paths lead to one file, or would if it were made: also by links.
bool IsSameProjectFile(const QString& a, const QString& b);
