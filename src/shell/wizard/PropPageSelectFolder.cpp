#include "shell/wizard/PropPageSelectFolder.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "document/project/GalleryProject.h"
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
    path->setText(state.settings.folder);
    path->setFocus();
}

bool CPropPageSelectFolder::isComplete() const
{
    return !path->text().trimmed().isEmpty();
}

bool CPropPageSelectFolder::validatePage()
{
    state.settings.folder = AbsoluteFolder(path->text());
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
    path->setText(ProposeDirectory());
    path->setFocus();
}

// The project's own choice, as long as it is for this server; else the directory that the connection has.
QString CPropPageSelectFTPFolder::ProposeDirectory() const
{
    const int32_t chosen = state.settings.ftp_destination;
    const int32_t former = isChosen ? owner : state.project.GetDeploySettings().ftp_destination;
    const QString stored = state.Destinations().Load(chosen).connection.directory;
    const bool isOwn = former == chosen && (isChosen || !state.settings.ftp_directory.isEmpty());
    return isOwn || stored.isEmpty() ? state.settings.ftp_directory : stored;
}

bool CPropPageSelectFTPFolder::validatePage()
{
    state.settings.ftp_directory = path->text();
    owner = state.settings.ftp_destination;
    isChosen = true;
    Examine();
    return true;
}

void CPropPageSelectFTPFolder::OnBrowse()
{
    CFTPDestination destination = state.Destinations().Load(state.settings.ftp_destination);
    const FTPDestinationConnection before = destination.connection;
    const ServerAccess& access = state.services.access;
    CFTPEngineResLibDlgBrowseFolder dialog(destination, true, this,
                                           {.timeouts = access.timeouts, .trustFolder = access.trustFolder});
    if (dialog.exec() == QDialog::Accepted) {
        path->setText(destination.connection.directory);
    }
    if (destination.connection.protocol != before.protocol) {
        // Agreed to while browsing; the directory is the project's matter.
        destination.connection.directory = before.directory;
        state.Destinations().Save(destination);
    }
}
