#pragma once

#include "shell/wizard/WizardPage.h"

class QCheckBox;
class QLabel;
class QListWidget;

// Asks what to do with what the deployment can't publish, and with files of the target that aren't this
// project's. It comes up only if there is something of either kind, and goes on only when all that is shown
// was decided.
class CPropPageDeployDoubts final : public CWizardPage {
    Q_OBJECT

public:
    explicit CPropPageDeployDoubts(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override;
    bool isComplete() const override;
    bool validatePage() override;

private:
    // One question: what it is about, the files, and the box that agrees.
    struct Question {
        QLabel* label;
        QListWidget* files;
        QCheckBox* agreed;
    };
    Question MakeQuestion(const char* name, const QString& filesName, const QString& agreement);
    static void Show(const Question& question, const QString& label, const QStringList& files);
    static bool IsDecided(const Question& question);
    bool IsForServer() const;
    QString GetTarget() const;

    const Question missing;
    const Question strangers;
    bool hasInterrupted = false; // a run, which goes on after the decision
};
