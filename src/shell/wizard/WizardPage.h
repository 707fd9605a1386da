#pragma once

#include <QWizardPage>

#include "shell/wizard/DeployWizardState.h"

// The pages by number; tests and the wizard name them so.
struct DeployPageId {
    enum {
        DeployDestination = 241,
        SelectFolder = 256,
        DeployDoubts = 258,
        DeployToFolder = 107,
        EditFTP = 237,
        SelectFTPFolder = 257,
        DeployToFTP = 239,
        DeployError = 245
    };
};

// Base of the wizard's pages. Owned by the wizard; screen's thread.
class CWizardPage : public QWizardPage {
    Q_OBJECT

public:
    // Called each time that the page comes up, from either side.
    virtual void OnShown() {}

    // What Cancel does on this page.
    enum class CancelAnswer {
        Close,     // nothing is under way
        StayThere, // something was stopped, and the person goes on here
        WaitFor    // something has to end first; the page closes the wizard then
    };
    virtual CancelAnswer OnCancel() { return CancelAnswer::Close; }

    // What Finish does.
    virtual void OnFinish() {}

protected:
    explicit CWizardPage(DeployWizardState& state) : state(state) {}

    // For the pages that choose the target: looks for what a person should decide, unless a run has found
    // that already. A failure is left to the run, which meets it again and tells of it. What is on a server
    // is left to it, too.
    void Examine();
    // The page of doubts if there are any, else the one that follows.
    int AfterExamination(int following) const;

    // An exterior page has the wizard's side picture, an interior one a header with a subtitle and
    // a small picture.
    void MakeExterior(const QString& title);
    void MakeInterior(const QString& title, const QString& subtitle);

    DeployWizardState& state;
};
