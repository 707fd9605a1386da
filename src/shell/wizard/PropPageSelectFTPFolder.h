#pragma once

#include "shell/wizard/WizardPage.h"

class QLineEdit;

// Asks for the directory of the site on the server.
class CPropPageSelectFTPFolder final : public CWizardPage {
    Q_OBJECT

public:
    static constexpr int Limit = 260; // UTF-16 units

    explicit CPropPageSelectFTPFolder(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override { return DeployPageId::DeployToFTP; }
    bool validatePage() override;

private:
    void OnBrowse();

    QLineEdit* directory;
};
