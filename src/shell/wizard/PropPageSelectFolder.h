#pragma once

#include "shell/wizard/WizardPage.h"

class QLineEdit;

// Asks for the local folder of the site.
class CPropPageSelectFolder final : public CWizardPage {
    Q_OBJECT

public:
    static constexpr int Limit = 260; // UTF-16 units

    explicit CPropPageSelectFolder(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override { return DeployPageId::DeployToFolder; }
    // Not without a path: the site would go nowhere.
    bool isComplete() const override;
    bool validatePage() override;

private:
    void OnBrowse();

    QLineEdit* folder;
};

// A path as a person types it, made absolute: "~" and what is relative begin at the user's home folder.
QString AbsoluteFolder(const QString& typed);
