#pragma once

#include <optional>

#include <QString>
#include <QStringList>

// What the program prints instead of opening a window: its usage for "--help", its version for "--version".
// Nothing for any other arguments, which name a project. Needs neither a display nor an application object.
std::optional<QString> FindCommandLineAnswer(const QStringList& arguments);

// The project's path in the text of a command line; there are no switches. A text that begins with a double
// quote gives what stands up to the next one (up to the end if there is none), any other gives the whole
// text. Empty for an empty text.
QString ParseCommandLinePath(const QString& commandLine);
