#include "shell/wizard/WizardPage.h"

#include <QWizard>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "shell/look/Icons.h"
#include "shell/look/WaitCursor.h"

void CWizardPage::Examine()
{
    if (state.isUndecided) {
        return;
    }
    const CWaitCursor waiting;
    state.leaveOutMissing = false;
    state.overwrite = false;
    const bool isFolder = state.settings.destination_kind == 0;
    try {
        state.doubts = ExamineDeployment(state.project,
                                         isFolder ? DeploymentTarget(FolderTarget{state.settings.folder})
                                                  : DeploymentTarget(ServerTarget()),
                                         state.services.recordsFolder);
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
        state.doubts = {};
    }
}

int CWizardPage::AfterExamination(int following) const
{
    const bool hasDoubts = state.doubts.IsAnyMissing() || !state.doubts.strangeFiles.isEmpty();
    return hasDoubts ? static_cast<int>(DeployPageId::DeployDoubts) : following;
}

void CWizardPage::MakeExterior(const QString& title)
{
    setTitle(title);
    setPixmap(QWizard::WatermarkPixmap, LoadPicture(QStringLiteral("wizard-side"), devicePixelRatioF()));
}

void CWizardPage::MakeInterior(const QString& title, const QString& subtitle)
{
    setTitle(title);
    setSubTitle(subtitle);
    setPixmap(QWizard::LogoPixmap, LoadPicture(QStringLiteral("wizard-header"), devicePixelRatioF()));
}
