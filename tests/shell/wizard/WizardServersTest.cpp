#include <QLineEdit>

#include "WizardFixture.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "support/FTPServer.h"
#include "support/SshServer.h"

// The wizard with the sample project and the servers that the world uses.

namespace {

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t, int32_t) override {}
};

} // namespace

class WizardServers : public CWizardFixture {
protected:
    WizardServers()
    {
        CopyDirectoryTree(QStringLiteral(DATA_FOLDER "/sample"), Path(QStringLiteral("sample")));
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.programFolder = QStringLiteral(DATA_FOLDER);
        sample = std::make_unique<CGalleryProject>(environment);
        sample->Open(Path(QStringLiteral("sample/sample.gallery")));
    }

    void StoreServer(const FTPDestinationConnection& connection, const QString& directory)
    {
        CFTPDestination destination = destinations.Create(false);
        destination.connection = connection;
        destination.connection.displayName = QStringLiteral("Real");
        EXPECT_EQ(destinations.Save(destination), CFTPDestinations::SaveResult::Saved);
        CDeploySettings& settings = sample->GetDeploySettings();
        settings.destination_kind = 1;
        settings.ftp_destination = destination.key;
        settings.ftp_directory = directory;
    }

    // Through the wizard; every question about the server is agreed to.
    void Upload(bool isAsked)
    {
        DeployWizardServices services = MakeServices();
        services.access.mostSessions = 4;
        wizard = std::make_unique<CWizardPropSheetDeploy>(*sample, services, nullptr);
        wizard->show();
        Press("next");
        Press("next");
        const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
        Press("next");
        ASSERT_TRUE(QTest::qWaitFor([&] { return IsAsking() || PageId() == 245; }, 60000));
        ASSERT_EQ(PageId(), 239) << qPrintable(ErrorTexts().join(QLatin1Char('\n')));
        EXPECT_EQ(answer.WasAsked(), isAsked);
        Press("next");
        ASSERT_TRUE(QTest::qWaitFor([&] { return CanPress("finish"); }, 110000));
        ASSERT_EQ(PageId(), 239) << qPrintable(ErrorTexts().join(QLatin1Char('\n')));
        Press("finish");
    }

    void ExpectSite(const QString& uploaded)
    {
        CNoProgress progress;
        const CStopSignal stop;
        sample->SetPreviewMode(false);
        GeneratePages(*sample, {Path(QStringLiteral("expected"))}, stop, progress);
        const QStringList expected = FilesBelow(Path(QStringLiteral("expected")));
        QStringList served = FilesBelow(uploaded);
        served.removeIf([](const QString& file) { return file.startsWith(QStringLiteral(".vistorama/")); });
        EXPECT_GT(expected.size(), 50);
        EXPECT_EQ(served, expected);
        for (const QString& file : expected) {
            EXPECT_EQ(ReadWholeFile(JoinPath(uploaded, file)),
                      ReadWholeFile(Path(QStringLiteral("expected/") + file)))
                << qPrintable(file);
        }
    }

    std::unique_ptr<CGalleryProject> sample;
};

class WizardFTPServers : public WizardServers,
                         public testing::WithParamInterface<std::tuple<FTPServerKind, FTPServerSecurity>> {
protected:
    bool HasTls() const { return std::get<1>(GetParam()) == FTPServerSecurity::TlsOnly; }

    const CFTPServer real{std::get<0>(GetParam()), std::get<1>(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(
    Each, WizardFTPServers,
    testing::Combine(testing::Values(FTPServerKind::Vsftpd, FTPServerKind::ProFtpd, FTPServerKind::PureFtpd),
                     testing::Values(FTPServerSecurity::Clear, FTPServerSecurity::TlsOnly)),
    [](const auto& info) {
        const bool hasTls = std::get<1>(info.param) == FTPServerSecurity::TlsOnly;
        return std::string(NameOf(std::get<0>(info.param))) + (hasTls ? "Tls" : "Clear");
    });

TEST_P(WizardFTPServers, TakeTheSampleProject)
{
    if (!real.GetProblem().isEmpty()) {
        GTEST_SKIP() << qPrintable(real.GetProblem());
    }
    FTPDestinationConnection connection;
    connection.userName = real.GetUser();
    connection.password = real.GetPassword();
    connection.server = QStringLiteral("127.0.0.1");
    connection.port = real.GetPort();
    connection.protocol = HasTls() ? ServerProtocol::FtpTls : ServerProtocol::Ftp;
    StoreServer(connection, QStringLiteral("www/photos"));
    Upload(HasTls());
    ExpectSite(real.GetRoot() + QStringLiteral("www/photos"));
}

TEST_F(WizardServers, OfSSHTakeTheSampleProject)
{
    const CSshServer real;
    ASSERT_TRUE(real.GetProblem().isEmpty()) << qPrintable(real.GetProblem());
    const QString key =
        real.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
    real.Authorise(key);
    FTPDestinationConnection connection = real.GetDestination();
    connection.identityFile = key;
    StoreServer(connection, QStringLiteral("www/photos"));
    Upload(true);
    ExpectSite(real.GetRoot() + QStringLiteral("www/photos"));
}
