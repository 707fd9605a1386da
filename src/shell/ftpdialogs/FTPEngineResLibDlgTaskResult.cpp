#include "shell/ftpdialogs/FTPEngineResLibDlgTaskResult.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStyle>
#include <QVBoxLayout>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPMessages.h"
#include "ftpengine/messages/ServerWords.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

const QString LineEnd = QStringLiteral("\r\n");

// Replies bring their line end with them, commands may not, and a server may say what only a terminal obeys.
QString OnItsOwnLine(const QString& entry)
{
    return CleanServerWords(entry).replace(QLatin1Char('\n'), LineEnd) + LineEnd;
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

CFTPEngineResLibDlgTaskResult::CFTPEngineResLibDlgTaskResult(const CTaskResult& result, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(Text(StringId::FTPTaskTitle));
    auto* icon = new QLabel(this);
    const bool isSuccess = result.IsSuccess();
    NameControl(*icon, isSuccess ? "information" : "error",
                isSuccess ? Text(StringId::TaskSucceededName) : Text(StringId::TaskFailedName));
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(
        style()
            ->standardIcon(isSuccess ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxCritical)
            .pixmap(size));
    QPlainTextEdit* text =
        MakeReport(DescribeTaskResult(result), "text", Text(StringId::TaskConversationName));

    auto* row = new QHBoxLayout;
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addSpacing(8);
    row->addWidget(text, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    AddOk(*this, *layout);
    resize(520, 260);
}
