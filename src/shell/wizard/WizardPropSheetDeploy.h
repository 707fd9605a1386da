#pragma once

#include <QWizard>

#include "shell/wizard/DeployWizardState.h"

class CWizardPage;

// The deployment wizard: asks where the galleries go, generates them, sends them if the place is a server,
// and reports. Owned by its caller, and modal: nobody may change the project while it is open. The project's
// deploy settings change when it ends with Finish after a deployment, and not otherwise.
class CWizardPropSheetDeploy final : public QWizard {
    Q_OBJECT

public:
    // project: borrowed, loaded, outlives the wizard.
    CWizardPropSheetDeploy(CGalleryProject& project, const DeployWizardServices& services, QWidget* parent);

    // What is under way ends first: at once, or when the pictures in progress are written.
    void reject() override;
    void accept() override;

private:
    void MakePages();
    void OnPageShown(int id);
    void OnBack();
    void ContinueSidePicture();
    CWizardPage* GetPage() const;

    DeployWizardState state;
};
