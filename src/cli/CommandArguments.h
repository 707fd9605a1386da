#pragma once

#include <map>

#include <QString>
#include <QStringList>

// The arguments of a command, split into options and the rest.
struct CommandArguments {
    std::map<QString, QString> options; // by name without "--"; empty value for a switch
    QStringList positional;

    bool Has(const QString& name) const { return options.count(name) != 0; }
    QString Get(const QString& name) const;
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

// The absolute path of the file or folder that an argument names. Throws CFileException if there is none.
QString ExistingPath(const QString& argument);
