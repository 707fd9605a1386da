#include "shell/ftpdialogs/TaskResultText.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPMessages.h"
#include "resources/StringTable.h"

namespace {

const QString LineEnd = QStringLiteral("\r\n");

// Replies bring their line end with them, commands may not.
QString OnItsOwnLine(const QString& entry)
{
    return entry.endsWith(QLatin1Char('\n')) ? entry : entry + LineEnd;
}

} // namespace

QString DescribeTaskResult(const CTaskResult& result)
{
    if (result.IsSuccess()) {
        return Text(StringId::ConnectionSucceeded);
    }
    QString text = Text(StringId::ConnectionFailed);
    for (const QString& entry : result.transcript) {
        if (!entry.isEmpty()) {
            text += OnItsOwnLine(entry);
        }
    }
    if (result.GetKind() == CTaskResult::Kind::NetworkFailure) {
        text += EngineStatus::GetTitle(result.status) + LineEnd + EngineStatus::GetDescription(result.status);
    }
    return text;
}
