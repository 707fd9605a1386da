#include "cli/FtpCommands.h"

#include "cli/CommandLine.h"
#include "cli/FtpTask.h"
#include "cli/ServerAddress.h"
#include "cli/TerminalText.h"
#include "common/Exceptions.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using Start = std::function<void(CFTPEngine& engine, const CFTPEngine::Target& target)>;

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

QString MaskPassword(const QString& line)
{
    const QString verb = QStringLiteral("PASS");
    return line.section(QLatin1Char(' '), 0, 0) == verb ? verb + QStringLiteral(" ****") : line;
}

void PrintTranscript(const std::vector<QString>& transcript)
{
    for (const QString& entry : transcript) {
        for (const QString& line : entry.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            PrintOut(Printable(MaskPassword(line.trimmed())) + QLatin1Char('\n'));
        }
    }
}

QString Summary(const CTaskResult& result)
{
    switch (result.GetKind()) {
    case CTaskResult::Kind::Success:
        break;
    case CTaskResult::Kind::NetworkFailure:
        return QStringLiteral("network failure %1: ").arg(result.status) +
               EngineStatus::GetWords(result.status);
    case CTaskResult::Kind::ServerRefusal:
        return QStringLiteral("server refusal %1 ").arg(result.reply.code) + WordsOf(result.reply);
    }
    return QStringLiteral("success");
}

// ExitDone, or ExitInterrupted after an interrupt. Any other failure is thrown, with this caption.
int AnswerFor(const CTaskResult& result, const QString& caption)
{
    switch (result.GetKind()) {
    case CTaskResult::Kind::Success:
        break;
    case CTaskResult::Kind::NetworkFailure:
        if (result.status == EngineStatus::Aborted) {
            return ExitInterrupted;
        }
        throw CGenericException(caption,
                                Text(StringId::NetworkFailed, EngineStatus::GetTitle(result.status),
                                     EngineStatus::GetDescription(result.status)),
                                Text(result.status == EngineStatus::InvalidName
                                         ? StringId::ChooseNameWithoutLineBreaks
                                         : StringId::CheckServerAndTryAgain));
    case CTaskResult::Kind::ServerRefusal:
        throw CGenericException(caption, Text(StringId::UploadRefused, OneLineOf(result.reply)),
                                Text(StringId::CheckSiteParameters));
    }
    return ExitDone;
}

// The login's own folder has no name of its own.
QString NameOf(const QString& directory)
{
    return directory.isEmpty() ? QStringLiteral("/") : Printable(directory);
}

void PrintItems(const CFTPDirectoryContent& content)
{
    for (const CFTPDirectoryItem& item : content.GetItems()) {
        PrintOut((item.isFile ? QStringLiteral("- ") : QStringLiteral("d ")) + Printable(item.name) +
                 QLatin1Char('\n'));
    }
}

void PrintRaw(const QString& listing)
{
    for (const QString& line : listing.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        PrintOut(Printable(line.trimmed()) + QLatin1Char('\n'));
    }
}

} // namespace

int RunFtpTest(const QStringList& arguments)
{
    const QString transcript = QStringLiteral("transcript");
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {transcript}, .minPositional = 1, .maxPositional = 1});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const CTaskResult result =
        RunFtpTask<FTP_TEST_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.TestConnection(*destination, target);
        }).result;
    if (parsed.Has(transcript)) {
        PrintTranscript(result.transcript);
    }
    PrintOut(Summary(result) + QLatin1Char('\n'));
    if (result.status == EngineStatus::Aborted) {
        return ExitInterrupted;
    }
    return result.IsSuccess() ? ExitDone : ExitFailed;
}

int RunFtpList(const QStringList& arguments)
{
    const QString raw = QStringLiteral("raw");
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {raw}, .minPositional = 1, .maxPositional = 1});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const FTP_LIST_FINISHED finished =
        RunFtpTask<FTP_LIST_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.GetDirectoryContent(*destination, target);
        });
    const int answer = AnswerFor(finished.result, Text(StringId::FolderNotListed,
                                                       NameOf(destination->directory), destination->server));
    if (answer != ExitDone || !finished.content) {
        return answer;
    }
    if (finished.content->GetDirectory() != destination->directory) {
        PrintError(QStringLiteral("There is no folder '%1'. This is the listing of '%2'.\n")
                       .arg(Printable(destination->directory), NameOf(finished.content->GetDirectory())));
    }
    if (parsed.Has(raw)) {
        PrintRaw(finished.content->GetListing());
    } else {
        PrintItems(*finished.content);
    }
    return ExitDone;
}

int RunFtpMakeDirectory(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {}, .minPositional = 2, .maxPositional = 2});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const QString& name = parsed.positional[1];
    const auto finished =
        RunFtpTask<FTP_CREATE_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.CreateDirectory(*destination, name, target);
        });
    return AnswerFor(finished.result, Text(StringId::FolderNotMade, Printable(name), destination->server));
}

int RunFtpRename(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {}, .minPositional = 3, .maxPositional = 3});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const QString& oldName = parsed.positional[1];
    const auto finished =
        RunFtpTask<FTP_RENAME_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.RenameDirectory(*destination, oldName, parsed.positional[2], target);
        });
    return AnswerFor(finished.result,
                     Text(StringId::FolderNotRenamed, Printable(oldName), destination->server));
}
