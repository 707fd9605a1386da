#include "shell/wizard/PropPageDeployToFTP.h"

#include <QAbstractButton>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QVBoxLayout>

#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/messages/EngineStatus.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/ServerQuestion.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int BarSteps = 1000;

QString Number(int64_t number)
{
    return QString::number(number);
}

QString SizeOf(int64_t bytes)
{
    return QLocale().formattedDataSize(bytes);
}

// "2:05", "1:00:00"
QString TimeOf(std::chrono::seconds time)
{
    const auto hours = std::chrono::duration_cast<std::chrono::hours>(time);
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(time - hours);
    const auto two = [](int64_t number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const QString seconds = two((time - hours - minutes).count());
    const QLatin1Char colon(':');
    return hours.count() > 0 ? Number(hours.count()) + colon + two(minutes.count()) + colon + seconds
                             : Number(minutes.count()) + colon + seconds;
}

QString FiguresOf(const SendProgress& progress)
{
    const QString done = Number(progress.doneFiles);
    const QString total = Number(progress.totalFiles);
    if (!progress.timeLeft) {
        return Text(StringId::SendingFigures, done, total, SizeOf(progress.doneBytes),
                    SizeOf(progress.totalBytes));
    }
    return Text(StringId::SendingFiguresAndTime, done, total, SizeOf(progress.doneBytes),
                SizeOf(progress.totalBytes), SizeOf(progress.bytesPerSecond), TimeOf(*progress.timeLeft));
}

} // namespace

CPropPageDeployToFTP::CPropPageDeployToFTP(DeployWizardState& state)
    : CPropPageDeploy(state),
      server(new QLineEdit(this)),
      directory(new QLineEdit(this)),
      step(new QLabel(this)),
      figures(new QLabel(this))
{
    MakeExterior(Text(StringId::DeployToSiteTitle));
    MakeControls();
}

void CPropPageDeployToFTP::MakeControls()
{
    const QString serverLabel = Text(StringId::TargetServerLabel);
    const QString directoryLabel = Text(StringId::TargetDirectoryLabel);
    NameControl(*server, "server", serverLabel);
    NameControl(*directory, "directory", directoryLabel);
    NameControl(*step, "step", Text(StringId::StepName));
    NameControl(*figures, "figures", Text(StringId::FiguresName));
    server->setReadOnly(true);
    directory->setReadOnly(true);
    step->setWordWrap(true);
    figures->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    AddRow(*form, serverLabel, *server);
    AddRow(*form, directoryLabel, *directory);
    layout->addLayout(form);
    layout->addSpacing(12);
    layout->addWidget(step);
    layout->addWidget(figures);
    AddProgress(*layout);
}

void CPropPageDeployToFTP::OnShown()
{
    step->clear();
    figures->clear();
    isSending = false;
    const CFTPDestination destination = state.Destinations().Load(state.settings.ftp_destination);
    server->setText(destination.connection.server);
    directory->setText(state.settings.ftp_directory);
    CPropPageDeploy::OnShown(); // which may begin a run
}

DeploymentTarget CPropPageDeployToFTP::MakeTarget()
{
    isSending = false;
    FTPDestinationConnection connection =
        state.Destinations().Load(state.settings.ftp_destination).connection;
    connection.directory = state.settings.ftp_directory;
    return MakeServerTarget(connection, state.services.access);
}

void CPropPageDeployToFTP::OnMessage(const DeploymentMessage& message)
{
    std::visit([this](const auto& what) { Show(what); }, message);
}

void CPropPageDeployToFTP::Show(const DeployPhaseBegun& begun)
{
    switch (begun.phase) {
    case DeployPhase::Look:
    case DeployPhase::Pages:
        step->setText(Text(StringId::GeneratingStep));
        break;
    case DeployPhase::Compare:
        step->setText(Text(StringId::PreparingStep));
        break;
    case DeployPhase::Send:
        isSending = true;
        step->setText(Text(StringId::UploadingStep));
        status->clear();
        bar->setRange(0, BarSteps);
        bar->setValue(0);
        break;
    case DeployPhase::Tidy:
        status->setText(Text(StringId::RemovingLeftovers));
        figures->clear();
        break;
    }
}

void CPropPageDeployToFTP::Show(const DeploySummary& summary)
{
    if (summary.awaitsConsent) {
        step->setText(Text(StringId::SummaryQuestion, Number(summary.newFiles), Number(summary.changedFiles),
                           Number(summary.removedFiles), SizeOf(summary.bytes)));
        SetProgress(Progress::Asking);
        // It lost the focus while it could not be pressed.
        wizard()->button(QWizard::NextButton)->setFocus();
    }
}

void CPropPageDeployToFTP::Show(const SendProgress& progress)
{
    const bool countsBytes = progress.totalBytes > 0;
    const int64_t done = countsBytes ? progress.doneBytes : progress.doneFiles;
    const int64_t total = countsBytes ? progress.totalBytes : progress.totalFiles;
    bar->setValue(total > 0 ? static_cast<int>(done * BarSteps / total) : BarSteps);
    status->setText(Text(StringId::UploadingFile, progress.path));
    figures->setText(FiguresOf(progress));
}

void CPropPageDeployToFTP::Show(const SendRetry& retry)
{
    const QString seconds = Number(std::chrono::duration_cast<std::chrono::seconds>(retry.pause).count());
    const QString number = Number(retry.number);
    const QString allowed = Number(retry.allowed);
    const QString path = retry.path.isEmpty() ? server->text() : retry.path;
    status->setText(retry.status != 0 ? Text(StringId::SendingBroken, path,
                                             EngineStatus::GetWords(retry.status), seconds, number, allowed)
                                      : Text(StringId::SendingIncomplete, path, seconds, number, allowed));
}

QString CPropPageDeployToFTP::GetCancellingText() const
{
    return isSending ? Text(StringId::CancellingSending) : CPropPageDeploy::GetCancellingText();
}

void CPropPageDeployToFTP::OnDone(const DeployResult& result)
{
    const bool isNothing = result.summary && result.summary->IsNothing();
    step->clear();
    figures->clear();
    status->setText(Text(isNothing ? StringId::NothingChanged : StringId::UploadDone));
    bar->setRange(0, BarSteps);
    bar->setValue(BarSteps);
    Succeed();
}

bool CPropPageDeployToFTP::Settle(const ServerDoubt& doubt)
{
    CFTPDestination destination = state.Destinations().Load(state.settings.ftp_destination);
    const ServerProtocol before = destination.connection.protocol;
    const ServerQuestion question{doubt.status, doubt.identity, state.services.access.trustFolder};
    if (!AskAboutServer(question, destination.connection, this)) {
        return false;
    }
    if (destination.connection.protocol != before) {
        state.Destinations().Save(destination);
    }
    return true;
}
