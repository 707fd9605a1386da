#include "ftpengine/FTPEngine.h"

#include <sys/resource.h>
#include <unistd.h>

#include "FTPEngineFixture.h"
#include "common/Text.h"
#include "support/ScratchFolder.h"
#include "support/TraceRecorder.h"

namespace {

using std::chrono::milliseconds;
using Kind = CTaskResult::Kind;

class FTPEngine : public CFTPEngineFixture {
protected:
    const CScratchFolder scratch;
    using Names = std::vector<std::string>;

    // Files "NAME" or "DIRECTORY\NAME" below a root, with their names as content.
    FTPUploadMap MakeFiles(const QStringList& names) const
    {
        FTPUploadMap map;
        for (const QString& name : names) {
            const QString local = QString(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
            const QString path = scratch.Write(local, name.toUtf8());
            const qsizetype cut = name.lastIndexOf(QLatin1Char('\\'));
            map[path] = {.localPath = path,
                         .name = name.mid(cut + 1),
                         .directory = name.left(std::max<qsizetype>(cut, 0)),
                         .size = 0};
        }
        return map;
    }

    CTaskResult Finished(std::size_t count = 1) const
    {
        target->WaitForFinished(count);
        return target->GetResults().at(count - 1);
    }
};

} // namespace

TEST_F(FTPEngine, TestsAConnection)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.TestConnection(server.GetDestination(QStringLiteral("/pictures")), target);
    const CTaskResult result = Finished();
    EXPECT_EQ(result.GetKind(), Kind::Success) << result;
    EXPECT_EQ(result.reply.code, 250);
    EXPECT_EQ(target->GetMessages(), (Names{"800", "801"}));
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "CWD /pictures", "QUIT"}));
    ASSERT_EQ(result.transcript.size(), 8u); // without the goodbye
    EXPECT_EQ(result.transcript[6], QStringLiteral("CWD /pictures\r\n"));
    EXPECT_EQ(result.transcript[7], QStringLiteral("250 changed\r\n"));
    EXPECT_EQ(result.transcript[4], QStringLiteral("PASS ****\r\n"));
}

TEST_F(FTPEngine, CreatesAndRenamesDirectories)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.CreateDirectory(server.GetDestination(), QStringLiteral("new"), target);
    engine.RenameDirectory(server.GetDestination(), QStringLiteral("new"), QStringLiteral("old"), target);
    EXPECT_EQ(Finished(2).reply.text, QStringLiteral("250 renamed\r\n"));
    EXPECT_EQ(target->GetResults()[0].reply.text, QStringLiteral("257 made\r\n"));
    EXPECT_EQ(target->GetMessages(), (Names{"804", "805", "806", "807"}));
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "MKD new", "QUIT", "USER anna",
                                              "PASS s3cret", "RNFR new", "RNTO old", "QUIT"}));
}

TEST_F(FTPEngine, ListsADirectory)
{
    server.listing = "total 1\r\ndrwxr-xr-x 2 u g 4096 Jan 5 12:30 b\xc3\xa4r\r\n";
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.GetDirectoryContent(server.GetDestination(QStringLiteral("a")), target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(target->GetMessages(), (Names{"802", "803"}));
    const auto content = target->GetContent();
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->GetDirectory(), QStringLiteral("a"));
    ASSERT_EQ(content->GetItems().size(), 1u);
    EXPECT_EQ(content->GetItems()[0].name, QString::fromUtf8("b\xc3\xa4r"));
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "CWD a", "PASV", "LIST", "QUIT"}));
}

TEST_F(FTPEngine, ListsTheDeepestDirectoryThatIsThere)
{
    server.On("CWD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "a" ? "250 in\r\n" : "550 none\r\n");
    });
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.GetDirectoryContent(server.GetDestination(QStringLiteral("a/b/c")), target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(target->GetContent()->GetDirectory(), QStringLiteral("a"));
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "CWD a/b/c", "CWD a/b", "CWD a",
                                              "PASV", "LIST", "QUIT"}));
}

TEST_F(FTPEngine, AListingThatIsNotReachedHasNoContent)
{
    server.Reply("CWD", "553 no\r\n");
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.GetDirectoryContent(server.GetDestination(QStringLiteral("a")), target);
    EXPECT_EQ(Finished().GetKind(), Kind::ServerRefusal);
    EXPECT_FALSE(target->GetContent().has_value());
}

TEST_F(FTPEngine, AnUnreadableListingIsASuccessWithoutItems)
{
    server.listing = "01-05-04 12:30PM <DIR> a\r\n";
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.GetDirectoryContent(server.GetDestination(), target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_TRUE(target->GetContent()->GetItems().empty());
    EXPECT_EQ(target->GetContent()->GetListing(), QStringLiteral("01-05-04 12:30PM <DIR> a\r\n"));
}

TEST_F(FTPEngine, ARenameWithoutADirectorySendsNoCwd)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.RenameDirectory(server.GetDestination(), QStringLiteral("a"), QStringLiteral("b"), target);
    Finished();
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "RNFR a", "RNTO b", "QUIT"}));
}

TEST_F(FTPEngine, ARefusedUserStillGetsAGoodbye)
{
    server.Reply("USER", "530 no\r\n");
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.TestConnection(server.GetDestination(), target);
    const CTaskResult result = Finished();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.reply.code, 530);
    EXPECT_EQ(result.reply.text, QStringLiteral("530 no\r\n"));
    EXPECT_EQ(result.GetKind(), Kind::ServerRefusal);
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "QUIT"}));
}

TEST_F(FTPEngine, ARefusedConnectionHasNothingInItsTranscript)
{
    CListener listener;
    FTPDestinationConnection destination = server.GetDestination();
    destination.port = listener.GetPort();
    listener.Close();
    CFTPEngine engine(ShortTimeouts());
    engine.TestConnection(destination, target);
    const CTaskResult result = Finished();
    EXPECT_EQ(result.status, 10061);
    EXPECT_EQ(result.reply.code, 200);
    EXPECT_EQ(result.reply.text, QString());
    EXPECT_TRUE(result.transcript.empty());
    EXPECT_EQ(result.GetKind(), Kind::NetworkFailure);
}

TEST_F(FTPEngine, AnUnknownHostIsNotFound)
{
    FTPDestinationConnection destination = server.GetDestination();
    destination.server = QStringLiteral("no such host");
    CFTPEngine engine(ShortTimeouts());
    engine.TestConnection(destination, target);
    EXPECT_EQ(Finished().status, 11001);
}

TEST_F(FTPEngine, AnUploadOfNothingSucceeds)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(server.GetDestination(), QStringLiteral("title"), {}, target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret", "TYPE I", "TYPE A", "QUIT"}));
    EXPECT_EQ(target->GetMessages(), (Names{"808 title", "80c title"}));
}

TEST_F(FTPEngine, UploadsATreeInTheOrderOfItsPaths)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(
        server.GetDestination(QStringLiteral("/www")), QStringLiteral("t"),
        MakeFiles({QStringLiteral("a\\b\\2.jpg"), QStringLiteral("a\\1.jpg"), QStringLiteral("a\\b\\3.jpg"),
                   QStringLiteral("z\\4.jpg"), QStringLiteral("index.html"), QStringLiteral("zz.html")}),
        target);
    const CTaskResult result = Finished();
    EXPECT_TRUE(result.IsSuccess()) << result;
    EXPECT_EQ(result.reply.text, QStringLiteral("200 type\r\n"));
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna",       "PASS s3cret", "CWD /www",   "TYPE I",
                                              "MKD a",           "CWD a",       "PASV",       "STOR 1.jpg",
                                              "CWD ..",          "MKD a",       "CWD a",      "MKD b",
                                              "CWD b",           "PASV",        "STOR 2.jpg", "PASV",
                                              "STOR 3.jpg",      "CWD ..",      "CWD ..",     "PASV",
                                              "STOR index.html", "MKD z",       "CWD z",      "PASV",
                                              "STOR 4.jpg",      "CWD ..",      "PASV",       "STOR zz.html",
                                              "TYPE A",          "QUIT"}));
    EXPECT_EQ(target->GetMessages(),
              (Names{"808 t", "809 1.jpg t", "80b 1.jpg t", "809 2.jpg t", "80b 2.jpg t", "809 3.jpg t",
                     "80b 3.jpg t", "809 index.html t", "80b index.html t", "809 4.jpg t", "80b 4.jpg t",
                     "809 zz.html t", "80b zz.html t", "80c t"}));
    EXPECT_EQ(target->GetProgress().size(), 6u);
    EXPECT_EQ(server.GetFiles()["3.jpg"], "a\\b\\3.jpg");
}

TEST_F(FTPEngine, DirectoriesThatDifferInCaseAreTwo)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(server.GetDestination(), {}, MakeFiles({QStringLiteral("A\\1"), QStringLiteral("a\\2")}),
                  target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(server.GetCommands(),
              (Commands{"USER anna", "PASS s3cret", "TYPE I", "MKD A", "CWD A", "PASV", "STOR 1", "CWD ..",
                        "MKD a", "CWD a", "PASV", "STOR 2", "TYPE A", "QUIT"}));
}

TEST_F(FTPEngine, TheFirstFailureEndsAnUpload)
{
    server.Reply("STOR", "552 full\r\n");
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(server.GetDestination(), QStringLiteral("t"),
                  MakeFiles({QStringLiteral("1"), QStringLiteral("2")}), target);
    const CTaskResult result = Finished();
    EXPECT_EQ(result.GetKind(), Kind::ServerRefusal);
    EXPECT_EQ(result.reply.code, 552);
    EXPECT_EQ(target->GetMessages(), (Names{"808 t", "809 1 t", "80c t"}));
}

TEST_F(FTPEngine, TheCallersMapMayChangeDuringTheUpload)
{
    server.Start();
    FTPUploadMap map = MakeFiles({QStringLiteral("1")});
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(server.GetDestination(), {}, map, target);
    map.clear();
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(server.GetFiles().size(), 1u);
}

TEST_F(FTPEngine, ANameThatBreaksTheLineEndsATaskBeforeAnythingIsSent)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    const QString bad = QStringLiteral("a\r\nDELE x");
    FTPDestinationConnection badUser = server.GetDestination();
    badUser.userName = bad;
    FTPDestinationConnection badPassword = server.GetDestination();
    badPassword.password = QStringLiteral("x\n");
    FTPUploadMap badName = MakeFiles({QStringLiteral("good")});
    badName.begin()->second.name = bad;
    FTPUploadMap badDirectory = MakeFiles({QStringLiteral("good")});
    badDirectory.begin()->second.directory = bad;
    engine.TestConnection(badUser, target);
    engine.TestConnection(badPassword, target);
    engine.TestConnection(server.GetDestination(bad), target);
    engine.GetDirectoryContent(server.GetDestination(bad), target);
    engine.CreateDirectory(server.GetDestination(), bad, target);
    engine.RenameDirectory(server.GetDestination(), bad, QStringLiteral("b"), target);
    engine.RenameDirectory(server.GetDestination(), QStringLiteral("b"), bad, target);
    engine.Upload(server.GetDestination(), {}, badName, target);
    engine.Upload(server.GetDestination(), {}, badDirectory, target);
    Finished(9);
    for (const CTaskResult& result : target->GetResults()) {
        EXPECT_EQ(result.status, 123) << result;
        EXPECT_TRUE(result.transcript.empty());
    }
    EXPECT_EQ(server.GetCommands(), Commands());
}

TEST_F(FTPEngine, AGoodbyeThatFailsFailsNothing)
{
    std::vector<CScriptedServer::Handler> goodbyes = {
        [](CServerSession& session, const std::string&) { session.Send("500 no\r\n"); },
        [](CServerSession& session, const std::string&) { session.Send("what?\r\n"); },
        [](CServerSession& session, const std::string&) { session.Close(); },
        [](CServerSession& session, const std::string&) { session.Reset(); },
        [](CServerSession& session, const std::string&) { session.Stall(); },
    };
    std::size_t next = 0;
    server.On("QUIT", [&](CServerSession& session, const std::string& argument) {
        goodbyes[next++](session, argument);
    });
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    for (std::size_t i = 1; i <= goodbyes.size(); ++i) {
        engine.TestConnection(server.GetDestination(), target);
        EXPECT_TRUE(Finished(i).IsSuccess()) << i;
    }
    server.Stop();
}

TEST_F(FTPEngine, AFailedTaskHasNoEffectOnTheNext)
{
    server.Once("STOR", [](CServerSession& session, const std::string&) { session.Send("552 full\r\n"); });
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    const FTPUploadMap map = MakeFiles({QStringLiteral("1")});
    engine.Upload(server.GetDestination(), {}, map, target);
    engine.Upload(server.GetDestination(), {}, map, target);
    Finished(2);
    EXPECT_EQ(target->GetResults()[0].reply.code, 552);
    EXPECT_TRUE(target->GetResults()[1].IsSuccess()) << target->GetResults()[1];
}

TEST_F(FTPEngine, AClosedWindowGetsNothingMore)
{
    auto window = std::make_shared<CRecordingFTPTarget>();
    const std::weak_ptr<CRecordingFTPTarget> gone = window;
    CEvent listed;
    CEvent closed;
    server.On("LIST", [&](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        listed.Set();
        closed.Wait(milliseconds(30000));
        session.CloseData();
        session.Send("226 done\r\n");
    });
    server.Start();
    FTPTimeouts timeouts = PatientTimeouts();
    CFTPEngine engine(timeouts);
    engine.GetDirectoryContent(server.GetDestination(), window);
    ASSERT_TRUE(listed.Wait(milliseconds(30000)));
    window.reset();
    EXPECT_TRUE(gone.expired()); // a task keeps no window alive
    closed.Set();
    engine.TestConnection(server.GetDestination(), target);
    EXPECT_TRUE(Finished().IsSuccess());
    server.Stop();
}

TEST_F(FTPEngine, MessagesComeFromAnEngineWithoutAnyTarget)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.TestConnection(server.GetDestination(), {});
    engine.TestConnection(server.GetDestination(), target);
    EXPECT_TRUE(Finished().IsSuccess());
}

TEST_F(FTPEngine, TwoEnginesWorkSideBySide)
{
    CScriptedServer other;
    other.Start();
    server.Start();
    CFTPEngine one(ShortTimeouts());
    CFTPEngine two(ShortTimeouts());
    one.TestConnection(server.GetDestination(), target);
    two.TestConnection(other.GetDestination(), target);
    Finished(2);
    EXPECT_TRUE(target->GetResults()[0].IsSuccess());
    EXPECT_TRUE(target->GetResults()[1].IsSuccess());
}

TEST_F(FTPEngine, EndsWithAStatusWhenTheSystemHasNoDescriptorsLeft)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The sanitizer looks at objects through descriptors of its own.";
#endif
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    const int next = ::dup(0);
    ::close(next);
    std::size_t results = 0;
    for (rlim_t spare = 0; spare < 10; ++spare) {
        const rlimit scarce = {.rlim_cur = static_cast<rlim_t>(next) + spare, .rlim_max = usual.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &scarce), 0);
        engine.TestConnection(server.GetDestination(), target);
        target->WaitForFinished(++results);
    }
    ::setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_EQ(target->GetResults()[0].status, 10055); // not even a worker
    EXPECT_NE(target->GetResults()[3].status, 0);     // a worker, but no connection
    EXPECT_EQ(target->GetMessages().size(), 2 * results);
    engine.TestConnection(server.GetDestination(), target);
    EXPECT_TRUE(Finished(results + 1).IsSuccess());
}

TEST_F(FTPEngine, IsMadeAndDestroyedWithoutWork)
{
    const CResourceGuard without; // no thread and no descriptor is left behind
    const CFTPEngine engine;
    EXPECT_TRUE(without.AwaitThreads());
}

TEST_F(FTPEngine, MessagesAboutAFileHaveItsKeyAndProgressItsLocalPath)
{
    server.Start();
    std::vector<QString> keys;
    target->onMessage = [&keys](const FTPMessage& message) {
        if (const auto* const started = std::get_if<FTP_UPLOAD_FILE_STARTED>(&message)) {
            keys.push_back(started->localPath);
        } else if (const auto* const finished = std::get_if<FTP_UPLOAD_FILE_FINISHED>(&message)) {
            keys.push_back(finished->localPath);
        }
    };
    FTPUploadMap map = MakeFiles({QStringLiteral("a\\1")});
    const QString key = map.begin()->first;
    const QString elsewhere = scratch.Write(QStringLiteral("elsewhere"), "content");
    map.begin()->second.localPath = elsewhere;
    CFTPEngine engine(ShortTimeouts());
    engine.Upload(server.GetDestination(), {}, map, target);
    EXPECT_TRUE(Finished().IsSuccess());
    EXPECT_EQ(keys, (std::vector<QString>{key, key}));
    ASSERT_EQ(target->GetProgress().size(), 1u);
    EXPECT_EQ(target->GetProgress()[0].localPath, elsewhere);
    EXPECT_EQ(FTP_UPLOAD_PROGRESS::Number, 0x80A);
}

TEST(FTPTimeouts, TheDefaultsSuitSlowServers)
{
    const FTPTimeouts timeouts;
    EXPECT_EQ(timeouts.send, milliseconds(30000));
    EXPECT_EQ(timeouts.reply, milliseconds(60000));
    EXPECT_EQ(timeouts.greeting, milliseconds(30000));
    EXPECT_EQ(timeouts.preliminary, milliseconds(3600000));
    EXPECT_EQ(timeouts.stopWorker, milliseconds(60000));
    EXPECT_EQ(timeouts.dataStall, milliseconds(60000));
    EXPECT_EQ(timeouts.afterData, milliseconds(300000));
    EXPECT_EQ(timeouts.lastWords, milliseconds(5000));
    EXPECT_EQ(timeouts.connect, milliseconds(20000));
}
