#pragma once

#include <map>
#include <vector>

#include <QString>
#include <QStringList>

#include "common/Exceptions.h"

// What the program answers to the shell.
enum ExitCode : int { ExitDone = 0, ExitFailed = 1, ExitWrongUse = 2, ExitInterrupted = 130 };

// The arguments of a command, split into options and the rest.
struct CommandArguments {
    std::map<QString, QString> options; // by name without "--"; empty value for a switch
    QStringList positional;

    bool Has(const QString& name) const { return options.count(name) != 0; }
    QString Get(const QString& name) const;
};

// Arguments that a command can't make sense of; the text says why.
class CWrongUse final : public std::exception {
public:
    explicit CWrongUse(const QString& reason) : reason(reason) {}
    const QString& GetReason() const { return reason; }

private:
    QString reason;
};

// An option takes a value, as "--name value" or "--name=value", or stands alone as a switch. What follows
// "--" is positional.
struct CommandSyntax {
    QStringList valueOptions;
    QStringList switches;
    qsizetype minPositional = 0;
    qsizetype maxPositional = 0;
};

// Throws CWrongUse.
CommandArguments ParseArguments(const QStringList& arguments, const CommandSyntax& syntax);

// Runs the named command with the arguments behind the program's name. Answers an ExitCode.
// Failures go to standard error: three lines for failed work, the reason and the usage for wrong use.
int RunCommandLine(const QStringList& arguments);

// "caption: ...", "description: ...", "advice: ...", each on one line, line breaks inside a text as "\n".
QString FailureLines(const QString& caption, const QString& description, const QString& advice);

// The absolute path of the file or folder that an argument names. Throws CFileException if there is none.
QString ExistingPath(const QString& argument);

// Writes to standard output or standard error at once.
void PrintOut(const QString& text);
void PrintError(const QString& text);
