#include <QLineEdit>

#include "WizardFixture.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "support/FTPServer.h"

// The wizard with the sample project and the servers that the world uses.

namespace {

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t, int32_t) override {}
};

} // namespace

class WizardServers : public CWizardFixture, public testing::WithParamInterface<FTPServerKind> {
protected:
    void SetUp() override
    {
        if (!real.GetProblem().isEmpty()) {
            GTEST_SKIP() << qPrintable(real.GetProblem());
        }
        CopyDirectoryTree(QStringLiteral(DATA_FOLDER "/sample"), Path(QStringLiteral("sample")));
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.programFolder = QStringLiteral(DATA_FOLDER);
        sample = std::make_unique<CGalleryProject>(environment);
        sample->Open(Path(QStringLiteral("sample/sample.gallery")));
    }

    void StoreServer()
    {
        CFTPDestination destination = destinations.Create(false);
        destination.connection = {.displayName = QStringLiteral("Real"),
                                  .userName = real.GetUser(),
                                  .password = real.GetPassword(),
                                  .server = QStringLiteral("127.0.0.1"),
                                  .directory = {},
                                  .port = real.GetPort()};
        EXPECT_EQ(destinations.Save(destination), CFTPDestinations::SaveResult::Saved);
        CDeploySettings& settings = sample->GetDeploySettings();
        settings.destination_kind = 1;
        settings.ftp_destination = destination.key;
        settings.ftp_directory = QStringLiteral("www/photos");
    }

    const CFTPServer real{GetParam()};
    std::unique_ptr<CGalleryProject> sample;
};

INSTANTIATE_TEST_SUITE_P(Each, WizardServers,
                         testing::Values(FTPServerKind::Vsftpd, FTPServerKind::ProFtpd,
                                         FTPServerKind::PureFtpd),
                         [](const auto& info) { return std::string(NameOf(info.param)); });

TEST_P(WizardServers, TakeTheSampleProject)
{
    StoreServer();
    DeployWizardServices services;
    services.destinations = &destinations;
    wizard = std::make_unique<CWizardPropSheetDeploy>(*sample, services, nullptr);
    wizard->show();
    Press("next");
    Press("next");
    Press("next");
    ASSERT_TRUE(QTest::qWaitFor([&] { return CanPress("finish"); }, 110000));
    ASSERT_EQ(PageId(), 239) << qPrintable(ErrorTexts().join(QLatin1Char('\n')));
    Press("finish");

    CNoProgress progress;
    const CStopSignal stop;
    sample->SetPreviewMode(false);
    GeneratePages(*sample, {Path(QStringLiteral("expected"))}, stop, progress);
    const QStringList expected = FilesBelow(Path(QStringLiteral("expected")));
    const QString uploaded = real.GetRoot() + QStringLiteral("www/photos");
    EXPECT_GT(expected.size(), 50);
    EXPECT_EQ(FilesBelow(uploaded), expected);
    for (const QString& file : expected) {
        EXPECT_EQ(ReadWholeFile(JoinPath(uploaded, file)),
                  ReadWholeFile(Path(QStringLiteral("expected/") + file)))
            << qPrintable(file);
    }
}
