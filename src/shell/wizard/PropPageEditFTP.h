#pragma once

#include <memory>

#include "ftpengine/FTPEngine.h"
#include "ftpengine/destinations/FTPDestination.h"
#include "shell/wizard/WizardPage.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QSpinBox;
class QVBoxLayout;

// Edits a stored connection, or makes a new one. It is tried before it is stored.
class CPropPageEditFTP final : public CWizardPage {
    Q_OBJECT

public:
    static constexpr int NameLimit = 255;  // UTF-16 units, of server and display name
    static constexpr int LoginLimit = 50;  // of user name and password
    static constexpr int PathLimit = 4096; // of the key file's path

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
    QFormLayout* MakeForm();
    QWidget* MakeIdentityRow();
    void MakeShare(QVBoxLayout& layout);
    bool IsNew() const;
    void ShowScope(const CFTPDestination& destination);
    void ShowProtocol(ServerProtocol chosen);
    ServerProtocol GetProtocol() const;
    FTPDestinationConnection ReadControls() const;
    void OnServerEdited(const QString& text);
    void OnProtocolChosen();
    void OnBrowseIdentity();
    void Test();
    void OnMessage(const FTPMessage& message);
    void OnTestFinished(const CTaskResult& result);
    void OnQuestion(const CTaskResult& result);
    // False, with a message, if it can't be stored.
    bool Store();
    void SetTesting(bool isTesting);
    void Warn(const QString& text);

    QComboBox* protocol;
    QLineEdit* server;
    QSpinBox* port;
    QLineEdit* userName;
    QLineEdit* password;
    QLineEdit* identityFile;
    QLineEdit* displayName;
    QCheckBox* share;
    QLabel* shareNote;
    QLabel* status;
    QFormLayout* form;
    QWidget* identityRow;

    ServerProtocol shownProtocol = ServerProtocol::FtpTls;
    bool following = true; // the display name follows the server
    bool testing = false;
    bool stored = false; // by the test that has just succeeded
    std::unique_ptr<CFTPEngine> engine;
    std::shared_ptr<CFTPTarget> target;
};
