#include "shell/wizard/PropPageDeploy.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWizard>

#include "common/MessageTarget.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int WarningsHeight = 90; // pixels

} // namespace

CPropPageDeploy::CPropPageDeploy(DeployWizardState& state)
    : CWizardPage(state),
      status(new QLabel(this)),
      bar(new QProgressBar(this)),
      warnings(MakeReport(QString(), "warnings", QStringLiteral("Warnings")))
{
    const QString label = QStringLiteral("&Warnings:");
    warningsLabel = MakeLabel(label, *warnings);
    warnings->setFixedHeight(WarningsHeight);
    NameControl(*status, "status", QStringLiteral("Status"));
    NameControl(*bar, "progress", QStringLiteral("Progress"));
    // A long name of a file shall not widen the window.
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    status->setTextFormat(Qt::PlainText);
}

void CPropPageDeploy::AddProgress(QVBoxLayout& layout)
{
    layout.addWidget(bar);
    layout.addWidget(status);
    layout.addWidget(warningsLabel);
    layout.addWidget(warnings);
    layout.addStretch();
}

void CPropPageDeploy::OnShown()
{
    bar->setRange(0, 1);
    bar->setValue(0);
    status->clear();
    warningsLabel->hide();
    warnings->hide();
    SetProgress(Progress::Ready);
    wizard()->button(QWizard::NextButton)->setFocus();
}

int CPropPageDeploy::nextId() const
{
    // Without a next page the wizard shows Finish in place of Next.
    return progress == Progress::Ready || progress == Progress::Failed ? DeployPageId::DeployError : -1;
}

bool CPropPageDeploy::isComplete() const
{
    return progress != Progress::Running && progress != Progress::Cancelling;
}

bool CPropPageDeploy::validatePage()
{
    if (progress == Progress::Ready) {
        SetProgress(Progress::Running);
        Start();
    }
    return progress == Progress::Failed || progress == Progress::Done;
}

void CPropPageDeploy::SetProgress(Progress newProgress)
{
    progress = newProgress;
    // This alone makes the wizard ask for the next page again.
    setFinalPage(nextId() < 0);
    if (progress != Progress::Ready) {
        wizard()->button(QWizard::BackButton)->setEnabled(false);
    }
}

void CPropPageDeploy::StartGeneration()
{
    generating = true;
    target = CEventLoopTarget<DeployMessage>::Create(
        [this](const DeployMessage& message) { OnJobMessage(message); });
    state.job.StartGeneration(target);
}

void CPropPageDeploy::OnJobMessage(const DeployMessage& message)
{
    if (std::holds_alternative<DEPLOY_GENERATED>(message)) {
        OnJobEnded();
    } else if (progress == Progress::Cancelling) {
        return; // the text says what is waited for
    } else if (const auto* const pages = std::get_if<DEPLOY_PROGRESS>(&message)) {
        bar->setRange(0, pages->totalPages);
        bar->setValue(pages->donePages);
        status->setText(Text(StringId::DeployedPages, pages->donePages, pages->totalPages));
    } else {
        OnPreparing();
    }
}

void CPropPageDeploy::OnJobEnded()
{
    state.job.WaitFinished();
    generating = false;
    if (progress == Progress::Cancelling) {
        CloseCancelled();
    } else if (const auto& error = state.job.GetError()) {
        Fail(*error);
    } else {
        ShowWarnings();
        OnGenerated();
    }
}

void CPropPageDeploy::ShowWarnings()
{
    const QStringList& texts = state.job.GetResult().warnings;
    warnings->setPlainText(texts.join(QLatin1Char('\n')));
    warningsLabel->setVisible(!texts.isEmpty());
    warnings->setVisible(!texts.isEmpty());
}

void CPropPageDeploy::Fail(const DeployError& error)
{
    state.error = error;
    SetProgress(Progress::Failed);
    wizard()->next();
}

void CPropPageDeploy::Succeed()
{
    SetProgress(Progress::Done);
    wizard()->button(QWizard::FinishButton)->setFocus();
}

CWizardPage::CancelAnswer CPropPageDeploy::OnCancel()
{
    if (progress == Progress::Cancelling) {
        return CancelAnswer::WaitFor;
    }
    if (progress != Progress::Running) {
        return CancelAnswer::Close;
    }
    SetProgress(Progress::Cancelling);
    if (generating) {
        status->setText(Text(StringId::CancellingGeneration));
        state.job.RequestCancel();
        return CancelAnswer::WaitFor;
    }
    return CancelMore() ? CancelAnswer::WaitFor : CancelAnswer::Close;
}

void CPropPageDeploy::CloseCancelled()
{
    SetProgress(Progress::Ready);
    wizard()->reject();
}

void CPropPageDeploy::OnFinish()
{
    state.job.StoreSettings();
}
