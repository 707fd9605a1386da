#include "shell/wizard/PropPageSelectFTPFolder.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/FTPEngineResLibDlgBrowseFolder.h"
#include "shell/look/DialogParts.h"

CPropPageSelectFTPFolder::CPropPageSelectFTPFolder(DeployWizardState& state)
    : CWizardPage(state), directory(new QLineEdit(this))
{
    MakeInterior(Text(StringId::SiteDirectoryTitle), Text(StringId::SiteDirectorySubtitle));
    const QString label = Text(StringId::SiteDirectoryLabel);
    NameControl(*directory, "directory", label);
    directory->setMaxLength(Limit);
    QPushButton* browse = MakeButton(QStringLiteral("..."), "browse", this);
    browse->setAccessibleName(Text(StringId::ChooseDirectoryName));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(label, *directory));
    auto* row = new QHBoxLayout;
    row->addWidget(directory);
    row->addWidget(browse);
    layout->addLayout(row);
    layout->addStretch();
    connect(browse, &QPushButton::clicked, this, &CPropPageSelectFTPFolder::OnBrowse);
}

void CPropPageSelectFTPFolder::OnShown()
{
    directory->setText(state.job.settings.ftp_directory);
    directory->setFocus();
}

bool CPropPageSelectFTPFolder::validatePage()
{
    state.job.settings.ftp_directory = directory->text();
    return true;
}

void CPropPageSelectFTPFolder::OnBrowse()
{
    CFTPDestination destination = state.Destinations().Load(state.job.settings.ftp_destination);
    CFTPEngineResLibDlgBrowseFolder dialog(destination, true, this, state.services.timeouts);
    if (dialog.exec() == QDialog::Accepted) {
        directory->setText(destination.connection.directory);
    }
}
