#pragma once

#include "shell/wizard/PropPageDeploy.h"

class QCheckBox;
class QLineEdit;

// Generates the site into a local folder, and opens it in the web browser if that is wanted.
class CPropPageDeployToFolder final : public CPropPageDeploy {
    Q_OBJECT

public:
    explicit CPropPageDeployToFolder(DeployWizardState& state);

    void OnShown() override;

private:
    DeploymentTarget MakeTarget() override;
    void OnDone(const DeployResult& result) override;

    QLineEdit* folder;
    QCheckBox* openBrowser;
};

// The first page of a project's deployed site, in that folder; empty if it has none.
QString FindFirstPage(CGalleryProject& project, const QString& folder);
