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
    const QString label = Text(StringId::TargetFolderLabel);
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
    folder->setText(state.settings.folder);
    openBrowser->setChecked(state.settings.open_browser_after_deploy);
    CPropPageDeploy::OnShown(); // which may begin a run
}

DeploymentTarget CPropPageDeployToFolder::MakeTarget()
{
    return FolderTarget{state.settings.folder};
}

void CPropPageDeployToFolder::OnDone(const DeployResult&)
{
    Succeed();
    state.settings.open_browser_after_deploy = openBrowser->isChecked();
    const QString firstPage = FindFirstPage(state.project, state.settings.folder);
    if (openBrowser->isChecked() && !firstPage.isEmpty()) {
        state.services.openSite(firstPage);
    }
}
