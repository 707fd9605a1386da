#include "shell/wizard/PropPageSelectFolder.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/FTPEngineResLibDlgBrowseFolder.h"
#include "shell/look/DialogParts.h"

QString AbsoluteFolder(const QString& typed)
{
    QString path = typed.trimmed();
    if (path == QStringLiteral("~") || path.startsWith(QStringLiteral("~/"))) {
        path = QStringLiteral(".") + path.mid(1);
    }
    return QDir::toNativeSeparators(QDir::cleanPath(QDir::home().absoluteFilePath(path)));
}

CPathPage::CPathPage(DeployWizardState& state, const Texts& texts, const char* objectName)
    : CWizardPage(state), path(new QLineEdit(this))
{
    MakeInterior(texts.title, texts.subtitle);
    NameControl(*path, objectName, texts.label);
    path->setMaxLength(Limit);
    QPushButton* browse = MakeButton(QStringLiteral("..."), "browse", this);
    browse->setAccessibleName(texts.browse);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(texts.label, *path));
    auto* row = new QHBoxLayout;
    row->addWidget(path);
    row->addWidget(browse);
    layout->addLayout(row);
    layout->addStretch();
    connect(browse, &QPushButton::clicked, this, [this] { OnBrowse(); });
}

CPropPageSelectFolder::CPropPageSelectFolder(DeployWizardState& state)
    : CPathPage(state,
                {.title = Text(StringId::FolderPathTitle),
                 .subtitle = Text(StringId::FolderPathSubtitle),
                 .label = Text(StringId::FolderPathLabel),
                 .browse = Text(StringId::ChooseFolderName)},
                "folder")
{
    connect(path, &QLineEdit::textChanged, this, &QWizardPage::completeChanged);
}

void CPropPageSelectFolder::OnShown()
{
    path->setText(state.job.settings.folder);
    path->setFocus();
}

bool CPropPageSelectFolder::isComplete() const
{
    return !path->text().trimmed().isEmpty();
}

bool CPropPageSelectFolder::validatePage()
{
    state.job.settings.folder = AbsoluteFolder(path->text());
    Examine();
    return true;
}

void CPropPageSelectFolder::OnBrowse()
{
    const QString chosen =
        QFileDialog::getExistingDirectory(this, Text(StringId::FolderPickerCaption), path->text());
    if (!chosen.isEmpty()) {
        path->setText(QDir::toNativeSeparators(chosen));
    }
}

CPropPageSelectFTPFolder::CPropPageSelectFTPFolder(DeployWizardState& state)
    : CPathPage(state,
                {.title = Text(StringId::SiteDirectoryTitle),
                 .subtitle = Text(StringId::SiteDirectorySubtitle),
                 .label = Text(StringId::SiteDirectoryLabel),
                 .browse = Text(StringId::ChooseDirectoryName)},
                "directory")
{}

void CPropPageSelectFTPFolder::OnShown()
{
    path->setText(state.job.settings.ftp_directory);
    path->setFocus();
}

bool CPropPageSelectFTPFolder::validatePage()
{
    state.job.settings.ftp_directory = path->text();
    Examine();
    return true;
}

void CPropPageSelectFTPFolder::OnBrowse()
{
    CFTPDestination destination = state.Destinations().Load(state.job.settings.ftp_destination);
    CFTPEngineResLibDlgBrowseFolder dialog(destination, true, this, state.services.timeouts);
    if (dialog.exec() == QDialog::Accepted) {
        path->setText(destination.connection.directory);
    }
}
