#include "ftpengine/tasks/FTPTasks.h"

#include <cerrno>

#include <QFile>
#include <QFileInfo>

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

constexpr int32_t noSuchDirectory = 550;

// "a/b" gives "a", and "a" the login's own directory.
QString Above(const QString& path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf(QLatin1Char('/')), 0));
}

// The listing is for people's eyes: a name in each line, with "/" after that of a directory.
CFTPDirectoryContent ContentOf(const QString& directory, const std::vector<RemoteEntry>& entries)
{
    QString listing;
    std::vector<CFTPDirectoryItem> items;
    for (const RemoteEntry& entry : entries) {
        listing += entry.name + (entry.isDirectory ? QStringLiteral("/\r\n") : QStringLiteral("\r\n"));
        items.push_back({.name = entry.name, .isFile = !entry.isDirectory, .isDirectory = entry.isDirectory});
    }
    return CFTPDirectoryContent(directory, listing, std::move(items));
}

} // namespace

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

void CFTPTaskGetDirectoryContent::DoSessionWork(CRemoteSession& session)
{
    QString& path = GetDestination().directory;
    while (!content) {
        try {
            content = ContentOf(path, session.List(path));
        } catch (const FTPReply& refusal) {
            if (refusal.code != noSuchDirectory || path.isEmpty()) {
                throw;
            }
            path = Above(path);
        }
    }
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

void CFTPTaskCreateDirectory::DoSessionWork(CRemoteSession& session)
{
    session.MakeDirectory(name);
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

void CFTPTaskRenameDirectory::DoSessionWork(CRemoteSession& session)
{
    session.Rename(oldName, newName);
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

void CFTPTaskUpload::DoSessionWork(CRemoteSession& session)
{
    for (const auto& [key, item] : items) {
        Post(FTP_UPLOAD_FILE_STARTED{.localPath = key, .title = title});
        QFile file(item.localPath);
        if (!QFileInfo(item.localPath).isFile() || !file.open(QIODevice::ReadOnly)) {
            throw EngineStatus::FromErrno(errno);
        }
        QString directory;
        for (const QString& name : item.directory.split(QLatin1Char('\\'), Qt::SkipEmptyParts)) {
            directory += name;
            session.MakeDirectory(directory);
            directory += QLatin1Char('/');
        }
        const auto tell = [this, &path = key](int64_t bytes) {
            Post(FTP_UPLOAD_PROGRESS{.localPath = path, .bytes = static_cast<uint32_t>(bytes)});
        };
        session.Send(file, directory + item.name, tell);
        Post(FTP_UPLOAD_FILE_FINISHED{.localPath = key, .title = title});
    }
}

FTPReply ChangeDirWithFallback(FTPDestinationConnection& destination, CFTPCommandSequenceChangeDir& sequence)
{
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
            found = !path.contains(QLatin1Char('/')); // the login's own directory, where we are
            path = Above(path);
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
