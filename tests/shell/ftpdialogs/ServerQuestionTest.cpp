#include "shell/ftpdialogs/ServerQuestion.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/session/TrustedCertificates.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "shell_support/DialogTools.h"
#include "support/ScratchFolder.h"

namespace {

using Doubt = ServerIdentity::Doubt;

// RFC 4253, 6.6: the kind, and 32 bytes of a key.
QByteArray HostKey()
{
    return QByteArray::fromHex("0000000b") + "ssh-ed25519" + QByteArray::fromHex("00000020") +
           QByteArray(32, 'k');
}

class ServerQuestionBox : public testing::Test {
protected:
    ServerQuestionBox()
    {
        destination.server = QStringLiteral("ftp.example.org");
        destination.protocol = ServerProtocol::FtpTls;
        question.trustFolder = scratch.Path(QStringLiteral("trust"));
        question.status = EngineStatus::UntrustedServer;
        question.identity = ServerIdentity{.server = destination.server,
                                           .port = 21,
                                           .fingerprint = QByteArray(32, '\x1a'),
                                           .subject = QStringLiteral("ftp.example.org"),
                                           .issuer = QStringLiteral("Example Hosting"),
                                           .doubt = Doubt::UnknownAuthority,
                                           .hostKey = {}};
    }

    // Answers by that button, and looks at the box before.
    bool Ask(const char* button, const std::function<void(QMessageBox&)>& look = {})
    {
        const CModalAnswer answer([&](QWidget& modal) {
            auto* const box = qobject_cast<QMessageBox*>(&modal);
            ASSERT_NE(box, nullptr);
            words = box->text() + QLatin1Char('\n') + box->informativeText();
            if (look) {
                look(*box);
            }
            Click(modal, button);
        });
        const bool isAgreed = AskAboutServer(question, destination, nullptr);
        EXPECT_TRUE(answer.WasAsked());
        return isAgreed;
    }

    std::optional<QByteArray> Trusted() const
    {
        return CTrustedCertificates(question.trustFolder).Find(destination.server, 21);
    }

    const CScratchFolder scratch;
    FTPDestinationConnection destination;
    ServerQuestion question;
    QString words;
};

} // namespace

TEST_F(ServerQuestionBox, ShowsACertificateAndWhyItIsInDoubt)
{
    const struct {
        Doubt doubt;
        const char* words;
    } rows[] = {{Doubt::UnknownAuthority, "not signed by an authority"},
                {Doubt::OtherName, "made for another server"},
                {Doubt::Expired, "has expired"}};
    for (const auto& row : rows) {
        question.identity->doubt = row.doubt;
        EXPECT_FALSE(Ask("cancel", [](QMessageBox& box) {
            EXPECT_EQ(box.defaultButton(), &Find<QPushButton>(box, "cancel"));
            ExpectUsable(box, QStringLiteral("server-question-certificate"));
        }));
        for (const char* part : {row.words, "ftp.example.org", "Example Hosting", "1A:1A:1A"}) {
            EXPECT_TRUE(words.contains(QLatin1String(part))) << part;
        }
        EXPECT_EQ(Trusted(), std::nullopt);
    }
}

TEST_F(ServerQuestionBox, RemembersACertificateThatIsTrusted)
{
    EXPECT_TRUE(Ask("agree"));
    EXPECT_EQ(Trusted(), question.identity->fingerprint);
    EXPECT_EQ(destination.protocol, ServerProtocol::FtpTls);
}

TEST_F(ServerQuestionBox, ShowsAHostKeyAsWebHostsDoAndRemembersIt)
{
    question.identity->hostKey = HostKey();
    question.identity->issuer.clear();
    question.identity->port = 22;
    EXPECT_TRUE(Ask("agree",
                    [](QMessageBox& box) { KeepPictures(box, QStringLiteral("server-question-host-key")); }));
    EXPECT_TRUE(words.contains(QStringLiteral("SHA256:GhoaGhoaGhoaGhoaGhoaGhoaGhoaGhoaGhoaGhoaGho")))
        << qPrintable(words);
    EXPECT_TRUE(words.contains(QStringLiteral("has not met the server before")));
    EXPECT_EQ(JudgeHostKey(FindKnownHostKeys(question.trustFolder, destination.server, 22), HostKey()),
              Doubt::None);
}

TEST_F(ServerQuestionBox, AChangedIdentityWantsASecondThought)
{
    question.identity->doubt = Doubt::Changed;
    EXPECT_FALSE(Ask("cancel", [](QMessageBox& box) {
        EXPECT_FALSE(Find<QPushButton>(box, "agree").isEnabled());
        ExpectUsable(box, QStringLiteral("server-question-changed"));
    }));
    EXPECT_TRUE(words.contains(QStringLiteral("another identity than before")));
    EXPECT_EQ(Trusted(), std::nullopt);
    EXPECT_TRUE(Ask("agree", [](QMessageBox& box) { Find<QCheckBox>(box, "confirmed").click(); }));
    EXPECT_EQ(Trusted(), question.identity->fingerprint);
}

TEST_F(ServerQuestionBox, IsNotTrustedWhereTheAnswerCanNotBeKept)
{
    scratch.Write(QStringLiteral("trust"), "a file in the way");
    for (const bool isHostKey : {false, true}) {
        question.identity->hostKey = isHostKey ? HostKey() : QByteArray();
        std::unique_ptr<CMessageAnswer> refusal;
        EXPECT_FALSE(Ask("agree", [&](QMessageBox& box) {
            // Of the message that follows.
            QObject::connect(&box, &QDialog::finished, [&] { refusal = std::make_unique<CMessageAnswer>(); });
        }));
        ASSERT_TRUE(refusal);
        EXPECT_TRUE(refusal->GetText().contains(question.trustFolder)) << qPrintable(refusal->GetText());
    }
}

TEST_F(ServerQuestionBox, GoesWithoutProtectionOnlyIfThePersonAgrees)
{
    question = {.status = EngineStatus::TlsNotOffered, .identity = {}, .trustFolder = question.trustFolder};
    EXPECT_FALSE(Ask("cancel", [](QMessageBox& box) {
        EXPECT_EQ(box.defaultButton(), &Find<QPushButton>(box, "cancel"));
        ExpectUsable(box, QStringLiteral("server-question-clear"));
    }));
    EXPECT_EQ(destination.protocol, ServerProtocol::FtpTls);
    EXPECT_TRUE(Ask("agree"));
    EXPECT_EQ(destination.protocol, ServerProtocol::Ftp);
}

TEST_F(ServerQuestionBox, LeadsToTlsWhereTheServerDemandsIt)
{
    destination.protocol = ServerProtocol::Ftp;
    question = {.status = EngineStatus::TlsDemanded, .identity = {}, .trustFolder = question.trustFolder};
    EXPECT_FALSE(
        Ask("cancel", [](QMessageBox& box) { KeepPictures(box, QStringLiteral("server-question-tls")); }));
    EXPECT_EQ(destination.protocol, ServerProtocol::Ftp);
    EXPECT_TRUE(Ask("agree"));
    EXPECT_EQ(destination.protocol, ServerProtocol::FtpTls);
}

TEST(ServerQuestions, AreNoFailures)
{
    for (const int status :
         {EngineStatus::UntrustedServer, EngineStatus::TlsNotOffered, EngineStatus::TlsDemanded}) {
        EXPECT_TRUE(IsServerQuestion(status)) << status;
    }
    for (const int status : {0, EngineStatus::TlsFailed, EngineStatus::TimedOut, EngineStatus::Aborted}) {
        EXPECT_FALSE(IsServerQuestion(status)) << status;
    }
}
