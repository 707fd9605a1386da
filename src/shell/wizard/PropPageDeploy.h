#pragma once

#include <memory>

#include "deploy/Deployment.h"
#include "shell/wizard/WizardPage.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QVBoxLayout;

// Base of the two pages that deploy: the run, its progress and its end. The page stays while the deployment
// runs, and goes by itself to the error page, or back to the page of doubts.
class CPropPageDeploy : public CWizardPage {
    Q_OBJECT

public:
    ~CPropPageDeploy() override;

    void OnShown() override;
    int nextId() const override;
    bool isComplete() const override;
    bool validatePage() override;
    CancelAnswer OnCancel() override;
    void OnFinish() override;

protected:
    // Asking: the deployment waits for the person's consent.
    enum class Progress { Ready, Running, Asking, Cancelling, Failed, Done };

    explicit CPropPageDeploy(DeployWizardState& state);

    // Progress bar, text and warnings, for the end of a page's layout.
    void AddProgress(QVBoxLayout& layout);

    virtual DeploymentTarget MakeTarget() = 0;
    // Everything but the pages and the end; not when the person has cancelled.
    virtual void OnMessage(const DeploymentMessage&) {}
    virtual QString GetCancellingText() const;
    virtual void OnDone(const DeployResult& result) = 0;
    // Returns whether it is worth another try.
    virtual bool Settle(const ServerDoubt&) { return false; }

    void SetProgress(Progress newProgress);
    void Succeed();

    QLabel* status; // the last thing done
    QProgressBar* bar;

private:
    void Start();
    void OnDeploymentMessage(const DeploymentMessage& message);
    void OnEnded();
    void OnEnd(const DeployDone&);
    void OnEnd(const DeployCancelled&);
    void OnEnd(const DeployFailure& failure);
    void OnEnd(const DeployDoubts& doubts);
    void OnEnd(const ServerDoubt& doubt);
    void ShowWarnings();

    Progress progress = Progress::Ready;
    std::unique_ptr<CDeployment> deployment;
    std::shared_ptr<CDeploymentReceiver> receiver;
    QLabel* warningsLabel;
    QPlainTextEdit* warnings;
};
