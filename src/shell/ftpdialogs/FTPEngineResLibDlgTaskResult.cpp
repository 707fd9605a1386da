#include "shell/ftpdialogs/FTPEngineResLibDlgTaskResult.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStyle>
#include <QVBoxLayout>

#include "ftpengine/messages/FTPMessages.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/TaskResultText.h"
#include "shell/look/DialogParts.h"

CFTPEngineResLibDlgTaskResult::CFTPEngineResLibDlgTaskResult(const CTaskResult& result, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(Text(StringId::FtpTaskTitle));
    auto* icon = new QLabel(this);
    const bool isSuccess = result.IsSuccess();
    NameControl(*icon, isSuccess ? "information" : "error",
                isSuccess ? QStringLiteral("Information") : QStringLiteral("Error"));
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(
        style()
            ->standardIcon(isSuccess ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxCritical)
            .pixmap(size));
    QPlainTextEdit* text = MakeReport(DescribeTaskResult(result), "text", QStringLiteral("Conversation"));

    auto* row = new QHBoxLayout;
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addSpacing(8);
    row->addWidget(text, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    AddOk(*this, *layout);
    resize(520, 260);
}
