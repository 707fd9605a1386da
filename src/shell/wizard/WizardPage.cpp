#include "shell/wizard/WizardPage.h"

#include <QWizard>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "shell/look/Icons.h"
#include "shell/look/WaitCursor.h"

void CWizardPage::Examine()
{
    const CWaitCursor waiting;
    state.job.leaveOutMissing = false;
    state.job.overwrite = false;
    try {
        state.doubts = state.job.Examine();
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
        state.doubts = {};
    }
    if (state.job.settings.destination_kind != 0) {
        // Those of the folder that was chosen for another deployment.
        state.doubts.strangeFiles.clear();
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
