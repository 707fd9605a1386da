#include "deploy/DeployFailures.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/ServerWords.h"
#include "resources/StringTable.h"

namespace {

QString ReasonOf(const SendFailure& failure)
{
    switch (failure.kind) {
    case SendFailure::Kind::NotOpened:
        return failure.status != 0 ? Text(StringId::ServerNotReached, EngineStatus::GetWords(failure.status),
                                          EngineStatus::GetDescription(failure.status))
                                   : Text(StringId::ServerNotEntered, CleanServerWords(failure.reply.text));
    case SendFailure::Kind::Network:
        return Text(StringId::ConnectionLostAt, failure.path, EngineStatus::GetWords(failure.status));
    case SendFailure::Kind::Refused:
        return Text(StringId::FileRefused, failure.path, CleanServerWords(failure.reply.text));
    case SendFailure::Kind::LocalFile:
        return Text(StringId::FileChangedMeanwhile, failure.path);
    }
    return {};
}

StringId AdviceOn(const SendFailure& failure)
{
    switch (failure.kind) {
    case SendFailure::Kind::NotOpened:
        return failure.status != 0 ? StringId::CheckServerAndTryAgain : StringId::CheckSiteParameters;
    case SendFailure::Kind::Refused:
        return StringId::CheckRightsAndSpace;
    case SendFailure::Kind::Network:
    case SendFailure::Kind::LocalFile:
        break;
    }
    return StringId::PublishAgainGoesOn;
}

} // namespace

bool IsServerDoubt(const SendFailure& failure)
{
    return failure.kind == SendFailure::Kind::NotOpened &&
           (failure.status == EngineStatus::UntrustedServer ||
            failure.status == EngineStatus::TlsNotOffered || failure.status == EngineStatus::TlsDemanded);
}

DeployFailure DescribeFailure(const SendFailure& failure)
{
    return {Text(StringId::UploadFailed), ReasonOf(failure), Text(AdviceOn(failure))};
}
