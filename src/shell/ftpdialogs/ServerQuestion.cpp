#include "shell/ftpdialogs/ServerQuestion.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

#include "common/Exceptions.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/session/TrustedCertificates.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "resources/StringTable.h"

namespace {

using Doubt = ServerIdentity::Doubt;

// A box with one way on and Cancel, which is what Enter and Escape press.
class CQuestionBox final : public QMessageBox {
public:
    struct Texts {
        QString title;
        QString question;
        QString details;
        QString agreement; // of the button
    };

    CQuestionBox(const Texts& texts, QWidget* parent) : QMessageBox(parent)
    {
        setObjectName(QStringLiteral("serverQuestion"));
        setIcon(QMessageBox::Warning);
        setWindowTitle(texts.title);
        setTextFormat(Qt::PlainText);
        setText(texts.question);
        setInformativeText(texts.details);
        // So that the fingerprint can be compared by copying it.
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        agree = addButton(texts.agreement, QMessageBox::AcceptRole);
        agree->setObjectName(QStringLiteral("agree"));
        QPushButton* cancel = addButton(QMessageBox::Cancel);
        cancel->setObjectName(QStringLiteral("cancel"));
        setDefaultButton(cancel);
        setEscapeButton(cancel);
    }

    // The way on opens only with a second thought.
    void DemandCheck(const QString& statement)
    {
        auto* box = new QCheckBox(statement, this);
        box->setObjectName(QStringLiteral("confirmed"));
        setCheckBox(box);
        agree->setEnabled(false);
        connect(box, &QCheckBox::toggled, agree, &QPushButton::setEnabled);
    }

    bool Ask()
    {
        exec();
        return clickedButton() == agree;
    }

private:
    QPushButton* agree;
};

QString ReasonOf(const ServerIdentity& identity)
{
    switch (identity.doubt) {
    case Doubt::None:
    case Doubt::UnknownAuthority:
        break;
    case Doubt::OtherName:
        return Text(StringId::OtherNameReason);
    case Doubt::Expired:
        return Text(StringId::ExpiredReason);
    case Doubt::Changed:
        return Text(StringId::ChangedServerReason);
    }
    return Text(identity.hostKey.isEmpty() ? StringId::UnknownCertificateReason
                                           : StringId::UnknownHostKeyReason);
}

// As web hosts print it: "SHA256:..." in base64 for a host key, pairs of digits for a certificate, in two
// lines.
QString FingerprintOf(const ServerIdentity& identity)
{
    if (!identity.hostKey.isEmpty()) {
        return QStringLiteral("SHA256:") +
               QString::fromLatin1(identity.fingerprint.toBase64(QByteArray::OmitTrailingEquals));
    }
    // On lines of its own: behind its word the first half would be broken.
    const qsizetype half = identity.fingerprint.size() / 2;
    return QString::fromLatin1('\n' + identity.fingerprint.left(half).toHex(':').toUpper() + ":\n" +
                               identity.fingerprint.mid(half).toHex(':').toUpper());
}

QString DescriptionOf(const ServerIdentity& identity)
{
    QStringList lines{Text(StringId::IdentityFingerprint, FingerprintOf(identity))};
    if (!identity.subject.isEmpty()) {
        lines += Text(StringId::IdentitySubject, identity.subject);
    }
    if (!identity.issuer.isEmpty()) {
        lines += Text(StringId::IdentityIssuer, identity.issuer);
    }
    return lines.join(QLatin1Char('\n'));
}

bool Remember(const ServerIdentity& identity, const QString& trustFolder)
{
    if (!identity.hostKey.isEmpty()) {
        return RememberHostKey(trustFolder, identity);
    }
    try {
        CTrustedCertificates(trustFolder).Remember(identity);
    } catch (const CExceptionBase&) {
        return false;
    }
    return true;
}

bool AskWhoItIs(const ServerIdentity& identity, const QString& trustFolder, QWidget* parent)
{
    const bool hasChanged = identity.doubt == Doubt::Changed;
    const QString blankLine = QStringLiteral("\n\n");
    QString details = ReasonOf(identity) + blankLine + DescriptionOf(identity);
    if (!hasChanged) {
        details += blankLine + Text(StringId::CompareFingerprint);
    }
    CQuestionBox box(
        {.title = Text(hasChanged ? StringId::ChangedServerTitle : StringId::ServerQuestionTitle),
         .question = Text(hasChanged ? StringId::ChangedServerQuestion : StringId::UnknownServerQuestion,
                          identity.server),
         .details = details,
         .agreement = Text(hasChanged ? StringId::TrustNewIdentityButton : StringId::TrustServerButton)},
        parent);
    if (hasChanged) {
        box.DemandCheck(Text(StringId::ChangedServerCheck));
    }
    if (!box.Ask()) {
        return false;
    }
    const bool isRemembered = Remember(identity, trustFolder);
    if (!isRemembered) {
        QMessageBox::warning(parent, Text(StringId::ServerQuestionTitle),
                             Text(StringId::TrustNotStored, trustFolder));
    }
    return isRemembered;
}

} // namespace

bool IsServerQuestion(int status)
{
    return status == EngineStatus::UntrustedServer || status == EngineStatus::TlsNotOffered ||
           status == EngineStatus::TlsDemanded;
}

bool AskAboutServer(const ServerQuestion& question, FTPDestinationConnection& destination, QWidget* parent)
{
    if (question.status == EngineStatus::UntrustedServer) {
        return question.identity && AskWhoItIs(*question.identity, question.trustFolder, parent);
    }
    const bool isOffered = question.status == EngineStatus::TlsDemanded;
    const CQuestionBox::Texts texts{
        .title = Text(StringId::ProtectionQuestionTitle),
        .question = Text(isOffered ? StringId::TlsDemandedQuestion : StringId::TlsNotOfferedQuestion,
                         destination.server),
        .details = Text(isOffered ? StringId::TlsDemandedAdvice : StringId::TlsNotOfferedAdvice),
        .agreement = Text(isOffered ? StringId::UseTlsButton : StringId::ConnectInClearButton)};
    if (!CQuestionBox(texts, parent).Ask()) {
        return false;
    }
    destination.protocol = isOffered ? ServerProtocol::FtpTls : ServerProtocol::Ftp;
    return true;
}
