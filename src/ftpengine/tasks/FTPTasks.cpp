#include "ftpengine/tasks/FTPTasks.h"

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/messages/EngineStatus.h"

FTPMessage CFTPTaskTestConnection::MakeFinishedMessage(CTaskResult result)
{
    return FTP_TEST_FINISHED{.result = std::move(result)};
}

FTPMessage CFTPTaskGetDirectoryContent::MakeFinishedMessage(CTaskResult result)
{
    return FTP_LIST_FINISHED{.result = std::move(result), .content = std::move(content)};
}

void CFTPTaskGetDirectoryContent::EnterDirectory(FTPConversation& conversation)
{
    CFTPCommandSequenceChangeDir sequence(conversation.stream, conversation.abortEvent,
                                          conversation.transcript);
    conversation.reply = ChangeDirWithFallback(GetDestination(), sequence);
}

void CFTPTaskGetDirectoryContent::DoWork(FTPConversation& conversation)
{
    QString listing;
    conversation.Run<CFTPCommandSequenceList>(listing);
    content.emplace(GetDestination().directory, listing);
}

CFTPTaskCreateDirectory::CFTPTaskCreateDirectory(Setting setting, const QString& name)
    : CFTPTask(std::move(setting)), name(name)
{}

FTPMessage CFTPTaskCreateDirectory::MakeFinishedMessage(CTaskResult result)
{
    return FTP_CREATE_FINISHED{.result = std::move(result)};
}

void CFTPTaskCreateDirectory::DoWork(FTPConversation& conversation)
{
    conversation.Run<CFTPCommandSequenceCreateDir>(name);
}

CFTPTaskRenameDirectory::CFTPTaskRenameDirectory(Setting setting, const QString& oldName,
                                                 const QString& newName)
    : CFTPTask(std::move(setting)), oldName(oldName), newName(newName)
{}

FTPMessage CFTPTaskRenameDirectory::MakeFinishedMessage(CTaskResult result)
{
    return FTP_RENAME_FINISHED{.result = std::move(result)};
}

void CFTPTaskRenameDirectory::DoWork(FTPConversation& conversation)
{
    conversation.Run<CFTPCommandSequenceRenameDir>(oldName, newName);
}

CFTPTaskUpload::CFTPTaskUpload(Setting setting, const QString& title, const FTPUploadMap& items)
    : CFTPTask(std::move(setting)), title(title), items(items)
{}

FTPMessage CFTPTaskUpload::MakeFinishedMessage(CTaskResult result)
{
    return FTP_UPLOAD_FINISHED{.result = std::move(result), .title = title};
}

QStringList CFTPTaskUpload::GetNames() const
{
    QStringList names;
    for (const auto& [key, item] : items) {
        names << item.directory << item.name;
    }
    return names;
}

void CFTPTaskUpload::DoWork(FTPConversation& conversation)
{
    conversation.Run<CFTPCommandSequenceTypeI>();
    QString current; // relative to the destination's directory
    for (const auto& [key, item] : items) {
        Post(FTP_UPLOAD_FILE_STARTED{.localPath = key, .title = title});
        if (item.directory != current) {
            if (const QString back = WayBackFrom(current); !back.isEmpty()) {
                conversation.Run<CFTPCommandSequenceOpenDir>(back);
            }
            conversation.Run<CFTPCommandSequenceOpenDir>(item.directory);
        }
        conversation.Run<CFTPCommandSequenceStor>(item.localPath, item.name, GetTarget());
        current = item.directory;
        Post(FTP_UPLOAD_FILE_FINISHED{.localPath = key, .title = title});
    }
    conversation.Run<CFTPCommandSequenceTypeA>();
}

FTPReply ChangeDirWithFallback(FTPDestinationConnection& destination, CFTPCommandSequenceChangeDir& sequence)
{
    constexpr int32_t noSuchDirectory = 550;
    QString path = destination.directory;
    FTPReply reply;
    for (bool found = false; !found;) {
        try {
            reply = sequence.Run(path);
            found = true;
        } catch (const FTPReply& refusal) {
            // When even the empty path is refused there is nothing left to try.
            if (refusal.code != noSuchDirectory || path.isEmpty()) {
                TraceNumber("ChangeDirWithFallback, ChangeDir throws: ", refusal.code);
                throw;
            }
            const qsizetype cut = path.lastIndexOf(QLatin1Char('/'));
            path = path.left(std::max<qsizetype>(cut, 0));
            found = cut < 0; // the login's own directory, where we are
        }
    }
    destination.directory = path;
    return reply;
}

QString WayBackFrom(const QString& directory)
{
    const qsizetype names = directory.split(QLatin1Char('\\'), Qt::SkipEmptyParts).size();
    return QStringList(names, QStringLiteral("..")).join(QLatin1Char('\\'));
}
