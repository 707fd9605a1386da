#pragma once

#include "shell/wizard/WizardPage.h"

class QLineEdit;

// Base of the two pages that ask for a path: an edit, and a button beside it that browses.
class CPathPage : public CWizardPage {
    Q_OBJECT

public:
    static constexpr int Limit = 260; // UTF-16 units

protected:
    struct Texts {
        QString title;
        QString subtitle;
        QString label;
        QString browse; // for a screen reader
    };
    // objectName: of the edit.
    CPathPage(DeployWizardState& state, const Texts& texts, const char* objectName);

    virtual void OnBrowse() = 0;

    QLineEdit* path;
};

// Asks for the local folder of the site.
class CPropPageSelectFolder final : public CPathPage {
    Q_OBJECT

public:
    explicit CPropPageSelectFolder(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override { return AfterExamination(DeployPageId::DeployToFolder); }
    // Not without a path: the site would go nowhere.
    bool isComplete() const override;
    bool validatePage() override;

private:
    void OnBrowse() override;
};

// Asks for the directory of the site on the server.
class CPropPageSelectFTPFolder final : public CPathPage {
    Q_OBJECT

public:
    explicit CPropPageSelectFTPFolder(DeployWizardState& state);

    void OnShown() override;
    int nextId() const override { return AfterExamination(DeployPageId::DeployToFTP); }
    bool validatePage() override;

private:
    void OnBrowse() override;
    QString ProposeDirectory() const;

    int32_t owner = NoDestination; // to whose server the chosen directory belongs
    bool isChosen = false;         // by this page before
};

// A path as a person types it, made absolute: "~" and what is relative begin at the user's home folder.
QString AbsoluteFolder(const QString& typed);
