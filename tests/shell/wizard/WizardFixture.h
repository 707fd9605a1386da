#pragma once

#include <memory>

#include <QLabel>

#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/secrets/PasswordProtection.h"
#include "shell/wizard/WizardPage.h"
#include "shell/wizard/WizardPropSheetDeploy.h"
#include "shell_support/DialogTools.h"
#include "shell_support/FTPTestTools.h"
#include "support/ProjectFixture.h"
#include "support/ScriptedServer.h"

// A project with two small pictures, the stored connections of nobody, a server that isn't started yet, and a
// wizard over them.
class CWizardFixture : public testing::Test {
protected:
    CWizardFixture();

    void Open();
    DeployWizardServices MakeServices();
    // Stores a connection to the server and chooses it in the project.
    CFTPDestination AddServer(const QString& directory = {});
    // Opens the wizard and goes to the page that uploads into that directory.
    void OpenUpload(const QString& directory = QStringLiteral("web"));
    // Opens the wizard and goes to the page that deploys into the folder "site".
    void OpenFolderDeployment();

    // The wizard's own buttons: "back", "next", "finish", "cancel".
    void Press(const char* buttonName) const { Click(*wizard, buttonName); }
    bool CanPress(const char* buttonName) const;
    int PageId() const { return wizard->currentId(); }
    template <class Control>
    Control& OnPage(const char* name) const
    {
        return Find<Control>(*wizard->currentPage(), name);
    }
    // The deployment waits for the person's consent.
    bool IsAsking() const;
    // Begins the upload, and consents when it asks.
    void Publish();
    QString Status() const { return OnPage<QLabel>("status").text(); }
    // The three texts of the error page.
    QStringList ErrorTexts() const;

    const CDeploySettings& Stored() { return fixture.GetProject().GetDeploySettings(); }
    QString Path(const QString& name) const { return fixture.scratch.Path(name); }
    // What deployments have left in the program's temporary folder.
    QStringList TemporaryFiles() const;

    CProjectFixture fixture;
    const QString userKeys = fixture.scratch.Path(QStringLiteral("keys"));
    const CPasswordProtection protection{userKeys, fixture.scratch.Path(QStringLiteral("machine-keys"))};
    CFTPDestinations destinations{*fixture.settings, protection};
    CScriptedServer server;
    QStringList opened; // in the web browser
    FTPTimeouts timeouts;
    RemoteSessionOpener openSession; // in place of a network
    std::unique_ptr<CWizardPropSheetDeploy> wizard;
};
