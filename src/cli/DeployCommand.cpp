#include <QDir>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/DeployRun.h"
#include "cli/FTPUrl.h"
#include "cli/NamedDestinations.h"
#include "cli/ProjectSession.h"
#include "cli/ServerLogin.h"
#include "resources/StringTable.h"

namespace {

const QString ToOption = QStringLiteral("to");
const QString DirectoryOption = QStringLiteral("directory");
const QString QuietSwitch = QStringLiteral("quiet");
const QString LeaveOutSwitch = QStringLiteral("leave-out-missing");
const QString OverwriteSwitch = QStringLiteral("overwrite");

void RequireOneTarget(const CommandArguments& parsed)
{
    const bool namesPlace = parsed.positional.size() == 2;
    if (namesPlace == parsed.Has(ToOption)) {
        throw CWrongUse(Text(StringId::DeployNeedsTarget));
    }
    if (parsed.Has(DirectoryOption) && !parsed.Has(ToOption)) {
        throw CWrongUse(Text(StringId::DirectoryNeedsTo));
    }
}

// The directory replaces that of the stored destination.
FTPDestinationConnection FindDestination(const CommandArguments& parsed)
{
    CDestinationSession session;
    FTPDestinationConnection connection = session.GetDestinations().Find(parsed.Get(ToOption)).connection;
    if (parsed.Has(DirectoryOption)) {
        connection.directory = parsed.Get(DirectoryOption);
    }
    return connection;
}

// Nothing if a person interrupted the question for the password.
std::optional<FTPDestinationConnection> FindServer(const CommandArguments& parsed)
{
    if (parsed.Has(ToOption)) {
        return FindDestination(parsed);
    }
    return FindConnection(parsed.positional[1]);
}

} // namespace

int RunDeploy(const QStringList& arguments)
{
    const CommandArguments parsed =
        ParseArguments(arguments, {.valueOptions = {ToOption, DirectoryOption},
                                   .switches = {QuietSwitch, LeaveOutSwitch, OverwriteSwitch},
                                   .minPositional = 1,
                                   .maxPositional = 2});
    RequireOneTarget(parsed);
    const bool toServer = parsed.Has(ToOption) || IsFTPAddress(parsed.positional[1]);
    std::optional<FTPDestinationConnection> server;
    if (toServer) {
        server = FindServer(parsed);
        if (!server) {
            return ExitInterrupted;
        }
    }
    CProjectSession session;
    session.OpenExisting(parsed.positional[0]);
    CDeployRun run(session, {.quiet = parsed.Has(QuietSwitch),
                             .leaveOutMissing = parsed.Has(LeaveOutSwitch),
                             .overwrite = parsed.Has(OverwriteSwitch)});
    if (!server) {
        return run.ToFolder(QDir(parsed.positional[1]).absolutePath());
    }
    // The directory is seen from the login's folder, so nothing is to be entered before it.
    const QString directory = std::exchange(server->directory, QString());
    return run.ToServer(*server, directory);
}
