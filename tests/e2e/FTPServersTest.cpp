#include <gtest/gtest.h>

#include "Program.h"
#include "ServerSites.h"
#include "support/FTPServer.h"

// The commands against servers that the world uses.

namespace {

class FTPServers : public testing::TestWithParam<FTPServerKind> {
protected:
    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            GTEST_SKIP() << qPrintable(server.GetProblem());
        }
        program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), server.GetPassword());
    }

    QString AddressOf(const QString& directory) const
    {
        return server.GetAddress() + QLatin1Char('/') + directory;
    }

    const CFTPServer server{GetParam()};
    CProgram program;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(All, FTPServers,
                         testing::Values(FTPServerKind::Vsftpd, FTPServerKind::ProFtpd,
                                         FTPServerKind::PureFtpd),
                         [](const auto& kind) { return std::string(NameOf(kind.param)); });

TEST_P(FTPServers, GetTheSameSiteAsAFolderByteForByte)
{
    const QString project = WriteTree(program);
    const QString folder = program.Path(QStringLiteral("site"));
    ASSERT_EQ(program.Run({QStringLiteral("deploy"), project, folder}).exitCode, 0);
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, AddressOf(QStringLiteral("web/my site"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(result.errors, QString());
    ExpectSameTree(server.GetRoot() + QStringLiteral("web/my site"), folder);
    // Once more, over what is there.
    const ProgramResult again =
        program.Run({QStringLiteral("deploy"), project, AddressOf(QStringLiteral("web/my site"))});
    EXPECT_EQ(again.exitCode, 0) << qPrintable(again.errors);
    EXPECT_TRUE(again.output.contains(QStringLiteral(" 0 files sent, "))) << qPrintable(again.output);
    ExpectSameTree(server.GetRoot() + QStringLiteral("web/my site"), folder);
    EXPECT_TRUE(program.scratch.ListFiles().filter(QStringLiteral("cache/vistorama/tmp/")).isEmpty());
}

TEST_P(FTPServers, AreReachedByTheNameOfADestination)
{
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    const ProgramResult added = program.Run({QStringLiteral("destination"), QStringLiteral("add"),
                                             QStringLiteral("My web"), AddressOf(QStringLiteral("stored"))});
    ASSERT_EQ(added.exitCode, 0) << qPrintable(added.errors);
    // The stored password serves, not that of the moment.
    program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), QStringLiteral("wrong"));
    const QStringList deploy{QStringLiteral("deploy"), project, QStringLiteral("--to"),
                             QStringLiteral("my web")};
    const ProgramResult stored = program.Run(deploy);
    EXPECT_EQ(stored.exitCode, 0) << qPrintable(stored.errors);
    const ProgramResult other =
        program.Run(deploy + QStringList{QStringLiteral("--directory"), QStringLiteral("other")});
    EXPECT_EQ(other.exitCode, 0) << qPrintable(other.errors);
    const QStringList files = PublishedIn(server.GetRoot() + QStringLiteral("stored"));
    EXPECT_TRUE(files.contains(QStringLiteral("index.html")));
    EXPECT_EQ(PublishedIn(server.GetRoot() + QStringLiteral("other")), files);
}

TEST_P(FTPServers, ListMakeAndRenameDirectories)
{
    const auto run = [&](const QStringList& arguments) {
        const ProgramResult result = program.Run(arguments);
        EXPECT_EQ(result.errors, QString());
        EXPECT_EQ(result.exitCode, 0);
        return result.output;
    };
    const QString address = server.GetAddress();
    run({QStringLiteral("ftp-mkdir"), address, QStringLiteral("two words")});
    // What is there already is no failure.
    run({QStringLiteral("ftp-mkdir"), address, QStringLiteral("two words")});
    run({QStringLiteral("ftp-mkdir"), AddressOf(QStringLiteral("two%20words")), QStringLiteral("K\u00f6ln")});
    run({QStringLiteral("ftp-rename"), address, QStringLiteral("two words"), QStringLiteral("zwei")});
    QFile file(server.GetRoot() + QStringLiteral("notes.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_EQ(run({QStringLiteral("ftp-ls"), address}), QStringLiteral("- notes.txt\nd zwei\n"));
    EXPECT_EQ(run({QStringLiteral("ftp-ls"), AddressOf(QStringLiteral("zwei"))}),
              QStringLiteral("d K\u00f6ln\n"));
    const QString raw = run({QStringLiteral("ftp-ls"), address, QStringLiteral("--raw")});
    EXPECT_TRUE(raw.startsWith(QStringLiteral("-rw"))) << qPrintable(raw);
    EXPECT_TRUE(raw.contains(QStringLiteral("\ndrwx"))) << qPrintable(raw);
    EXPECT_TRUE(raw.endsWith(QStringLiteral(" zwei\n"))) << qPrintable(raw);
}

TEST_P(FTPServers, AListingOfWhatIsNotThereShowsTheDeepestThatIs)
{
    ASSERT_EQ(
        program.Run({QStringLiteral("ftp-mkdir"), server.GetAddress(), QStringLiteral("there")}).exitCode, 0);
    const ProgramResult result =
        program.Run({QStringLiteral("ftp-ls"), AddressOf(QStringLiteral("gone/deeper"))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, QStringLiteral("d there\n"));
    EXPECT_EQ(result.errors,
              QStringLiteral("There is no folder 'gone/deeper'. This is the listing of '/'.\n"));
}

TEST_P(FTPServers, ATestOfTheConnectionSaysHowItWent)
{
    const ProgramResult good =
        program.Run({QStringLiteral("ftp-test"), server.GetAddress(), QStringLiteral("--transcript")});
    EXPECT_EQ(good.exitCode, 0) << qPrintable(good.errors);
    const QStringList lines = good.output.split(QLatin1Char('\n'));
    EXPECT_TRUE(lines.contains(QStringLiteral("USER ") + server.GetUser())) << qPrintable(good.output);
    EXPECT_TRUE(lines.contains(QStringLiteral("PASS ****"))) << qPrintable(good.output);
    EXPECT_TRUE(good.output.endsWith(QStringLiteral("\nsuccess\n"))) << qPrintable(good.output);
    EXPECT_FALSE(good.output.contains(QStringLiteral("ge#heim")));

    const ProgramResult gone = program.Run({QStringLiteral("ftp-test"), AddressOf(QStringLiteral("gone"))});
    EXPECT_EQ(gone.exitCode, 1);
    EXPECT_TRUE(gone.output.startsWith(QStringLiteral("server refusal 550 "))) << qPrintable(gone.output);
    EXPECT_FALSE(gone.output.contains(QStringLiteral("550 550"))) << qPrintable(gone.output);
}

TEST_P(FTPServers, AWrongPasswordIsRefused)
{
    if (GetParam() == FTPServerKind::Vsftpd) {
        GTEST_SKIP() << "It lets everybody in: its other users would need the machine's own accounts.";
    }
    program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), QStringLiteral("wrong"));
    const ProgramResult test = program.Run({QStringLiteral("ftp-test"), server.GetAddress()});
    EXPECT_EQ(test.exitCode, 1);
    EXPECT_TRUE(test.output.startsWith(QStringLiteral("server refusal 530 "))) << qPrintable(test.output);
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    const ProgramResult deployed =
        program.Run({QStringLiteral("deploy"), project, AddressOf(QStringLiteral("web"))});
    EXPECT_EQ(deployed.exitCode, 1);
    const auto failure = deployed.GetFailure();
    EXPECT_EQ(failure[QStringLiteral("caption")],
              QStringLiteral("An error occured during upload a new web gallery to Internet site."));
    EXPECT_TRUE(failure[QStringLiteral("description")].startsWith(
        QStringLiteral("The server doesn't let you in: 530 ")))
        << qPrintable(deployed.errors);
    EXPECT_EQ(failure[QStringLiteral("advice")],
              QStringLiteral("Please check FTP site parameters and destination directory."));
    EXPECT_TRUE(program.scratch.ListFiles().filter(QStringLiteral("cache/vistorama/tmp/")).isEmpty());
}
