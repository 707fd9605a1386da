#include "shell/wizard/PropPageEditFTP.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QWizard>

#include "common/MessageTarget.h"
#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/ServerWords.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/EngineRetirement.h"
#include "shell/ftpdialogs/ServerQuestion.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int HighestPort = 65535;

constexpr struct {
    ServerProtocol protocol;
    StringId name;
} protocols[] = {{ServerProtocol::FtpTls, StringId::ProtocolFtpTls},
                 {ServerProtocol::Ftp, StringId::ProtocolFtp},
                 {ServerProtocol::FtpImplicitTls, StringId::ProtocolFtpImplicitTls},
                 {ServerProtocol::Sftp, StringId::ProtocolSftp}};

// What a person reads about a test that has failed.
QString DescribeFailedTest(const CTaskResult& result, ServerProtocol protocol)
{
    constexpr int32_t notLoggedIn = 530; // RFC 959, 4.2
    if (result.status == EngineStatus::HostNotFound) {
        return Text(StringId::ServerNameInvalid);
    }
    if (result.GetKind() == CTaskResult::Kind::NetworkFailure) {
        return Text(StringId::TestFailedBecause, EngineStatus::GetWords(result.status),
                    EngineStatus::GetDescription(result.status));
    }
    // What a refusal over SFTP says has come about here: which ways to log in were tried.
    const bool hasOwnWords = protocol == ServerProtocol::Sftp || result.reply.code != notLoggedIn;
    return hasOwnWords ? Text(StringId::TestRefused, CleanServerWords(result.reply.text))
                       : Text(StringId::LoginInvalid);
}

} // namespace

CPropPageEditFTP::CPropPageEditFTP(DeployWizardState& state)
    : CWizardPage(state),
      protocol(new QComboBox(this)),
      server(new QLineEdit(this)),
      port(new QSpinBox(this)),
      userName(new QLineEdit(this)),
      password(new QLineEdit(this)),
      identityFile(new QLineEdit(this)),
      displayName(new QLineEdit(this)),
      share(new QCheckBox(Text(StringId::ShareConnection), this)),
      shareNote(new QLabel(Text(StringId::SharingNeedsAdministrator), this)),
      status(new QLabel(this)),
      engine(std::make_unique<CFTPEngine>(state.services.access.timeouts, state.services.access.trustFolder))
{
    MakeInterior(Text(StringId::ConnectionTitle), Text(StringId::ConnectionSubtitle));
    MakeControls();
    connect(protocol, &QComboBox::currentIndexChanged, this, &CPropPageEditFTP::OnProtocolChosen);
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
    for (const auto& row : protocols) {
        protocol->addItem(Text(row.name), static_cast<int>(row.protocol));
    }
    port->setRange(1, HighestPort);
    port->setButtonSymbols(QAbstractSpinBox::NoButtons);
    password->setEchoMode(QLineEdit::Password);
    identityFile->setPlaceholderText(Text(StringId::IdentityFileHint));
    auto* layout = new QVBoxLayout(this);
    identityRow = MakeIdentityRow();
    form = MakeForm();
    layout->addLayout(form);
    layout->addSpacing(6);
    MakeShare(*layout);
    NameControl(*status, "status", Text(StringId::StatusName));
    status->setWordWrap(true);
    status->setTextFormat(Qt::PlainText);
    layout->addSpacing(6);
    layout->addWidget(status);
    layout->addStretch();
}

QFormLayout* CPropPageEditFTP::MakeForm()
{
    const struct {
        QLineEdit* edit;
        int limit;
    } limits[] = {{server, NameLimit},
                  {userName, LoginLimit},
                  {password, LoginLimit},
                  {identityFile, PathLimit},
                  {displayName, NameLimit}};
    for (const auto& row : limits) {
        row.edit->setMaxLength(row.limit);
    }
    const struct {
        QWidget* control;
        const char* objectName;
        QString label;
    } rows[] = {{protocol, "protocol", Text(StringId::ProtocolLabel)},
                {server, "server", Text(StringId::ConnectionServerLabel)},
                {port, "port", Text(StringId::PortLabel)},
                {userName, "userName", Text(StringId::UserNameLabel)},
                {password, "password", Text(StringId::PasswordLabel)},
                {identityFile, "identityFile", Text(StringId::IdentityFileLabel)},
                {displayName, "displayName", Text(StringId::DisplayNameLabel)}};
    auto* made = new QFormLayout;
    for (const auto& row : rows) {
        NameControl(*row.control, row.objectName, row.label);
        if (row.control == identityFile) {
            made->addRow(MakeLabel(row.label, *identityFile), identityRow);
        } else {
            AddRow(*made, row.label, *row.control);
        }
    }
    return made;
}

QWidget* CPropPageEditFTP::MakeIdentityRow()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    QPushButton* browse = MakeButton(QStringLiteral("..."), "browseIdentity", row);
    browse->setAccessibleName(Text(StringId::ChooseIdentityFileName));
    layout->addWidget(identityFile);
    layout->addWidget(browse);
    connect(browse, &QPushButton::clicked, this, &CPropPageEditFTP::OnBrowseIdentity);
    QWidget* const order[] = {protocol,     server, port,        userName, password,
                              identityFile, browse, displayName, share};
    for (size_t i = 1; i < std::size(order); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
    return row;
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
    return state.settings.ftp_destination == NoDestination;
}

void CPropPageEditFTP::OnShown()
{
    CFTPDestination destination;
    destination.connection.protocol = ServerProtocol::FtpTls;
    if (!IsNew()) {
        destination = state.Destinations().Load(state.settings.ftp_destination);
    }
    const FTPDestinationConnection& record = destination.connection;
    ShowProtocol(record.protocol);
    server->setText(record.server);
    port->setValue(record.port);
    identityFile->setText(record.identityFile);
    userName->setText(record.userName);
    displayName->setText(record.displayName);
    password->setText(record.password.GetText());
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

void CPropPageEditFTP::ShowProtocol(ServerProtocol chosen)
{
    shownProtocol = chosen;
    protocol->setCurrentIndex(protocol->findData(static_cast<int>(chosen)));
    form->setRowVisible(identityRow, chosen == ServerProtocol::Sftp);
}

ServerProtocol CPropPageEditFTP::GetProtocol() const
{
    return static_cast<ServerProtocol>(protocol->currentData().toInt());
}

// A port that a person has chosen stays.
void CPropPageEditFTP::OnProtocolChosen()
{
    const ServerProtocol former = shownProtocol;
    ShowProtocol(GetProtocol());
    if (port->value() == DefaultPortOf(former)) {
        port->setValue(DefaultPortOf(shownProtocol));
    }
}

void CPropPageEditFTP::OnBrowseIdentity()
{
    const QString folder =
        identityFile->text().isEmpty() ? QDir::homePath() + QStringLiteral("/.ssh") : identityFile->text();
    const QString chosen = QFileDialog::getOpenFileName(this, Text(StringId::ChooseIdentityFileName), folder);
    if (!chosen.isEmpty()) {
        identityFile->setText(chosen);
    }
}

FTPDestinationConnection CPropPageEditFTP::ReadControls() const
{
    FTPDestinationConnection record;
    record.protocol = GetProtocol();
    record.server = server->text().trimmed();
    record.userName = userName->text();
    record.password = password->text();
    record.displayName = displayName->text();
    record.port = static_cast<uint16_t>(port->value());
    if (record.protocol == ServerProtocol::Sftp) {
        record.identityFile = identityFile->text().trimmed();
    }
    return record;
}

bool CPropPageEditFTP::validatePage()
{
    if (stored) {
        return true;
    }
    if (!testing) {
        Test();
    }
    return false;
}

void CPropPageEditFTP::Test()
{
    SetTesting(true);
    target = CEventLoopTarget<FTPMessage>::Create([this](const FTPMessage& message) { OnMessage(message); });
    engine->TestConnection(ReadControls(), target);
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
    if (IsServerQuestion(result.status)) {
        OnQuestion(result);
    } else {
        Warn(DescribeFailedTest(result, GetProtocol()));
    }
}

void CPropPageEditFTP::OnQuestion(const CTaskResult& result)
{
    FTPDestinationConnection record = ReadControls();
    status->setText(EngineStatus::GetDescription(result.status));
    if (AskAboutServer({result.status, result.identity, state.services.access.trustFolder}, record, this)) {
        protocol->setCurrentIndex(protocol->findData(static_cast<int>(record.protocol)));
        // Not before the message of the test that has ended is through.
        QMetaObject::invokeMethod(
            this, [this] { validatePage(); }, Qt::QueuedConnection);
    }
}

void CPropPageEditFTP::Warn(const QString& text)
{
    status->setText(text);
    QMessageBox::warning(this, Text(StringId::WizardMessageTitle), text);
}

bool CPropPageEditFTP::Store()
{
    CFTPDestination destination = IsNew() ? state.Destinations().Create(share->isChecked())
                                          : state.Destinations().Load(state.settings.ftp_destination);
    const QString directory = destination.connection.directory;
    destination.connection = ReadControls();
    destination.connection.directory = directory;
    const auto result = state.Destinations().Save(destination);
    if (result != CFTPDestinations::SaveResult::NotSaved) {
        state.settings.ftp_destination = destination.key;
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
    Warn(text);
    return false;
}

void CPropPageEditFTP::SetTesting(bool isTesting)
{
    testing = isTesting;
    for (QLineEdit* edit : {server, userName, displayName, password, identityFile}) {
        edit->setReadOnly(isTesting);
    }
    port->setReadOnly(isTesting);
    protocol->setEnabled(!isTesting);
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
    RetireEngine(std::exchange(engine, std::make_unique<CFTPEngine>(state.services.access.timeouts,
                                                                    state.services.access.trustFolder)));
    SetTesting(false);
    status->clear();
    return CancelAnswer::StayThere;
}
