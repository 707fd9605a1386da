#include "deploy/SiteUpload.h"

#include "resources/StringTable.h"

namespace {

constexpr std::chrono::milliseconds quietLimit{60000};

} // namespace

CSiteUpload::CSiteUpload(CFTPEngine& engine, const FTPDestinationConnection& destination,
                         const QString& directory)
    : engine(engine), destination(destination), directory(directory)
{}

void CSiteUpload::CreateTargetDirectory()
{
    if (!directory.isEmpty()) {
        CreateDirectory(directory);
    }
}

void CSiteUpload::Start(const FTPUploadMap& items, const CFTPEngine::Target& target)
{
    finishedFiles = 0;
    FTPDestinationConnection place = destination;
    place.directory = directory;
    engine.Upload(place, QString(), items, target);
}

void CSiteUpload::OnMessage(const FTPMessage& message)
{
    if (std::holds_alternative<FTP_UPLOAD_STARTED>(message)) {
        finishedFiles = 0;
    } else if (std::holds_alternative<FTP_UPLOAD_FILE_FINISHED>(message)) {
        ++finishedFiles;
    }
}

std::optional<DeployError> CSiteUpload::MakeError(const CTaskResult& result) const
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

// A server makes one level at a time, so a refusal may mean that the level above is missing.
CTaskResult CSiteUpload::CreateDirectory(const QString& path)
{
    const CTaskResult result = engine.CreateDirectory(destination, path, quietLimit);
    const qsizetype cut = path.lastIndexOf(QLatin1Char('/'));
    if (result.GetKind() == CTaskResult::Kind::ServerRefusal && cut > 0 &&
        CreateDirectory(path.left(cut)).IsSuccess()) {
        return engine.CreateDirectory(destination, path, quietLimit);
    }
    return result;
}
