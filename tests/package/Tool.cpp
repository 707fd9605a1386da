#include "Tool.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>

ToolResult RunTool(const QString& program, const QStringList& arguments,
                   const QMap<QString, QString>& variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto variable = variables.begin(); variable != variables.end(); ++variable) {
        if (variable.value().isNull()) {
            environment.remove(variable.key());
        } else {
            environment.insert(variable.key(), variable.value());
        }
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    constexpr int Patience = 100'000; // milliseconds
    const bool finished = process.waitForFinished(Patience);
    EXPECT_TRUE(finished) << qPrintable(program);
    const bool ended = finished && process.exitStatus() == QProcess::NormalExit;
    return {.exitCode = ended ? process.exitCode() : -1,
            .output = QString::fromUtf8(process.readAllStandardOutput()),
            .errors = QString::fromUtf8(process.readAllStandardError())};
}

QString ReadText(const QString& path)
{
    QFile file(QDir(QStringLiteral(SOURCE_FOLDER)).filePath(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    return QString::fromUtf8(file.readAll());
}

QString Installed(const QString& name)
{
    return QStringLiteral(INSTALLED_FOLDER "/") + name;
}

QString VersionOfProject()
{
    static const QRegularExpression pattern(QStringLiteral(R"(project\(vistorama VERSION ([0-9.]+))"));
    return pattern.match(ReadText(QStringLiteral("CMakeLists.txt"))).captured(1);
}

QStringList OptionsIn(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("(?<![-\\w])--[a-z][a-z-]*"));
    QStringList options;
    auto matches = pattern.globalMatch(text);
    while (matches.hasNext()) {
        options += matches.next().captured();
    }
    options.sort();
    options.removeDuplicates();
    return options;
}
