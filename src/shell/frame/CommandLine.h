#pragma once

#include <optional>

#include <QString>
#include <QStringList>

// What the program prints instead of opening a window.
struct CommandLineAnswer {
    QString text;
    int exitCode = 0; // not 0: the text is that of an error
};

// The usage for "--help", the version for "--version", and what is wrong with an option that nobody knows.
// Nothing for any other arguments, which name a project. Needs neither a display nor an application object.
std::optional<CommandLineAnswer> FindCommandLineAnswer(const QStringList& arguments);

// The project's path in the text of a command line. A text that begins with a double
// quote gives what stands up to the next one (up to the end if there is none), any other gives the whole
// text. Empty for an empty text.
QString ParseCommandLinePath(const QString& commandLine);
