#include "shell/wizard/PropPageEditFTP.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QVBoxLayout>
#include <QWizard>

#include "common/MessageTarget.h"
#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/EngineRetirement.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int32_t NoDestination = -1;

} // namespace

CPropPageEditFTP::CPropPageEditFTP(DeployWizardState& state)
    : CWizardPage(state),
      server(new QLineEdit(this)),
      userName(new QLineEdit(this)),
      displayName(new QLineEdit(this)),
      password(new QLineEdit(this)),
      share(new QCheckBox(Text(StringId::ShareConnection), this)),
      shareNote(new QLabel(Text(StringId::SharingNeedsAdministrator), this)),
      status(new QLabel(this)),
      engine(std::make_unique<CFTPEngine>(state.services.timeouts))
{
    MakeInterior(Text(StringId::ConnectionTitle), Text(StringId::ConnectionSubtitle));
    MakeControls();
    connect(server, &QLineEdit::textEdited, this, &CPropPageEditFTP::OnServerEdited);
    connect(displayName, &QLineEdit::textEdited, this,
            [this](const QString& text) { following = text == server->text(); });
}

CPropPageEditFTP::~CPropPageEditFTP()
{
    RetireEngine(std::move(engine));
}

void CPropPageEditFTP::MakeControls()
{
    const struct {
        QLineEdit* edit;
        const char* objectName;
        QString label;
        int limit;
    } rows[] = {
        {server, "server", QStringLiteral("&Server:"), NameLimit},
        {userName, "userName", QStringLiteral("&User name:"), LoginLimit},
        {password, "password", QStringLiteral("&Password:"), LoginLimit},
        {displayName, "displayName", QStringLiteral("&Display name:"), NameLimit},
    };
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    for (const auto& row : rows) {
        NameControl(*row.edit, row.objectName, row.label);
        row.edit->setMaxLength(row.limit);
        AddRow(*form, row.label, *row.edit);
    }
    password->setEchoMode(QLineEdit::Password);
    layout->addLayout(form);
    layout->addSpacing(6);
    MakeShare(*layout);
    NameControl(*status, "status", QStringLiteral("Status"));
    status->setWordWrap(true);
    layout->addSpacing(6);
    layout->addWidget(status);
    layout->addStretch();
}

void CPropPageEditFTP::MakeShare(QVBoxLayout& layout)
{
    NameControl(*share, "share", share->text());
    NameControl(*shareNote, "shareNote", shareNote->text());
    share->setAccessibleDescription(shareNote->text());
    shareNote->setIndent(24);
    shareNote->setEnabled(false);
    layout.addWidget(share);
    layout.addWidget(shareNote);
}

bool CPropPageEditFTP::IsNew() const
{
    return state.job.settings.ftp_destination == NoDestination;
}

void CPropPageEditFTP::OnShown()
{
    CFTPDestination destination;
    if (!IsNew()) {
        destination = state.Destinations().Load(state.job.settings.ftp_destination);
    }
    const FTPDestinationConnection& record = destination.connection;
    server->setText(record.server);
    userName->setText(record.userName);
    displayName->setText(record.displayName);
    password->setText(record.password);
    following = record.server == record.displayName;
    ShowScope(destination);
    stored = false;
    status->clear();
    server->setFocus();
}

void CPropPageEditFTP::ShowScope(const CFTPDestination& destination)
{
    const bool canShare = state.Destinations().CanSaveForAllUsers();
    share->setChecked(destination.allUsers);
    share->setEnabled(IsNew() && canShare);
    shareNote->setVisible(IsNew() && !canShare);
}

void CPropPageEditFTP::OnServerEdited(const QString& text)
{
    if (following) {
        displayName->setText(text);
    }
}

FTPDestinationConnection CPropPageEditFTP::ReadControls() const
{
    FTPDestinationConnection record;
    record.server = server->text().trimmed();
    record.userName = userName->text();
    record.password = password->text();
    record.displayName = displayName->text();
    // No page asks for the port. One that the command line has stored stays.
    record.port = IsNew() ? state.services.port
                          : state.Destinations().Load(state.job.settings.ftp_destination).connection.port;
    return record;
}

bool CPropPageEditFTP::validatePage()
{
    if (stored) {
        return true;
    }
    if (!testing) {
        SetTesting(true);
        target =
            CEventLoopTarget<FTPMessage>::Create([this](const FTPMessage& message) { OnMessage(message); });
        engine->TestConnection(ReadControls(), target);
    }
    return false;
}

void CPropPageEditFTP::OnMessage(const FTPMessage& message)
{
    if (std::holds_alternative<FTP_TEST_STARTED>(message)) {
        status->setText(Text(StringId::TestingConnection));
    } else if (const auto* const tested = std::get_if<FTP_TEST_FINISHED>(&message)) {
        SetTesting(false);
        OnTestFinished(tested->result);
    }
}

void CPropPageEditFTP::OnTestFinished(const CTaskResult& result)
{
    if (result.IsSuccess()) {
        status->clear();
        stored = Store();
        if (stored) {
            wizard()->next();
        }
        return;
    }
    const QString text =
        Text(result.GetKind() == CTaskResult::Kind::NetworkFailure ? StringId::ServerNameInvalid
                                                                   : StringId::LoginInvalid);
    status->setText(text);
    QMessageBox::warning(this, Text(StringId::WizardMessageTitle), text);
}

bool CPropPageEditFTP::Store()
{
    CFTPDestination destination = IsNew() ? state.Destinations().Create(share->isChecked())
                                          : state.Destinations().Load(state.job.settings.ftp_destination);
    const QString directory = destination.connection.directory;
    destination.connection = ReadControls();
    destination.connection.directory = directory;
    const auto result = state.Destinations().Save(destination);
    if (result != CFTPDestinations::SaveResult::NotSaved) {
        state.job.settings.ftp_destination = destination.key;
    }
    if (result == CFTPDestinations::SaveResult::Saved) {
        return true;
    }
    const QString name = destination.connection.displayName;
    QString text = Text(StringId::DestinationNotStored, name) + QLatin1Char('\n');
    if (result == CFTPDestinations::SaveResult::SavedWithoutPassword) {
        text += Text(StringId::PasswordNotProtected);
    } else {
        text += Text(destination.allUsers ? StringId::AllUsersNeedAdministrator : StringId::CheckRights);
    }
    status->setText(text);
    QMessageBox::warning(this, Text(StringId::WizardMessageTitle), text);
    return false;
}

void CPropPageEditFTP::SetTesting(bool isTesting)
{
    testing = isTesting;
    for (QLineEdit* edit : {server, userName, displayName, password}) {
        edit->setReadOnly(isTesting);
    }
    Q_EMIT completeChanged();
    wizard()->button(QWizard::BackButton)->setEnabled(!isTesting);
}

CWizardPage::CancelAnswer CPropPageEditFTP::OnCancel()
{
    if (!testing) {
        return CancelAnswer::Close;
    }
    target.reset();
    // A connection that is just being made can't be broken off, so the next test has an engine of its own.
    RetireEngine(std::exchange(engine, std::make_unique<CFTPEngine>(state.services.timeouts)));
    SetTesting(false);
    status->clear();
    return CancelAnswer::StayThere;
}
