#include <QDir>
#include <gtest/gtest.h>

#include "ServerSites.h"

// Deployments over protected connections to servers that the world uses.

namespace {

using Kind = CProtectedServer::Kind;

class ProtectedServers : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            GTEST_SKIP() << qPrintable(server.GetProblem());
        }
        program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), server.GetPassword());
        // What the person who runs the tests knows of servers, and has keys for, is nothing for them.
        program.SetVariable(QStringLiteral("HOME"), program.Path(QStringLiteral("home")));
        program.SetVariable(QStringLiteral("SSH_AUTH_SOCK"), QString());
    }

    // Of a command that knows the server.
    ProgramResult Run(const QStringList& arguments) const
    {
        return program.Run(arguments + server.GetLoginOptions() +
                           QStringList{QStringLiteral("--fingerprint"), server.GetFingerprint()});
    }
    ProgramResult Deploy(const QStringList& options = {}) const
    {
        return Run(QStringList{QStringLiteral("deploy"), project, server.GetAddress(QStringLiteral("web"))} +
                   options);
    }
    QString WriteFolder(const QString& name) const
    {
        const QString folder = program.Path(name);
        EXPECT_EQ(program.Run({QStringLiteral("deploy"), project, folder}).exitCode, 0);
        return folder;
    }
    QString GetSite() const { return server.GetRoot() + QStringLiteral("web"); }

    const CProtectedServer server{GetParam()};
    CProgram program;
    QString project;
};

int SentFiles(const ProgramResult& result)
{
    return result.output.section(QStringLiteral(" files sent"), 0, 0).section(QLatin1Char(' '), -1).toInt();
}

} // namespace

INSTANTIATE_TEST_SUITE_P(All, ProtectedServers,
                         testing::Values(Kind::Vsftpd, Kind::ProFtpd, Kind::PureFtpd, Kind::Sshd),
                         [](const auto& kind) { return std::string(NameOf(kind.param)); });

TEST_P(ProtectedServers, OneThatNobodyVouchesForIsShownAndTakenByItsFingerprint)
{
    project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    const QString address = server.GetAddress(QStringLiteral("web"));
    const QStringList commands[] = {{QStringLiteral("deploy"), project, address},
                                    {QStringLiteral("ftp-ls"), address},
                                    {QStringLiteral("ftp-mkdir"), address, QStringLiteral("a")}};
    for (const QStringList& command : commands) {
        const ProgramResult unknown = program.Run(command + server.GetLoginOptions());
        EXPECT_EQ(unknown.exitCode, 1);
        EXPECT_EQ(unknown.GetFailure()[QStringLiteral("caption")],
                  QStringLiteral("The server 127.0.0.1 was not trusted. Nothing secret was sent to it."))
            << qPrintable(unknown.errors);
        EXPECT_TRUE(unknown.GetFailure()[QStringLiteral("description")].contains(server.GetFingerprint()))
            << qPrintable(unknown.errors);
        EXPECT_TRUE(unknown.GetFailure()[QStringLiteral("advice")].endsWith(
            QStringLiteral("--fingerprint ") + server.GetFingerprint() + QLatin1Char('.')))
            << qPrintable(unknown.errors);
        const QString other = QStringLiteral("sha256:") + QString(64, QLatin1Char('0'));
        const ProgramResult changed = program.Run(command + server.GetLoginOptions() +
                                                  QStringList{QStringLiteral("--fingerprint"), other});
        EXPECT_EQ(changed.exitCode, 1);
        EXPECT_TRUE(changed.GetFailure()[QStringLiteral("description")].startsWith(
            QStringLiteral("It shows another identity (")))
            << qPrintable(changed.errors);
    }
    EXPECT_TRUE(PublishedIn(server.GetRoot()).isEmpty());
    EXPECT_EQ(Deploy().exitCode, 0);
}

TEST_P(ProtectedServers, GetWhatChangedAndNothingElse)
{
    project = WriteTree(program);
    const QString first = WriteFolder(QStringLiteral("first"));
    const ProgramResult dry = Deploy({QStringLiteral("--dry-run"), QStringLiteral("--quiet")});
    EXPECT_EQ(dry.exitCode, 0) << qPrintable(dry.errors);
    EXPECT_TRUE(dry.output.startsWith(
        QStringLiteral("%1 new\n0 changed\n0 removed\n").arg(PublishedIn(first).size())))
        << qPrintable(dry.output);
    EXPECT_FALSE(QDir(GetSite()).exists());

    const ProgramResult deployed = Deploy();
    EXPECT_EQ(deployed.exitCode, 0) << qPrintable(deployed.errors);
    EXPECT_EQ(deployed.errors, QString());
    ExpectSameTree(GetSite(), first);

    EXPECT_EQ(Deploy({QStringLiteral("--dry-run"), QStringLiteral("--quiet")}).output,
              QStringLiteral("0 new\n0 changed\n0 removed\n0 bytes\n"));
    EXPECT_EQ(SentFiles(Deploy()), 0);

    program.WritePicture(QStringLiteral("hills/\u96ea.jpg"), QSize(80, 60));
    const QString second = WriteFolder(QStringLiteral("second"));
    const ProgramResult changed = Deploy();
    EXPECT_EQ(changed.exitCode, 0) << qPrintable(changed.errors);
    EXPECT_GT(SentFiles(changed), 0);
    EXPECT_LT(SentFiles(changed), PublishedIn(first).size() / 2);
    ExpectSameTree(GetSite(), second);

    // Somebody has removed a file.
    const QString lost = QStringLiteral("index.html");
    ASSERT_TRUE(QFile::remove(GetSite() + QLatin1Char('/') + lost));
    EXPECT_EQ(SentFiles(Deploy()), 1);
    ExpectSameTree(GetSite(), second);
}

TEST_P(ProtectedServers, KeepFilesOfOthersUntilToldOtherwise)
{
    project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    ASSERT_EQ(
        Run({QStringLiteral("ftp-mkdir"), server.GetAddress(QString()), QStringLiteral("web")}).exitCode, 0);
    const QString strange = GetSite() + QStringLiteral("/index.html");
    {
        QFile file(strange);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("somebody else's");
        // The server's user replaces it.
        file.setPermissions(file.permissions() | QFileDevice::WriteOther);
    }
    const ProgramResult kept = Deploy();
    EXPECT_EQ(kept.exitCode, 1);
    EXPECT_TRUE(kept.GetFailure()[QStringLiteral("description")].endsWith(QStringLiteral("\\nindex.html")))
        << qPrintable(kept.errors);
    QFile file(strange);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("somebody else's"));
    const ProgramResult replaced = Deploy({QStringLiteral("--overwrite")});
    EXPECT_EQ(replaced.exitCode, 0) << qPrintable(replaced.errors);
    ExpectSameTree(GetSite(), WriteFolder(QStringLiteral("folder")));
}

TEST_P(ProtectedServers, ListMakeRenameAndTest)
{
    const auto run = [&](const QStringList& arguments) {
        const ProgramResult result = Run(arguments);
        EXPECT_EQ(result.errors, QString());
        EXPECT_EQ(result.exitCode, 0);
        return result.output;
    };
    const QString address = server.GetAddress(QString());
    run({QStringLiteral("ftp-mkdir"), address, QStringLiteral("two words")});
    run({QStringLiteral("ftp-mkdir"), address, QStringLiteral("two words")});
    run({QStringLiteral("ftp-mkdir"), server.GetAddress(QStringLiteral("two%20words")),
         QStringLiteral("K\u00f6ln")});
    run({QStringLiteral("ftp-rename"), address, QStringLiteral("two words"), QStringLiteral("zwei")});
    EXPECT_EQ(run({QStringLiteral("ftp-ls"), address}), QStringLiteral("d zwei\n"));
    EXPECT_EQ(run({QStringLiteral("ftp-ls"), server.GetAddress(QStringLiteral("zwei"))}),
              QStringLiteral("d K\u00f6ln\n"));
    const QString raw = run({QStringLiteral("ftp-ls"), address, QStringLiteral("--raw")});
    EXPECT_TRUE(raw.startsWith(QStringLiteral("drwx"))) << qPrintable(raw);
    EXPECT_TRUE(raw.endsWith(QStringLiteral(" zwei\n"))) << qPrintable(raw);
    const QString test = run({QStringLiteral("ftp-test"), address, QStringLiteral("--transcript")});
    EXPECT_TRUE(test.endsWith(QStringLiteral("\nsuccess\n"))) << qPrintable(test);
    EXPECT_FALSE(test.contains(QStringLiteral("ge#heim")));
}

TEST_P(ProtectedServers, RefuseAWrongPassword)
{
    if (server.TakesAnyPassword()) {
        GTEST_SKIP() << "It asks for none.";
    }
    program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), QStringLiteral("wrong"));
    project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    const ProgramResult result = Deploy();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.GetFailure()[QStringLiteral("description")].startsWith(
        QStringLiteral("The server doesn't let you in: 530 ")))
        << qPrintable(result.errors);
}
