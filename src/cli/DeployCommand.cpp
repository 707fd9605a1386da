#include <QDir>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/DeployRun.h"
#include "cli/NamedDestinations.h"
#include "cli/ProjectSession.h"
#include "cli/ServerLogin.h"
#include "cli/ServerUrl.h"
#include "resources/StringTable.h"

namespace {

const QString ToOption = QStringLiteral("to");
const QString DirectoryOption = QStringLiteral("directory");
const QString QuietSwitch = QStringLiteral("quiet");
const QString LeaveOutSwitch = QStringLiteral("leave-out-missing");
const QString OverwriteSwitch = QStringLiteral("overwrite");
const QString DryRunSwitch = QStringLiteral("dry-run");

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

bool IsForServer(const CommandArguments& parsed)
{
    return parsed.Has(ToOption) || IsServerAddress(parsed.positional[1]);
}

void RefuseOptionsOfServers(const CommandArguments& parsed)
{
    if (parsed.Has(DryRunSwitch)) {
        throw CWrongUse(Text(StringId::DryRunNeedsServer));
    }
    // These say themselves what they are for.
    FTPDestinationConnection none;
    ApplyServerOptions(parsed, none);
}

// The directory replaces that of the stored destination.
std::optional<FTPDestinationConnection> FindDestination(const CommandArguments& parsed)
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
    auto server = parsed.Has(ToOption) ? FindDestination(parsed) : FindConnection(parsed.positional[1]);
    if (server) {
        ApplyServerOptions(parsed, *server);
        if (server->protocol == ServerProtocol::Sftp) {
            server->directory = WithoutHome(server->directory);
        }
    }
    return server;
}

// server: none for a folder.
int DeployTo(const CommandArguments& parsed, const FTPDestinationConnection* server)
{
    CProjectSession session;
    session.OpenExisting(parsed.positional[0]);
    CDeployRun run(session, {.quiet = parsed.Has(QuietSwitch),
                             .leaveOutMissing = parsed.Has(LeaveOutSwitch),
                             .overwrite = parsed.Has(OverwriteSwitch),
                             .isDryRun = parsed.Has(DryRunSwitch)});
    return server ? run.ToServer(*server) : run.ToFolder(QDir(parsed.positional[1]).absolutePath());
}

} // namespace

int RunDeploy(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = QStringList{ToOption, DirectoryOption} + GetServerOptions(),
                    .switches = {QuietSwitch, LeaveOutSwitch, OverwriteSwitch, DryRunSwitch},
                    .minPositional = 1,
                    .maxPositional = 2});
    RequireOneTarget(parsed);
    if (!IsForServer(parsed)) {
        RefuseOptionsOfServers(parsed);
        return DeployTo(parsed, nullptr);
    }
    auto server = FindServer(parsed);
    if (!server) {
        return ExitInterrupted;
    }
    return DeployTo(parsed, &*server);
}
