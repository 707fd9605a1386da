#include <limits>

#include <QFileInfo>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/NamedDestinations.h"
#include "cli/ServerLogin.h"
#include "resources/StringTable.h"

namespace {

int Add(const QStringList& arguments, CNamedDestinations& destinations)
{
    const QString allUsers = QStringLiteral("all-users");
    const CommandArguments parsed =
        ParseArguments(arguments, {.valueOptions = {QStringLiteral("identity")},
                                   .switches = {allUsers},
                                   .minPositional = 2,
                                   .maxPositional = std::numeric_limits<qsizetype>::max()});
    // The general text would repeat an address with its password.
    if (parsed.positional.size() > 2) {
        throw CWrongUse(Text(StringId::SurplusDestinationWords));
    }
    auto connection = FindConnection(parsed.positional[1]);
    if (!connection) {
        return ExitInterrupted;
    }
    ApplyServerOptions(parsed, *connection);
    if (!connection->identityFile.isEmpty()) {
        // It is used from any folder.
        connection->identityFile = QFileInfo(connection->identityFile).absoluteFilePath();
    }
    connection->displayName = parsed.positional[0];
    destinations.Add(*connection, {.allUsers = parsed.Has(allUsers)});
    return ExitDone;
}

int List(const QStringList& arguments, CNamedDestinations& destinations)
{
    ParseArguments(arguments, {});
    PrintOut(destinations.List());
    return ExitDone;
}

int Remove(const QStringList& arguments, CNamedDestinations& destinations)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {}, .minPositional = 1, .maxPositional = 1});
    destinations.Remove(parsed.positional[0]);
    return ExitDone;
}

} // namespace

int RunDestination(const QStringList& arguments)
{
    CDestinationSession session;
    return RunDestination(arguments, session.GetDestinations());
}

int RunDestination(const QStringList& arguments, CNamedDestinations& destinations)
{
    const QString action = arguments.value(0);
    const QStringList others = arguments.mid(1);
    if (action == QStringLiteral("add")) {
        return Add(others, destinations);
    }
    if (action == QStringLiteral("list")) {
        return List(others, destinations);
    }
    if (action == QStringLiteral("remove")) {
        return Remove(others, destinations);
    }
    throw CWrongUse(Text(StringId::DestinationNeedsAction));
}
