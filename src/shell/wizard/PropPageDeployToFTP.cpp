#include "shell/wizard/PropPageDeployToFTP.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QVBoxLayout>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/MessageTarget.h"
#include "document/project/GalleryProject.h"
#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/EngineRetirement.h"
#include "shell/look/DialogParts.h"

namespace {

// A name that is looked up and a connection that is made can't be broken off; they are left alone then.
constexpr std::chrono::milliseconds CancelLimit{700};

} // namespace

CPropPageDeployToFTP::CPropPageDeployToFTP(DeployWizardState& state)
    : CPropPageDeploy(state),
      server(new QLineEdit(this)),
      directory(new QLineEdit(this)),
      step(new QLabel(this)),
      engine(std::make_unique<CFTPEngine>(state.services.timeouts))
{
    MakeExterior(Text(StringId::DeployToSiteTitle));
    const QString serverLabel = Text(StringId::TargetServerLabel);
    const QString directoryLabel = Text(StringId::TargetDirectoryLabel);
    NameControl(*server, "server", serverLabel);
    NameControl(*directory, "directory", directoryLabel);
    NameControl(*step, "step", Text(StringId::StepName));
    server->setReadOnly(true);
    directory->setReadOnly(true);
    step->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    AddRow(*form, serverLabel, *server);
    AddRow(*form, directoryLabel, *directory);
    layout->addLayout(form);
    layout->addSpacing(12);
    layout->addWidget(step);
    AddProgress(*layout);
    cancelLimit.setSingleShot(true);
    cancelLimit.setInterval(CancelLimit);
    connect(&cancelLimit, &QTimer::timeout, this, &CPropPageDeployToFTP::OnCancelTakesLong);
}

CPropPageDeployToFTP::~CPropPageDeployToFTP()
{
    RetireEngine(std::move(engine));
}

void CPropPageDeployToFTP::OnShown()
{
    CPropPageDeploy::OnShown();
    step->clear();
    const CFTPDestination destination = state.Destinations().Load(state.job.settings.ftp_destination);
    server->setText(destination.connection.server);
    directory->setText(state.job.settings.ftp_directory);
}

void CPropPageDeployToFTP::Start()
{
    try {
        if (!temporaryFolder) {
            temporaryFolder = std::make_unique<CTempFolder>(state.project.GetTempFolder().GetPath());
        }
    } catch (const CExceptionBase& failure) {
        Fail({failure.GetCaption(), failure.GetDescription(), failure.GetAdvice()});
        return;
    }
    state.job.temporaryFolder = temporaryFolder->GetPath();
    step->setText(Text(StringId::GeneratingStep));
    StartGeneration();
}

void CPropPageDeployToFTP::OnPreparing()
{
    step->setText(Text(StringId::PreparingStep));
}

void CPropPageDeployToFTP::OnGenerated()
{
    FTPDestinationConnection connection =
        state.Destinations().Load(state.job.settings.ftp_destination).connection;
    // The directory is seen from the login's folder, so nothing is to be entered before it.
    connection.directory.clear();
    upload = std::make_unique<CSiteUpload>(*engine, connection, state.job.settings.ftp_directory);
    target =
        CEventLoopTarget<FTPMessage>::Create([this](const FTPMessage& message) { OnUploadMessage(message); });
    upload->Start(state.job.GetUploadMap(), target);
}

void CPropPageDeployToFTP::OnUploadMessage(const FTPMessage& message)
{
    upload->OnMessage(message);
    if (upload->IsFinished()) {
        OnUploadFinished();
    } else if (GetProgress() == Progress::Cancelling) {
        return;
    } else if (std::holds_alternative<FTP_UPLOAD_STARTED>(message)) {
        step->setText(Text(StringId::UploadingStep));
        bar->setRange(0, static_cast<int>(state.job.GetUploadMap().size()));
        bar->setValue(0);
    } else if (const auto* const started = std::get_if<FTP_UPLOAD_FILE_STARTED>(&message)) {
        status->setText(Text(StringId::UploadingFile, ExtractLastName(started->localPath)));
    } else if (std::holds_alternative<FTP_UPLOAD_FILE_FINISHED>(message)) {
        bar->setValue(upload->GetFinishedFiles());
    }
}

void CPropPageDeployToFTP::OnUploadFinished()
{
    temporaryFolder.reset();
    if (GetProgress() == Progress::Cancelling) {
        CloseCancelled();
    } else if (const auto error = upload->MakeError()) {
        Fail(*error);
    } else {
        step->clear();
        status->setText(Text(StringId::UploadDone));
        Succeed();
    }
}

bool CPropPageDeployToFTP::CancelMore()
{
    upload->Cancel();
    status->setText(Text(StringId::BreakingOffUpload));
    cancelLimit.start();
    return true;
}

void CPropPageDeployToFTP::OnCancelTakesLong()
{
    if (GetProgress() == Progress::Cancelling && !upload->IsSendingFile()) {
        target.reset();
        CloseCancelled();
    }
}
