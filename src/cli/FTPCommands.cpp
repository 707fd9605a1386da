#include <cstdlib>
#include <functional>

#include <QEventLoop>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/Interrupts.h"
#include "cli/ServerLogin.h"
#include "common/Exceptions.h"
#include "common/MessageTarget.h"
#include "ftpengine/FTPEngine.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using Start = std::function<void(CFTPEngine& engine, const CFTPEngine::Target& target)>;

// Runs one task of the FTP engine to its end, on the event loop of the program's first thread. The first
// interrupt cancels the task, whose result says so; the second ends the program at once. Finished: the type
// of the task's last message.
template <class Finished>
Finished RunFTPTask(const Start& start)
{
    CFTPEngine engine;
    QEventLoop loop;
    Finished last;
    const CInterrupts interrupts([&engine](uint64_t count) {
        if (count > 1) {
            std::_Exit(ExitInterrupted);
        }
        engine.Cancel();
    });
    const auto target = CEventLoopTarget<FTPMessage>::Create([&](const FTPMessage& message) {
        if (const auto* const finished = std::get_if<Finished>(&message)) {
            last = *finished;
            loop.quit();
        }
    });
    start(engine, target);
    loop.exec();
    return last;
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
        return Text(StringId::FTPTestNetworkFailure, result.status, EngineStatus::GetWords(result.status));
    case CTaskResult::Kind::ServerRefusal:
        return Text(StringId::FTPTestRefused, result.reply.code, WordsOf(result.reply));
    }
    return Text(StringId::FTPTestPassed);
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

int RunFTPTest(const QStringList& arguments)
{
    const QString transcript = QStringLiteral("transcript");
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {transcript}, .minPositional = 1, .maxPositional = 1});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const CTaskResult result =
        RunFTPTask<FTP_TEST_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
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

int RunFTPList(const QStringList& arguments)
{
    const QString raw = QStringLiteral("raw");
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {raw}, .minPositional = 1, .maxPositional = 1});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const FTP_LIST_FINISHED finished =
        RunFTPTask<FTP_LIST_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.GetDirectoryContent(*destination, target);
        });
    const int answer = AnswerFor(finished.result, Text(StringId::FolderNotListed,
                                                       NameOf(destination->directory), destination->server));
    if (answer != ExitDone || !finished.content) {
        return answer;
    }
    if (finished.content->GetDirectory() != destination->directory) {
        PrintError(Text(StringId::OtherFolderListed, Printable(destination->directory),
                        NameOf(finished.content->GetDirectory())) +
                   QLatin1Char('\n'));
    }
    if (parsed.Has(raw)) {
        PrintRaw(finished.content->GetListing());
    } else {
        PrintItems(*finished.content);
    }
    return ExitDone;
}

int RunFTPMakeDirectory(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {}, .minPositional = 2, .maxPositional = 2});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const QString& name = parsed.positional[1];
    const auto finished =
        RunFTPTask<FTP_CREATE_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.CreateDirectory(*destination, name, target);
        });
    return AnswerFor(finished.result, Text(StringId::FolderNotMade, Printable(name), destination->server));
}

int RunFTPRename(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {}, .minPositional = 3, .maxPositional = 3});
    const auto destination = FindConnection(parsed.positional[0]);
    if (!destination) {
        return ExitInterrupted;
    }
    const QString& oldName = parsed.positional[1];
    const auto finished =
        RunFTPTask<FTP_RENAME_FINISHED>([&](CFTPEngine& engine, const CFTPEngine::Target& target) {
            engine.RenameDirectory(*destination, oldName, parsed.positional[2], target);
        });
    return AnswerFor(finished.result,
                     Text(StringId::FolderNotRenamed, Printable(oldName), destination->server));
}
