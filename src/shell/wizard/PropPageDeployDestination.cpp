#include "shell/wizard/PropPageDeployDestination.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <QWizard>

#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int FolderKind = 0;
constexpr int SiteKind = 1;

} // namespace

CPropPageDeployDestination::CPropPageDeployDestination(DeployWizardState& state)
    : CWizardPage(state),
      folder(new QRadioButton(Text(StringId::FolderChoice), this)),
      site(new QRadioButton(Text(StringId::SiteChoice), this)),
      connection(new QComboBox(this)),
      edit(MakeButton(Text(StringId::EditConnection), "edit", this)),
      remove(MakeButton(Text(StringId::DeleteConnection), "delete", this))
{
    MakeExterior(Text(StringId::GalleryWizardTitle));
    MakeControls();
    connect(site, &QRadioButton::toggled, this, &CPropPageDeployDestination::UpdateControls);
    connect(connection, &QComboBox::currentIndexChanged, this, &CPropPageDeployDestination::UpdateControls);
    connect(edit, &QPushButton::clicked, this, &CPropPageDeployDestination::OnEdit);
    connect(remove, &QPushButton::clicked, this, &CPropPageDeployDestination::OnDelete);
}

void CPropPageDeployDestination::MakeControls()
{
    const QString connectionLabel = Text(StringId::ConnectionLabel);
    NameControl(*folder, "folder", folder->text());
    NameControl(*site, "site", site->text());
    NameControl(*connection, "connection", connectionLabel);
    connection->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connection->setMinimumContentsLength(24);
    auto* question = new QLabel(Text(StringId::ChooseDestination));
    question->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(question);
    layout->addSpacing(12);
    layout->addWidget(folder);
    layout->addWidget(site);
    auto* indented = new QVBoxLayout;
    indented->setContentsMargins(24, 4, 0, 0);
    indented->addWidget(MakeLabel(connectionLabel, *connection));
    indented->addWidget(connection);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(edit);
    buttons->addWidget(remove);
    buttons->addStretch();
    indented->addLayout(buttons);
    layout->addLayout(indented);
    layout->addStretch();
}

void CPropPageDeployDestination::OnShown()
{
    editing = false;
    FillConnections();
    (state.settings.destination_kind == SiteKind ? site : folder)->setChecked(true);
    UpdateControls();
}

void CPropPageDeployDestination::FillConnections()
{
    connection->clear();
    for (const CFTPDestination& destination : state.Destinations().Enumerate()) {
        connection->addItem(destination.connection.displayName, destination.key);
    }
    connection->addItem(Text(StringId::NewConnection), NoDestination);
    const int stored = connection->findData(state.settings.ftp_destination);
    connection->setCurrentIndex(stored < 0 ? connection->count() - 1 : stored);
}

void CPropPageDeployDestination::UpdateControls()
{
    const bool isStored = site->isChecked() && GetChosenKey() != NoDestination;
    connection->setEnabled(site->isChecked());
    edit->setEnabled(isStored);
    remove->setEnabled(isStored);
}

int32_t CPropPageDeployDestination::GetChosenKey() const
{
    return connection->currentData().toInt();
}

int CPropPageDeployDestination::nextId() const
{
    if (editing) {
        return DeployPageId::EditFTP;
    }
    if (folder->isChecked()) {
        return DeployPageId::SelectFolder;
    }
    return GetChosenKey() == NoDestination ? DeployPageId::EditFTP : DeployPageId::SelectFTPFolder;
}

bool CPropPageDeployDestination::validatePage()
{
    state.settings.destination_kind = folder->isChecked() ? FolderKind : SiteKind;
    if (site->isChecked()) {
        state.settings.ftp_destination = GetChosenKey();
    }
    return true;
}

void CPropPageDeployDestination::OnEdit()
{
    editing = true;
    wizard()->next();
}

void CPropPageDeployDestination::OnDelete()
{
    const CFTPDestination destination = state.Destinations().Load(GetChosenKey());
    const QString name = destination.connection.displayName;
    const auto answer = QMessageBox::question(this, Text(StringId::WizardMessageTitle),
                                              Text(StringId::DeleteConnectionQuestion, name));
    if (answer != QMessageBox::Yes) {
        return;
    }
    if (!state.Destinations().Delete(destination.key)) {
        QMessageBox::warning(
            this, Text(StringId::WizardMessageTitle),
            Text(StringId::DestinationNotRemoved, name) + QLatin1Char('\n') +
                Text(destination.allUsers ? StringId::AllUsersNeedAdministrator : StringId::CheckRights));
    }
    FillConnections();
}
