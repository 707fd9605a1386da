#pragma once

#include <memory>

#include "shell/wizard/WizardPage.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QVBoxLayout;

// Base of the two pages that deploy: the generation, its progress and its end. The page stays while the job
// runs, and goes to the error page by itself.
class CPropPageDeploy : public CWizardPage {
    Q_OBJECT

public:
    void OnShown() override;
    int nextId() const override;
    bool isComplete() const override;
    bool validatePage() override;
    CancelAnswer OnCancel() override;
    void OnFinish() override;

protected:
    enum class Progress { Ready, Running, Cancelling, Failed, Done };

    explicit CPropPageDeploy(DeployWizardState& state);

    // Progress bar, text and warnings, for the end of a page's layout.
    void AddProgress(QVBoxLayout& layout);

    virtual void Start() = 0;
    // The generation has ended well.
    virtual void OnGenerated() = 0;
    // All pages are generated; a list of the files is made next.
    virtual void OnPreparing() {}
    // For what a derived class has under way. False if there is nothing.
    virtual bool CancelMore() { return false; }

    void StartGeneration();
    void SetProgress(Progress newProgress);
    Progress GetProgress() const { return progress; }
    void Fail(const DeployError& error);
    void Succeed();
    // Closes the wizard; everything that was under way has ended.
    void CloseCancelled();

    QLabel* status; // the last thing done
    QProgressBar* bar;

private:
    void OnJobMessage(const DeployMessage& message);
    void OnJobEnded();
    void ShowWarnings();

    Progress progress = Progress::Ready;
    bool generating = false;
    std::shared_ptr<CDeployTarget> target;
    QLabel* warningsLabel;
    QPlainTextEdit* warnings;
};
