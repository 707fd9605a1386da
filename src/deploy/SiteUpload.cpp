#include "deploy/SiteUpload.h"

#include "resources/StringTable.h"

CSiteUpload::CSiteUpload(CFTPEngine& engine, const FTPDestinationConnection& destination,
                         const QString& directory)
    : engine(engine), destination(destination), directory(directory)
{}

void CSiteUpload::Start(const FTPUploadMap& allItems, const CFTPEngine::Target& messageTarget)
{
    items = allItems;
    target = messageTarget;
    if (directory.isEmpty()) {
        SendFiles();
    } else {
        wanted = {directory};
        CreateWanted();
    }
}

void CSiteUpload::Cancel()
{
    cancelled = true;
    engine.Cancel();
}

void CSiteUpload::OnMessage(const FTPMessage& message)
{
    if (const auto* const created = std::get_if<FTP_CREATE_FINISHED>(&message)) {
        OnCreated(created->result);
    } else if (std::holds_alternative<FTP_UPLOAD_FILE_STARTED>(message)) {
        sendingFile = true;
    } else if (std::holds_alternative<FTP_UPLOAD_FILE_FINISHED>(message)) {
        sendingFile = false;
        ++finishedFiles;
    } else if (const auto* const uploaded = std::get_if<FTP_UPLOAD_FINISHED>(&message)) {
        Finish(uploaded->result);
    }
}

// A server makes one level at a time, so a refusal may mean that the level above is missing. Beyond that
// nobody looks at what comes of it: the directory may well exist, and the upload tells if it can't be
// entered.
void CSiteUpload::OnCreated(const CTaskResult& created)
{
    if (cancelled) {
        Finish(created);
        return;
    }
    const qsizetype cut = wanted.last().lastIndexOf(QLatin1Char('/'));
    if (!goingDown && created.GetKind() == CTaskResult::Kind::ServerRefusal && cut > 0) {
        wanted += wanted.last().left(cut);
        CreateWanted();
        return;
    }
    goingDown = true;
    wanted.removeLast();
    if (created.IsSuccess() && !wanted.isEmpty()) {
        CreateWanted();
    } else {
        SendFiles();
    }
}

void CSiteUpload::CreateWanted()
{
    engine.CreateDirectory(destination, wanted.last(), target);
}

void CSiteUpload::SendFiles()
{
    FTPDestinationConnection place = destination;
    place.directory = directory;
    engine.Upload(place, QString(), items, target);
}

void CSiteUpload::Finish(const CTaskResult& last)
{
    result = last;
    sendingFile = false;
    finished = true;
}

std::optional<DeployError> CSiteUpload::MakeError() const
{
    switch (result.GetKind()) {
    case CTaskResult::Kind::Success:
        break;
    case CTaskResult::Kind::NetworkFailure: {
        // The first file stands for the connection: before it has arrived, none is known to have worked.
        const StringId reason =
            finishedFiles > 0 ? StringId::UploadConnectionLost : StringId::UploadNotConnected;
        return DeployError{Text(StringId::UploadFailed),
                           Text(reason, QString::number(static_cast<uint32_t>(result.status), 16)),
                           Text(StringId::UploadLater)};
    }
    case CTaskResult::Kind::ServerRefusal:
        return DeployError{Text(StringId::UploadFailed),
                           Text(StringId::UploadRefused, result.reply.text.trimmed()),
                           Text(StringId::CheckSiteParameters)};
    }
    return std::nullopt;
}
