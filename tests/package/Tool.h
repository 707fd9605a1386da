#pragma once

#include <QMap>
#include <QStringList>

// What a finished program has left.
struct ToolResult {
    int exitCode = -1; // -1 if it could not be started or has crashed
    QString output;
    QString errors;
};

// Runs a program to its end, with the variables changed in its environment; one with a null value is taken
// out of it.
ToolResult RunTool(const QString& program, const QStringList& arguments,
                   const QMap<QString, QString>& variables = {});

// The text of a file of the source tree or of any other; a relative path is seen from the source tree.
QString ReadText(const QString& path);

// A path below the folder that the program is installed in: "bin/vistorama".
QString Installed(const QString& name);

// The program's version as CMakeLists.txt has it.
QString VersionOfProject();

// The words that begin with "--" in a text, sorted and each once.
QStringList OptionsIn(const QString& text);
