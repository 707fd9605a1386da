#pragma once

#include <optional>

#include <QString>
#include <QStringList>

// What the program prints instead of opening a window: its usage for "--help", its version for "--version".
// Nothing for any other arguments, which name a project. Needs neither a display nor an application object.
std::optional<QString> FindCommandLineAnswer(const QStringList& arguments);
