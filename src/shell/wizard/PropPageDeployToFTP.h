#pragma once

#include <memory>

#include <QTimer>

#include "common/TempFolder.h"
#include "deploy/SiteUpload.h"
#include "shell/wizard/PropPageDeploy.h"

class QLineEdit;

// Generates the site into a temporary folder and sends it to the server.
class CPropPageDeployToFTP final : public CPropPageDeploy {
    Q_OBJECT

public:
    explicit CPropPageDeployToFTP(DeployWizardState& state);
    ~CPropPageDeployToFTP() override;

    void OnShown() override;

private:
    void Start() override;
    void OnPreparing() override;
    void OnGenerated() override;
    bool CancelMore() override;

    void OnUploadMessage(const FTPMessage& message);
    void OnUploadFinished();
    void OnCancelTakesLong();

    QLineEdit* server;
    QLineEdit* directory;
    QLabel* step;
    QTimer cancelLimit{this};

    std::unique_ptr<CTempFolder> temporaryFolder; // of a run; made anew when the one before was removed
    std::unique_ptr<CFTPEngine> engine;
    std::unique_ptr<CSiteUpload> upload;
    std::shared_ptr<CFTPTarget> target;
};
