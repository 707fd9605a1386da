#pragma once

#include "shell/wizard/WizardPage.h"

class QPlainTextEdit;

// The last page of a deployment that failed: what happened, why, and what to do. Back begins anew.
class CPropPageDeployError final : public CWizardPage {
    Q_OBJECT

public:
    explicit CPropPageDeployError(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override { return -1; }

private:
    QPlainTextEdit* description;
    QPlainTextEdit* reason;
    QPlainTextEdit* solution;
};
