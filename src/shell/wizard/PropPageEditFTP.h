#pragma once

#include <memory>

#include "ftpengine/FTPEngine.h"
#include "ftpengine/destinations/FTPDestination.h"
#include "shell/wizard/WizardPage.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QVBoxLayout;

// Edits a stored connection, or makes a new one. It is tried before it is stored.
class CPropPageEditFTP final : public CWizardPage {
    Q_OBJECT

public:
    static constexpr int NameLimit = 255; // UTF-16 units, of server and display name
    static constexpr int LoginLimit = 50; // of user name and password

    explicit CPropPageEditFTP(DeployWizardState& state);
    ~CPropPageEditFTP() override;

    void OnShown() override;
    int nextId() const override { return DeployPageId::SelectFTPFolder; }
    bool isComplete() const override { return !testing; }
    // Begins the test and stays; the page goes on by itself when that has succeeded.
    bool validatePage() override;
    CancelAnswer OnCancel() override;

private:
    void MakeControls();
    void MakeShare(QVBoxLayout& layout);
    bool IsNew() const;
    void ShowScope(const CFTPDestination& destination);
    FTPDestinationConnection ReadControls() const;
    void OnServerEdited(const QString& text);
    void OnMessage(const FTPMessage& message);
    void OnTestFinished(const CTaskResult& result);
    // False, with a message, if it can't be stored.
    bool Store();
    void SetTesting(bool isTesting);

    QLineEdit* server;
    QLineEdit* userName;
    QLineEdit* displayName;
    QLineEdit* password;
    QCheckBox* share;
    QLabel* shareNote;
    QLabel* status;

    bool following = true; // the display name follows the server
    bool testing = false;
    bool stored = false; // by the test that has just succeeded
    std::unique_ptr<CFTPEngine> engine;
    std::shared_ptr<CFTPTarget> target;
};
