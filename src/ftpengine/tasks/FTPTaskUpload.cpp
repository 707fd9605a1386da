#include "ftpengine/tasks/FTPTaskUpload.h"

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/commands/FTPTransferSequences.h"

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

QString WayBackFrom(const QString& directory)
{
    const qsizetype names = directory.split(QLatin1Char('\\'), Qt::SkipEmptyParts).size();
    return QStringList(names, QStringLiteral("..")).join(QLatin1Char('\\'));
}
