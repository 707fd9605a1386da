#include <QDir>
#include <QFile>

#include "FTPEngineFixture.h"
#include "ftpengine/messages/EngineStatus.h"
#include "support/ScratchFolder.h"
#include "support/SshServer.h"

// The engine's tasks at OpenSSH's server.

class FTPEngineSftp : public testing::Test {
protected:
    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            FAIL() << qPrintable(server.GetProblem());
        }
        const QString key =
            server.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
        server.Authorise(key);
        scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
        destination = server.GetDestination();
        destination.identityFile = key;
        QDir(server.GetRoot()).mkpath(QStringLiteral("www/photos"));
        server.GiveToUser(server.GetRoot() + QStringLiteral("www"));
        server.GiveToUser(server.GetRoot() + QStringLiteral("www/photos"));
    }

    CTaskResult Result(CRecordingFTPTarget& target)
    {
        target.WaitForFinished();
        return target.GetResults().back();
    }

    const CSshServer server;
    const CScratchFolder scratch;
    FTPDestinationConnection destination;
    CFTPEngine engine{PatientTimeouts(), scratch.Path(QStringLiteral("trust"))};
    const std::shared_ptr<CRecordingFTPTarget> target = std::make_shared<CRecordingFTPTarget>();
};

TEST_F(FTPEngineSftp, TestsAConnectionAndADirectory)
{
    engine.TestConnection(destination, target);
    EXPECT_TRUE(Result(*target).IsSuccess());
    destination.directory = QStringLiteral("not there");
    const auto second = std::make_shared<CRecordingFTPTarget>();
    engine.TestConnection(destination, second);
    const CTaskResult refused = Result(*second);
    EXPECT_EQ(refused.GetKind(), CTaskResult::Kind::ServerRefusal);
    EXPECT_EQ(refused.reply.code, 550);
}

TEST_F(FTPEngineSftp, HandsBackTheIdentityThatIsInDoubt)
{
    CFTPEngine stranger(PatientTimeouts(), scratch.Path(QStringLiteral("nobody")));
    stranger.TestConnection(destination, target);
    const CTaskResult result = Result(*target);
    EXPECT_EQ(result.status, EngineStatus::UntrustedServer);
    ASSERT_TRUE(result.identity.has_value());
    EXPECT_FALSE(result.identity->hostKey.isEmpty());
}

TEST_F(FTPEngineSftp, ListsTheDeepestDirectoryThatIsThere)
{
    destination.directory = QStringLiteral("www/none/neither");
    engine.GetDirectoryContent(destination, target);
    EXPECT_TRUE(Result(*target).IsSuccess());
    const auto content = target->GetContent();
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->GetDirectory(), QStringLiteral("www"));
    ASSERT_EQ(content->GetItems().size(), 1u);
    EXPECT_EQ(content->GetItems()[0].name, QStringLiteral("photos"));
    EXPECT_TRUE(content->GetItems()[0].isDirectory);
    EXPECT_EQ(content->GetListing(), QStringLiteral("photos/\r\n"));
}

TEST_F(FTPEngineSftp, MakesAndRenamesDirectories)
{
    destination.directory = QStringLiteral("www");
    constexpr std::chrono::seconds longEnough(60);
    EXPECT_TRUE(engine.CreateDirectory(destination, QStringLiteral("new one"), longEnough).IsSuccess());
    EXPECT_TRUE(QDir(server.GetRoot() + QStringLiteral("www/new one")).exists());
    EXPECT_TRUE(
        engine.RenameDirectory(destination, QStringLiteral("new one"), QStringLiteral("old"), longEnough)
            .IsSuccess());
    EXPECT_TRUE(QDir(server.GetRoot() + QStringLiteral("www/old")).exists());
    EXPECT_EQ(engine.RenameDirectory(destination, QStringLiteral("none"), QStringLiteral("x"), longEnough)
                  .GetKind(),
              CTaskResult::Kind::ServerRefusal);
}

TEST_F(FTPEngineSftp, UploadsFilesIntoTheirDirectories)
{
    const QString one = scratch.Write(QStringLiteral("site/a/b/one.txt"), "one");
    const QString two = scratch.Write(QStringLiteral("site/two.txt"), "two!");
    const FTPUploadMap items{
        {one, {one, QStringLiteral("one.txt"), QStringLiteral("a\\b"), 3}},
        {two, {two, QStringLiteral("two.txt"), {}, 4}},
    };
    destination.directory = QStringLiteral("www");
    engine.Upload(destination, QStringLiteral("title"), items, target);
    EXPECT_TRUE(Result(*target).IsSuccess());
    QFile sent(server.GetRoot() + QStringLiteral("www/a/b/one.txt"));
    ASSERT_TRUE(sent.open(QIODevice::ReadOnly));
    EXPECT_EQ(sent.readAll(), "one");
    EXPECT_TRUE(QFile::exists(server.GetRoot() + QStringLiteral("www/two.txt")));
    uint32_t bytes = 0;
    for (const FTP_UPLOAD_PROGRESS& progress : target->GetProgress()) {
        bytes += progress.bytes;
    }
    EXPECT_EQ(bytes, 7u);
}
