#pragma once

#include "ftpengine/destinations/FTPDestination.h"
#include "shell/wizard/PropPageDeploy.h"

class QLineEdit;

// Brings the site to the server: tells what would be sent, sends it when the person agrees, and asks what has
// to be known about the server.
class CPropPageDeployToFTP final : public CPropPageDeploy {
    Q_OBJECT

public:
    explicit CPropPageDeployToFTP(DeployWizardState& state);

    void OnShown() override;

private:
    void MakeControls();
    DeploymentTarget MakeTarget() override;
    void OnMessage(const DeploymentMessage& message) override;
    QString GetCancellingText() const override;
    void OnDone(const DeployResult& result) override;
    bool Settle(const ServerDoubt& doubt) override;

    void Show(const DeployPhaseBegun& begun);
    void Show(const DeploySummary& summary);
    void Show(const SendProgress& progress);
    void Show(const SendRetry& retry);
    void Show(const DeployPagesDone&) {}
    void Show(const DeployEnded&) {}

    QLineEdit* server;
    QLineEdit* directory;
    QLabel* step;
    QLabel* figures;

    bool isSending = false;
};
