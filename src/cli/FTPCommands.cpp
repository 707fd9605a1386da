#include <algorithm>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/ServerDoubtTexts.h"
#include "cli/ServerLogin.h"
#include "cli/ServerVisit.h"
#include "common/Exceptions.h"
#include "ftpengine/commands/FTPCommand.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPDirectoryContent.h"
#include "resources/StringTable.h"

namespace {

constexpr int32_t noSuchDirectory = 550;

using Connection = FTPDestinationConnection;
using Work = std::function<void(CRemoteSession& session)>;

// The arguments of these commands: an address, names, and the options of servers.
CommandArguments ParseServerArguments(const QStringList& arguments, const QStringList& switches,
                                      qsizetype positional)
{
    return ParseArguments(arguments, {.valueOptions = GetServerOptions(),
                                      .switches = switches,
                                      .minPositional = positional,
                                      .maxPositional = positional});
}

// Nothing if a person interrupted the question for the password.
std::optional<Connection> FindServer(const CommandArguments& parsed)
{
    auto connection = FindConnection(parsed.positional[0]);
    if (connection) {
        ApplyServerOptions(parsed, *connection);
        WarnUnlessProtected(*connection);
    }
    return connection;
}

// On one line. A greeting may have several.
QString OneLineOf(const FTPReply& reply)
{
    return Printable(reply.text.simplified());
}

// Without the number at its head.
QString WordsOf(const FTPReply& reply)
{
    const QString line = OneLineOf(reply);
    const QString number = QString::number(reply.code);
    return line.startsWith(number) ? line.mid(number.size() + 1) : line;
}

void PrintTranscript(const std::vector<QString>& transcript)
{
    for (const QString& entry : transcript) {
        for (const QString& line : entry.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            PrintOut(Printable(line.trimmed()) + QLatin1Char('\n'));
        }
    }
}

QString Summary(const ServerVisit& visit)
{
    switch (visit.end) {
    case ServerVisit::End::Done:
        break;
    case ServerVisit::End::Interrupted:
    case ServerVisit::End::NetworkFailure:
        return Text(StringId::FTPTestNetworkFailure, visit.status, EngineStatus::GetWords(visit.status));
    case ServerVisit::End::Refused:
        return Text(StringId::FTPTestRefused, visit.reply.code, WordsOf(visit.reply));
    }
    return Text(StringId::FTPTestPassed);
}

[[noreturn]] void ThrowNetworkFailure(int status, const QString& caption)
{
    throw CGenericException(
        caption,
        Text(StringId::NetworkFailed, EngineStatus::GetTitle(status), EngineStatus::GetDescription(status)),
        Text(status == EngineStatus::InvalidName ? StringId::ChooseNameWithoutLineBreaks
                                                 : StringId::CheckServerAndTryAgain));
}

// ExitDone, or ExitInterrupted after an interrupt. Any other failure is thrown, with this caption.
int AnswerFor(const ServerVisit& visit, const Connection& connection, const QString& caption)
{
    switch (visit.end) {
    case ServerVisit::End::Done:
        break;
    case ServerVisit::End::Interrupted:
        return ExitInterrupted;
    case ServerVisit::End::NetworkFailure:
        if (IsServerDoubt(visit.status)) {
            throw DescribeServerDoubt(connection, visit.status, visit.log.identity);
        }
        ThrowNetworkFailure(visit.status, caption);
    case ServerVisit::End::Refused: {
        const bool isFTP = connection.protocol != ServerProtocol::Sftp;
        throw CGenericException(
            caption,
            Text(isFTP ? StringId::UploadRefused : StringId::ServerHasRefused, OneLineOf(visit.reply)),
            Text(StringId::CheckSiteParameters));
    }
    }
    return ExitDone;
}

// Before anything is sent.
void RequireUsableName(const QString& name, const QString& caption)
{
    if (BreaksLine(name)) {
        ThrowNetworkFailure(EngineStatus::InvalidName, caption);
    }
}

// The login's own folder has no name of its own.
QString NameOf(const QString& directory)
{
    return directory.isEmpty() ? QStringLiteral("/") : Printable(directory);
}

// "a/b" gives "a", and "a" the login's own folder.
QString DirectoryAbove(const QString& directory)
{
    return directory.left(std::max<qsizetype>(directory.lastIndexOf(QLatin1Char('/')), 0));
}

// Goes up from the directory until the server lists one, and leaves that in directory. A refused login has
// ended everything before.
void ListDeepest(QString& directory, const std::function<void()>& list)
{
    for (;;) {
        try {
            list();
            return;
        } catch (const FTPReply& refusal) {
            if (refusal.code != noSuchDirectory || directory.isEmpty()) {
                throw;
            }
            directory = DirectoryAbove(directory);
        }
    }
}

void PrintItem(bool isFile, const QString& name)
{
    PrintOut((isFile ? QStringLiteral("- ") : QStringLiteral("d ")) + Printable(name) + QLatin1Char('\n'));
}

void PrintListing(const QString& directory, const QString& listing)
{
    const CFTPDirectoryContent content(directory, listing);
    for (const CFTPDirectoryItem& item : content.GetItems()) {
        PrintItem(item.isFile, item.name);
    }
}

void PrintEntries(std::vector<RemoteEntry> entries)
{
    std::sort(entries.begin(), entries.end(),
              [](const RemoteEntry& one, const RemoteEntry& other) { return one.name < other.name; });
    for (const RemoteEntry& entry : entries) {
        PrintItem(!entry.isDirectory, entry.name);
    }
}

// Each line as it came, but for its end.
void PrintRaw(const QString& listing)
{
    QStringList lines = listing.split(QLatin1Char('\n'));
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (QString& line : lines) {
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        PrintOut(Printable(line) + QLatin1Char('\n'));
    }
}

// No server asks before it replaces what bears the new name.
void RequireFreeName(CRemoteSession& session, const QString& name, const QString& caption)
{
    const qsizetype cut = name.lastIndexOf(QLatin1Char('/'));
    const QString directory = name.left(std::max<qsizetype>(cut, name.startsWith(QLatin1Char('/')) ? 1 : 0));
    for (const RemoteEntry& entry : session.List(directory)) {
        if (entry.name == name.mid(cut + 1)) {
            throw CGenericException(caption, Text(StringId::NameIsTakenOnServer, Printable(name)),
                                    Text(StringId::ChooseAnotherName));
        }
    }
}

} // namespace

int RunFTPTest(const QStringList& arguments)
{
    const QString transcript = QStringLiteral("transcript");
    const CommandArguments parsed = ParseServerArguments(arguments, {transcript}, 1);
    auto connection = FindServer(parsed);
    if (!connection) {
        return ExitInterrupted;
    }
    const ServerVisit visit = VisitServer(*connection, [](CRemoteSession&) {});
    if (parsed.Has(transcript)) {
        PrintTranscript(visit.log.transcript);
    }
    PrintOut(Summary(visit) + QLatin1Char('\n'));
    if (visit.end == ServerVisit::End::NetworkFailure && IsServerDoubt(visit.status)) {
        throw DescribeServerDoubt(*connection, visit.status, visit.log.identity);
    }
    if (visit.end == ServerVisit::End::Interrupted) {
        return ExitInterrupted;
    }
    return visit.end == ServerVisit::End::Done ? ExitDone : ExitFailed;
}

int RunFTPList(const QStringList& arguments)
{
    const QString raw = QStringLiteral("raw");
    const CommandArguments parsed = ParseServerArguments(arguments, {raw}, 1);
    auto connection = FindServer(parsed);
    if (!connection) {
        return ExitInterrupted;
    }
    const QString wanted = std::exchange(connection->directory, QString());
    const bool hasEntries = connection->protocol == ServerProtocol::Sftp && !parsed.Has(raw);
    QString directory = wanted;
    QString listing;
    std::vector<RemoteEntry> entries;
    const ServerVisit visit = VisitServer(*connection, [&](CRemoteSession& session) {
        ListDeepest(directory, [&] {
            if (hasEntries) {
                entries = session.List(directory);
            } else {
                listing = session.ListInWords(directory);
            }
        });
    });
    const QString caption = Text(StringId::FolderNotListed, NameOf(wanted), connection->server);
    const int answer = AnswerFor(visit, *connection, caption);
    if (answer != ExitDone) {
        return answer;
    }
    if (directory != wanted) {
        PrintError(Text(StringId::OtherFolderListed, Printable(wanted), NameOf(directory)) +
                   QLatin1Char('\n'));
    }
    if (parsed.Has(raw)) {
        PrintRaw(listing);
    } else if (hasEntries) {
        PrintEntries(std::move(entries));
    } else {
        PrintListing(directory, listing);
    }
    return ExitDone;
}

int RunFTPMakeDirectory(const QStringList& arguments)
{
    const CommandArguments parsed = ParseServerArguments(arguments, {}, 2);
    auto connection = FindServer(parsed);
    if (!connection) {
        return ExitInterrupted;
    }
    const QString& name = parsed.positional[1];
    const QString caption = Text(StringId::FolderNotMade, Printable(name), connection->server);
    RequireUsableName(name, caption);
    const ServerVisit visit =
        VisitServer(*connection, [&name](CRemoteSession& session) { session.MakeDirectory(name); });
    return AnswerFor(visit, *connection, caption);
}

int RunFTPRename(const QStringList& arguments)
{
    const CommandArguments parsed = ParseServerArguments(arguments, {}, 3);
    auto connection = FindServer(parsed);
    if (!connection) {
        return ExitInterrupted;
    }
    const QString& oldName = parsed.positional[1];
    const QString& newName = parsed.positional[2];
    const QString caption = Text(StringId::FolderNotRenamed, Printable(oldName), connection->server);
    RequireUsableName(oldName, caption);
    RequireUsableName(newName, caption);
    const ServerVisit visit = VisitServer(*connection, [&](CRemoteSession& session) {
        RequireFreeName(session, newName, caption);
        session.Rename(oldName, newName);
    });
    return AnswerFor(visit, *connection, caption);
}
