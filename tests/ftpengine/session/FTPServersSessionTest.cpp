#include <QDateTime>
#include <QDir>
#include <QFile>

#include "session/FTPSessionFixture.h"
#include "support/FTPServer.h"

// Sessions with servers that the world uses, in clear and with TLS.

namespace {

struct Variant {
    FTPServerKind kind;
    FTPServerSecurity security;
};

class FTPServersSession : public testing::TestWithParam<Variant> {
protected:
    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            GTEST_SKIP() << qPrintable(server.GetProblem());
        }
        FTPDestinationConnection& destination = setting.destination;
        destination.userName = server.GetUser();
        destination.password = server.GetPassword();
        destination.server = QStringLiteral("127.0.0.1");
        destination.port = server.GetPort();
        destination.fingerprint = server.GetFingerprint();
        if (GetParam().security == FTPServerSecurity::TlsOnly) {
            destination.protocol = ServerProtocol::FtpTls;
        }
    }

    template <class Function>
    static std::string Outcome(const Function& function)
    {
        try {
            function();
            return "done";
        } catch (const FTPReply& refusal) {
            return "refused " + Narrow(refusal.text);
        } catch (int error) {
            return "thrown " + std::to_string(error);
        }
    }

    // Open if nothing goes wrong.
    std::unique_ptr<CRemoteSession> Open()
    {
        std::unique_ptr<CRemoteSession> session;
        EXPECT_EQ(Outcome([&] { session = OpenRemoteSession(setting, log); }), "done");
        return session;
    }

    void Send(CRemoteSession& session, const QByteArray& bytes, const QString& path)
    {
        EXPECT_EQ(Outcome([&] {
                      QBuffer source;
                      source.setData(bytes);
                      source.open(QIODevice::ReadOnly);
                      session.Send(source, path, {});
                  }),
                  "done")
            << qPrintable(path);
    }

    QByteArray OnDisk(const QString& path) const
    {
        QFile file(server.GetRoot() + path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return file.readAll();
    }

    static QStringList Names(const std::vector<RemoteEntry>& entries)
    {
        QStringList names;
        for (const RemoteEntry& entry : entries) {
            names << (entry.isDirectory ? QStringLiteral("d ") : QStringLiteral("- ")) + entry.name;
        }
        names.sort();
        return names;
    }

    const CFTPServer server{GetParam().kind, GetParam().security};
    SessionLog log;
    SessionSetting setting{
        .destination = {}, .timeouts = {}, .abortEvent = std::make_shared<CEvent>(), .trustFolder = {}};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(All, FTPServersSession,
                         testing::Values(Variant{FTPServerKind::Vsftpd, FTPServerSecurity::Clear},
                                         Variant{FTPServerKind::ProFtpd, FTPServerSecurity::Clear},
                                         Variant{FTPServerKind::PureFtpd, FTPServerSecurity::Clear},
                                         Variant{FTPServerKind::Vsftpd, FTPServerSecurity::TlsOnly},
                                         Variant{FTPServerKind::ProFtpd, FTPServerSecurity::TlsOnly},
                                         Variant{FTPServerKind::PureFtpd, FTPServerSecurity::TlsOnly}),
                         [](const auto& variant) {
                             return std::string(NameOf(variant.param.kind)) +
                                    (variant.param.security == FTPServerSecurity::TlsOnly ? "WithTls" : "");
                         });

TEST_P(FTPServersSession, SendRenameOverListReadAndRemove)
{
    const auto session = Open();
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(log.identity.has_value(), GetParam().security == FTPServerSecurity::TlsOnly);
    const QString folder = QString::fromUtf8("zwei W\xc3\xb6rter");
    EXPECT_EQ(Outcome([&] { session->MakeDirectory(folder); }), "done");
    EXPECT_EQ(Outcome([&] { session->MakeDirectory(folder); }), "done");
    const QByteArray large = QByteArray("0123456789abcdef").repeated(200'000);
    const QString picture = folder + QString::fromUtf8("/\xe9\x9b\xaa #1.jpg");
    const QString temporary = folder + QStringLiteral("/.part");
    Send(*session, "old", picture);
    Send(*session, large, temporary);
    EXPECT_EQ(session->GetSize(temporary), large.size());
    EXPECT_EQ(Outcome([&] { session->Rename(temporary, picture); }), "done");
    EXPECT_EQ(OnDisk(picture), large);
    Send(*session, QByteArray(), folder + QStringLiteral("/.empty"));
    EXPECT_EQ(Outcome([&] { session->MakeDirectory(folder + QStringLiteral("/.vistorama")); }), "done");
    const auto entries = session->List(folder);
    EXPECT_EQ(Names(entries),
              (QStringList{QStringLiteral("- .empty"), QString::fromUtf8("- \xe9\x9b\xaa #1.jpg"),
                           QStringLiteral("d .vistorama")}));
    for (const RemoteEntry& entry : entries) {
        if (!entry.isDirectory) {
            EXPECT_EQ(entry.size, entry.name == QStringLiteral(".empty") ? 0 : large.size());
            EXPECT_NEAR(static_cast<double>(entry.modified.value_or(0)),
                        static_cast<double>(QDateTime::currentSecsSinceEpoch()), 24 * 3600);
        }
    }
    EXPECT_EQ(Names(session->List(QString())), QStringList{QStringLiteral("d ") + folder});
    EXPECT_EQ(session->Read(picture, large.size()), large);
    EXPECT_EQ(session->Read(folder + QStringLiteral("/gone"), 100), std::nullopt);
    EXPECT_EQ(session->GetSize(folder + QStringLiteral("/gone")), std::nullopt);
    EXPECT_NE(Outcome([&] { session->List(folder + QStringLiteral("/gone")); }), "done");
    EXPECT_NE(Outcome([&] { session->RemoveDirectory(folder); }), "done"); // it isn't empty
    for (const QString& path : {picture, folder + QStringLiteral("/.empty")}) {
        EXPECT_EQ(Outcome([&] { session->RemoveFile(path); }), "done");
    }
    EXPECT_EQ(Outcome([&] { session->RemoveDirectory(folder + QStringLiteral("/.vistorama")); }), "done");
    EXPECT_EQ(Outcome([&] { session->RemoveDirectory(folder); }), "done");
    EXPECT_EQ(Names(session->List(QString())), QStringList());
    session->KeepAlive();
    session->Quit();
}

TEST_P(FTPServersSession, TakeManySmallFilesOverOneSession)
{
    const auto session = Open();
    ASSERT_NE(session, nullptr);
    for (int i = 0; i < 100; ++i) {
        Send(*session, QByteArray::number(i), QStringLiteral("%1.txt").arg(i));
    }
    EXPECT_EQ(session->List(QString()).size(), 100u);
    EXPECT_EQ(OnDisk(QStringLiteral("99.txt")), "99");
    session->Quit();
}

TEST_P(FTPServersSession, OpenInADirectoryThatIsThere)
{
    QDir().mkpath(server.GetRoot() + QStringLiteral("web/site"));
    QFile::setPermissions(server.GetRoot() + QStringLiteral("web/site"), QFile::Permissions(0x7777));
    setting.destination.directory = QStringLiteral("web/site");
    const auto session = Open();
    ASSERT_NE(session, nullptr);
    Send(*session, "1", QStringLiteral("index.html"));
    EXPECT_EQ(OnDisk(QStringLiteral("web/site/index.html")), "1");
    EXPECT_EQ(Names(session->List(QString())), QStringList{QStringLiteral("- index.html")});
    setting.destination.directory = QStringLiteral("web/gone");
    EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }).substr(0, 11), "refused 550");
}

TEST_P(FTPServersSession, WithTlsLetNobodyInWithout)
{
    if (GetParam().security == FTPServerSecurity::Clear) {
        setting.destination.protocol = ServerProtocol::FtpTls;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), "thrown 12046");
    } else {
        setting.destination.protocol = ServerProtocol::Ftp;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), "thrown 12047");
    }
}
