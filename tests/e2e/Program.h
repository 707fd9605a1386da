#pragma once

#include <QMap>
#include <QProcess>
#include <QSize>
#include <QStringList>

#include "support/ScratchFolder.h"

// What a finished program has left.
struct ProgramResult {
    int exitCode = -1;
    bool crashed = false;
    QString output;
    QString errors;

    // The three texts of a failure by their names; empty if standard error is not exactly these three lines.
    QMap<QString, QString> GetFailure() const;
};

// Runs vistorama-cli in a world of its own: settings, cache, pictures and program data lie in a scratch
// folder.
class CProgram {
public:
    CProgram();

    const CScratchFolder scratch;

    // Path below the scratch folder.
    QString Path(const QString& name) const { return scratch.Path(name); }

    // The program's data folder; the installed layouts at first.
    void UseOwnData();
    // A layout NAME of one multipage page index.html with this text, in the program's own data.
    void WriteLayout(const QByteArray& page,
                     const QByteArray& pages = "<page file=\"index.html\" multipage=\"1\"/>");

    // Of the program's environment.
    void SetVariable(const QString& name, const QString& value) { variables[name] = value; }

    // A small photograph; returns its path.
    QString WritePicture(const QString& name, QSize size = QSize(64, 48)) const;
    // A project with these pictures in its root gallery.
    QString WriteProject(const QStringList& pictures) const;

    ProgramResult Run(const QStringList& arguments) const;
    // Through a shell, with $program as the program and the arguments as $1, $2, ...
    ProgramResult RunInShell(const QString& script, const QStringList& arguments) const;
    void Start(QProcess& process, const QStringList& arguments) const;
    static ProgramResult Finish(QProcess& process);

private:
    QProcessEnvironment GetEnvironment() const;

    QString dataFolder;
    QMap<QString, QString> variables;
};
