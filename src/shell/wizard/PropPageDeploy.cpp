#include "shell/wizard/PropPageDeploy.h"

#include <utility>

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QWizard>

#include "common/MessageTarget.h"
#include "document/project/GalleryProject.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int WarningsHeight = 90; // pixels

} // namespace

CPropPageDeploy::CPropPageDeploy(DeployWizardState& state)
    : CWizardPage(state),
      status(new QLabel(this)),
      bar(new QProgressBar(this)),
      warnings(MakeReport(QString(), "warnings", Text(StringId::WarningsLabel)))
{
    const QString label = Text(StringId::WarningsLabel);
    warningsLabel = MakeLabel(label, *warnings);
    warnings->setFixedHeight(WarningsHeight);
    NameControl(*status, "status", Text(StringId::StatusName));
    NameControl(*bar, "progress", Text(StringId::ProgressName));
    // A long name of a file shall not widen the window.
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    status->setTextFormat(Qt::PlainText);
    status->setWordWrap(true);
}

CPropPageDeploy::~CPropPageDeploy() = default;

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
    if (std::exchange(state.goesOn, false)) {
        Start();
    }
}

int CPropPageDeploy::nextId() const
{
    // Without a next page the wizard shows Finish in place of Next.
    const bool hasNext =
        progress == Progress::Ready || progress == Progress::Asking || progress == Progress::Failed;
    return hasNext ? DeployPageId::DeployError : -1;
}

bool CPropPageDeploy::isComplete() const
{
    return progress != Progress::Running && progress != Progress::Cancelling;
}

bool CPropPageDeploy::validatePage()
{
    if (progress == Progress::Ready) {
        Start();
    } else if (progress == Progress::Asking) {
        SetProgress(Progress::Running);
        deployment->Consent();
    }
    return progress == Progress::Failed || progress == Progress::Done;
}

void CPropPageDeploy::SetProgress(Progress newProgress)
{
    progress = newProgress;
    setButtonText(QWizard::NextButton, progress == Progress::Asking
                                           ? Text(StringId::PublishButton)
                                           : wizard()->buttonText(QWizard::NextButton));
    // This alone makes the wizard ask for the next page again.
    setFinalPage(nextId() < 0);
    wizard()->button(QWizard::BackButton)->setEnabled(progress == Progress::Ready);
}

void CPropPageDeploy::Start()
{
    SetProgress(Progress::Running);
    receiver = CEventLoopTarget<DeploymentMessage>::Create(
        [this](const DeploymentMessage& message) { OnDeploymentMessage(message); });
    deployment =
        std::make_unique<CDeployment>(state.project, CDeployment::Setting{
                                                         .target = MakeTarget(),
                                                         .leaveOutMissing = state.leaveOutMissing,
                                                         .overwrite = state.overwrite,
                                                         .isDryRun = false,
                                                         .awaitsConsent = true,
                                                         .recordsFolder = state.services.recordsFolder,
                                                         .sitesFolder = state.services.sitesFolder,
                                                     });
    deployment->Start(receiver);
}

void CPropPageDeploy::OnDeploymentMessage(const DeploymentMessage& message)
{
    if (std::holds_alternative<DeployEnded>(message)) {
        OnEnded();
    } else if (progress == Progress::Cancelling) {
        return; // the text says what is waited for
    } else if (const auto* const pages = std::get_if<DeployPagesDone>(&message)) {
        bar->setRange(0, pages->total);
        bar->setValue(pages->done);
        status->setText(Text(StringId::DeployedPages, pages->done, pages->total));
    } else {
        OnMessage(message);
    }
}

void CPropPageDeploy::OnEnded()
{
    deployment->WaitFinished();
    if (progress == Progress::Cancelling) {
        OnEnd(DeployCancelled());
    } else {
        ShowWarnings();
        std::visit([this](const auto& end) { OnEnd(end); }, deployment->GetEnd());
    }
}

void CPropPageDeploy::OnEnd(const DeployDone&)
{
    OnDone(deployment->GetResult());
}

void CPropPageDeploy::OnEnd(const DeployCancelled&)
{
    SetProgress(Progress::Ready);
    wizard()->reject();
}

void CPropPageDeploy::OnEnd(const DeployFailure& failure)
{
    state.error = failure;
    SetProgress(Progress::Failed);
    wizard()->next();
}

// The page of doubts comes before this one; the page that asks for the target leads there.
void CPropPageDeploy::OnEnd(const DeployDoubts& doubts)
{
    if (doubts.IsAnyMissing()) {
        state.doubts = doubts;
        state.leaveOutMissing = false;
    } else {
        state.doubts.strangeFiles = doubts.strangeFiles;
    }
    state.isUndecided = true;
    SetProgress(Progress::Ready);
    wizard()->back();
    if (wizard()->currentId() != DeployPageId::DeployDoubts) {
        wizard()->next();
    }
}

void CPropPageDeploy::OnEnd(const ServerDoubt& doubt)
{
    if (Settle(doubt)) {
        // Not before the message of the run that has ended is through.
        QTimer::singleShot(0, this, [this] { Start(); });
    } else {
        OnShown();
    }
}

void CPropPageDeploy::ShowWarnings()
{
    const QStringList& texts = deployment->GetResult().warnings;
    warnings->setPlainText(texts.join(QLatin1Char('\n')));
    warningsLabel->setVisible(!texts.isEmpty());
    warnings->setVisible(!texts.isEmpty());
}

void CPropPageDeploy::Succeed()
{
    SetProgress(Progress::Done);
    wizard()->button(QWizard::FinishButton)->setFocus();
}

QString CPropPageDeploy::GetCancellingText() const
{
    return Text(StringId::CancellingGeneration);
}

CWizardPage::CancelAnswer CPropPageDeploy::OnCancel()
{
    if (progress == Progress::Cancelling) {
        return CancelAnswer::WaitFor;
    }
    if (progress != Progress::Running && progress != Progress::Asking) {
        return CancelAnswer::Close;
    }
    SetProgress(Progress::Cancelling);
    status->setText(GetCancellingText());
    deployment->RequestCancel();
    return CancelAnswer::WaitFor;
}

void CPropPageDeploy::OnFinish()
{
    state.project.GetDeploySettings() = state.settings;
}
