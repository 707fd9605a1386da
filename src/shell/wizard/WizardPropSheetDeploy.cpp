#include "shell/wizard/WizardPropSheetDeploy.h"

#include <QAbstractButton>
#include <QLabel>

#include "document/project/GalleryProject.h"
#include "resources/StringTable.h"
#include "shell/wizard/PropPageDeployDestination.h"
#include "shell/wizard/PropPageDeployDoubts.h"
#include "shell/wizard/PropPageDeployError.h"
#include "shell/wizard/PropPageDeployToFTP.h"
#include "shell/wizard/PropPageDeployToFolder.h"
#include "shell/wizard/PropPageEditFTP.h"
#include "shell/wizard/PropPageSelectFolder.h"

namespace {

constexpr QSize StartSize(680, 480); // shows the whole side picture

} // namespace

CWizardPropSheetDeploy::CWizardPropSheetDeploy(CGalleryProject& project, const DeployWizardServices& services,
                                               QWidget* parent)
    : QWizard(parent), state{project, services, project.GetDeploySettings()}
{
    setWindowTitle(Text(StringId::DeployWizardTitle));
    setWizardStyle(QWizard::ModernStyle);
    setOption(QWizard::HaveFinishButtonOnEarlyPages, false);
    MakePages();
    const struct {
        WizardButton which;
        const char* objectName;
    } buttons[] = {
        {BackButton, "back"}, {NextButton, "next"}, {FinishButton, "finish"}, {CancelButton, "cancel"}};
    for (const auto& each : buttons) {
        button(each.which)->setObjectName(QString::fromLatin1(each.objectName));
    }
    disconnect(button(BackButton), nullptr, this, nullptr);
    connect(button(BackButton), &QAbstractButton::clicked, this, &CWizardPropSheetDeploy::OnBack);
    connect(this, &QWizard::currentIdChanged, this, &CWizardPropSheetDeploy::OnPageShown);
    resize(StartSize);
    setStartId(DeployPageId::DeployDestination);
    restart();
    ContinueSidePicture();
}

void CWizardPropSheetDeploy::MakePages()
{
    setPage(DeployPageId::DeployDestination, new CPropPageDeployDestination(state));
    setPage(DeployPageId::SelectFolder, new CPropPageSelectFolder(state));
    setPage(DeployPageId::DeployDoubts, new CPropPageDeployDoubts(state));
    setPage(DeployPageId::DeployToFolder, new CPropPageDeployToFolder(state));
    setPage(DeployPageId::EditFTP, new CPropPageEditFTP(state));
    setPage(DeployPageId::SelectFTPFolder, new CPropPageSelectFTPFolder(state));
    setPage(DeployPageId::DeployToFTP, new CPropPageDeployToFTP(state));
    setPage(DeployPageId::DeployError, new CPropPageDeployError(state));
}

CWizardPage* CWizardPropSheetDeploy::GetPage() const
{
    return qobject_cast<CWizardPage*>(currentPage());
}

// In a higher window the colour of the picture's foot goes on below it. The label is QWizard's own; it is
// known by what it shows.
void CWizardPropSheetDeploy::ContinueSidePicture()
{
    const QPixmap picture = currentPage()->pixmap(WatermarkPixmap);
    for (QLabel* label : findChildren<QLabel*>()) {
        if (label->pixmap(Qt::ReturnByValue).cacheKey() == picture.cacheKey()) {
            QPalette colours = label->palette();
            colours.setColor(label->backgroundRole(), picture.toImage().pixelColor(0, picture.height() - 1));
            label->setPalette(colours);
            label->setAutoFillBackground(true);
        }
    }
}

void CWizardPropSheetDeploy::OnPageShown(int)
{
    if (CWizardPage* page = GetPage()) {
        page->OnShown();
    }
}

void CWizardPropSheetDeploy::OnBack()
{
    if (currentId() == DeployPageId::DeployError) {
        restart();
    } else {
        back();
    }
}

void CWizardPropSheetDeploy::reject()
{
    if (GetPage()->OnCancel() == CWizardPage::CancelAnswer::Close) {
        QWizard::reject();
    }
}

void CWizardPropSheetDeploy::accept()
{
    GetPage()->OnFinish();
    QWizard::accept();
}
