#pragma once

#include "shell/wizard/WizardPage.h"

class QComboBox;
class QPushButton;
class QRadioButton;

// The first page: a folder or an Internet site, and which one of the stored connections.
class CPropPageDeployDestination final : public CWizardPage {
    Q_OBJECT

public:
    explicit CPropPageDeployDestination(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override;
    bool validatePage() override;

private:
    void MakeControls();
    void FillConnections();
    void UpdateControls();
    int32_t GetChosenKey() const;
    void OnEdit();
    void OnDelete();

    QRadioButton* folder;
    QRadioButton* site;
    QComboBox* connection;
    QPushButton* edit;
    QPushButton* remove;
    bool editing = false; // goes to the connection's page
};
