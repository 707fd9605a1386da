#include "shell/wizard/PropPageDeployToFolder.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "common/FileSystem.h"
#include "document/catalogue/Definitions.h"
#include "document/project/GalleryProject.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

QString FindFirstPage(CGalleryProject& project, const QString& folder)
{
    const CGallery* root = project.GetRootGallery();
    if (root == nullptr) {
        return {};
    }
    for (const CGalleryTemplatePage& page :
         project.FindTemplate(root->GetLayout().GetTemplateKey()).GetPages()) {
        const QString path = JoinPath(folder, page.file);
        if (FileExists(path)) { // some names yield no file
            return path;
        }
    }
    return {};
}

CPropPageDeployToFolder::CPropPageDeployToFolder(DeployWizardState& state)
    : CPropPageDeploy(state),
      folder(new QLineEdit(this)),
      openBrowser(new QCheckBox(Text(StringId::OpenBrowserWhenFinished), this))
{
    MakeExterior(Text(StringId::DeployToFolderTitle));
    const QString label = QStringLiteral("Fo&lder:");
    NameControl(*folder, "folder", label);
    NameControl(*openBrowser, "openBrowser", openBrowser->text());
    folder->setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    AddRow(*form, label, *folder);
    layout->addLayout(form);
    layout->addWidget(openBrowser);
    layout->addSpacing(12);
    AddProgress(*layout);
}

void CPropPageDeployToFolder::OnShown()
{
    CPropPageDeploy::OnShown();
    folder->setText(state.job.settings.folder);
    openBrowser->setChecked(state.job.settings.open_browser_after_deploy);
}

void CPropPageDeployToFolder::Start()
{
    state.job.temporaryFolder.clear();
    StartGeneration();
}

void CPropPageDeployToFolder::OnGenerated()
{
    Succeed();
    state.job.settings.open_browser_after_deploy = openBrowser->isChecked();
    const QString firstPage = FindFirstPage(state.project, state.job.settings.folder);
    if (openBrowser->isChecked() && !firstPage.isEmpty()) {
        state.services.openSite(firstPage);
    }
}
