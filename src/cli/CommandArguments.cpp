#include "cli/CommandArguments.h"

#include <QDir>

#include "cli/Answers.h"
#include "cli/ServerUrl.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

// Reads the option at position and moves after it.
void ParseOption(const QStringList& arguments, qsizetype& position, const CommandSyntax& syntax,
                 CommandArguments& parsed)
{
    const QString& argument = arguments[position++];
    const QString name = argument.mid(2).section(QLatin1Char('='), 0, 0);
    if (syntax.switches.contains(name) && !argument.contains(QLatin1Char('='))) {
        parsed.options[name] = QString();
        return;
    }
    if (!syntax.valueOptions.contains(name)) {
        throw CWrongUse(Text(StringId::NoSuchOption, WithoutPassword(argument)));
    }
    if (argument.contains(QLatin1Char('='))) {
        parsed.options[name] = argument.section(QLatin1Char('='), 1);
        return;
    }
    if (position == arguments.size()) {
        throw CWrongUse(Text(StringId::OptionNeedsValue, WithoutPassword(argument)));
    }
    parsed.options[name] = arguments[position++];
}

void RequireCount(const QStringList& positional, const CommandSyntax& syntax)
{
    if (positional.size() < syntax.minPositional) {
        throw CWrongUse(Text(StringId::ArgumentMissing));
    }
    if (positional.size() > syntax.maxPositional) {
        const QString& surplus = positional[syntax.maxPositional];
        // An address may hold a password.
        throw CWrongUse(IsServerAddress(surplus) ? Text(StringId::SurplusFTPAddress)
                                                 : Text(StringId::SurplusArgument, WithoutPassword(surplus)));
    }
}

} // namespace

QString CommandArguments::Get(const QString& name) const
{
    const auto option = options.find(name);
    return option == options.end() ? QString() : option->second;
}

CommandArguments ParseArguments(const QStringList& arguments, const CommandSyntax& syntax)
{
    CommandArguments parsed;
    qsizetype position = 0;
    bool onlyPositional = false;
    while (position < arguments.size()) {
        if (!onlyPositional && arguments[position] == QStringLiteral("--")) {
            onlyPositional = true;
            ++position;
        } else if (!onlyPositional && arguments[position].startsWith(QStringLiteral("--"))) {
            ParseOption(arguments, position, syntax, parsed);
        } else {
            parsed.positional += arguments[position++];
        }
    }
    RequireCount(parsed.positional, syntax);
    return parsed;
}

QString ExistingPath(const QString& argument)
{
    if (!FileExists(argument)) {
        throw CFileException(
            WithoutPassword(argument),
            {StringId::CouldNotOpenFile, StringId::FileDoesNotExist, StringId::CheckFolderAndFileName});
    }
    return QDir(argument).absolutePath();
}
