#include "commands/FTPSequenceFixture.h"
#include "ftpengine/tasks/FTPTasks.h"

namespace {

class FTPDirectorySequence : public CFTPSequenceFixture {
protected:
    struct Row {
        const char* path;
        const char* outcome;
        Commands commands; // what the server is sent
    };

    template <typename Sequence>
    void ExpectCommands(const std::vector<Row>& rows)
    {
        for (const Row& row : rows) {
            const auto before = static_cast<std::ptrdiff_t>(server.GetCommands().size());
            EXPECT_EQ(Run<Sequence>(QString::fromLatin1(row.path)), row.outcome) << row.path;
            const Commands all = server.GetCommands();
            EXPECT_EQ(Commands(all.begin() + before, all.end()), row.commands) << row.path;
        }
    }
};

} // namespace

TEST_F(FTPDirectorySequence, EntersAPathAndMakesWhatIsMissing)
{
    OpenQuietly();
    ExpectCommands<CFTPCommandSequenceOpenDir>({
        {"", "200|", {}},
        {"a", "250|250 changed", {"MKD a", "CWD a"}},
        {"a\\b c", "250|250 changed", {"MKD a", "CWD a", "MKD b c", "CWD b c"}},
        {"..\\..\\a", "250|250 changed", {"CWD ..", "CWD ..", "MKD a", "CWD a"}},
        {"a/b", "250|250 changed", {"MKD a/b", "CWD a/b"}}, // cut at the one separator only
        {"\\a\\\\b\\", "250|250 changed", {"MKD a", "CWD a", "MKD b", "CWD b"}},
    });
}

TEST_F(FTPDirectorySequence, EnteringSwallowsARefusedMkdAlone)
{
    server.Reply("MKD", "550 exists\r\n");
    server.On("CWD", [](CServerSession& session, const std::string& name) {
        session.Send(name == "bad" ? "550 no\r\n" : "250 in\r\n");
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(QStringLiteral("a\\b")), "250|250 in");
    EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(QStringLiteral("bad\\b")), "refused 550|550 no");
    EXPECT_EQ(server.GetCommands().back(), "CWD bad");
}

TEST_F(FTPDirectorySequence, EnteringDoesNotSwallowANetworkFailure)
{
    server.Reply("MKD", "what?\r\n");
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(QStringLiteral("a")), "thrown 6");
}

TEST_F(FTPDirectorySequence, CreatesANameAndDoesNotEnterIt)
{
    server.On("MKD", [](CServerSession& session, const std::string& name) {
        session.Send(name == "old" ? "550 exists\r\n" : name == "odd" ? "350 hm\r\n" : "257 made\r\n");
    });
    OpenQuietly();
    ExpectCommands<CFTPCommandSequenceCreateDir>({
        {"", "200|", {}},
        {"a", "257|257 made", {"MKD a"}},
        {"a\\b", "257|257 made", {"MKD a", "MKD b"}}, // beside each other
        {"old", "250|250 changed", {"MKD old", "CWD old"}},
        {"old\\b", "257|257 made", {"MKD old", "CWD old", "MKD b"}},
        {"odd", "250|250 changed", {"MKD odd", "CWD odd"}},
        {"..\\a", "257|257 made", {"CWD ..", "MKD a"}},
    });
}

TEST_F(FTPDirectorySequence, CreatingReportsThatTheNameCannotBeEntered)
{
    server.Reply("MKD", "550 no\r\n");
    server.Reply("CWD", "551 nor in\r\n");
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceCreateDir>(QStringLiteral("a")), "refused 551|551 nor in");
    EXPECT_EQ(Run<CFTPCommandSequenceCreateDir>(QStringLiteral("..")), "refused 551|551 nor in");
}

TEST_F(FTPDirectorySequence, RenamesUnlessTheFirstHalfIsRefused)
{
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceRenameDir>(QStringLiteral("a"), QStringLiteral("b")), "250|250 renamed");
    EXPECT_EQ(server.GetCommands(), (Commands{"RNFR a", "RNTO b"}));
    CScriptedServer refusing;
    refusing.On("GREETING", [](CServerSession&, const std::string&) {});
    refusing.Reply("RNFR", "550 no\r\n");
    refusing.Start();
    CSocketStream connection(PatientTimeouts());
    OpenConnection(refusing.GetDestination(), abort, connection);
    CFTPCommandSequenceRenameDir rename(connection, abort, transcript);
    EXPECT_EQ(Outcome([&] { return rename.Run(QStringLiteral("a"), QStringLiteral("b")); }),
              "refused 550|550 no");
    EXPECT_EQ(refusing.GetCommands(), (Commands{"RNFR a"}));
}

TEST_F(FTPDirectorySequence, ANameThatBreaksTheLineIsNeverSent)
{
    OpenQuietly();
    for (const QString& name : {QStringLiteral("a\r\nDELE b"), QStringLiteral("a\r"), QStringLiteral("\nb"),
                                QStringLiteral("a") + QChar(0) + QStringLiteral("b")}) {
        EXPECT_EQ(Run<CFTPCommandSequenceChangeDir>(name), "thrown 123");
        EXPECT_EQ(Run<CFTPCommandSequenceRenameDir>(QStringLiteral("good"), name), "thrown 123");
        EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(name), "thrown 123");
    }
    EXPECT_EQ(server.GetCommands(), Commands());
}

TEST_F(FTPDirectorySequence, AFailedGroupLeavesNothingForTheNextRun)
{
    server.Reply("RNFR", "550 no\r\n");
    OpenQuietly();
    CFTPCommandSequenceRenameDir rename(*stream, abort, transcript);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Outcome([&] { return rename.Run(QStringLiteral("a"), QStringLiteral("b")); }),
                  "refused 550|550 no");
    }
    EXPECT_EQ(server.GetCommands(), (Commands{"RNFR a", "RNFR a"}));
}

TEST_F(FTPDirectorySequence, FindsTheDeepestDirectoryThatIsThere)
{
    server.On("CWD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "a" ? "250 in\r\n" : path == "locked" ? "553 no\r\n" : "550 none\r\n");
    });
    OpenQuietly();
    const struct {
        const char* directory;
        const char* outcome;
        const char* left;
        Commands commands;
    } rows[] = {
        {"a/b/c", "250|250 in", "a", {"CWD a/b/c", "CWD a/b", "CWD a"}},
        {"a", "250|250 in", "a", {"CWD a"}},
        {"x/y", "200|", "", {"CWD x/y", "CWD x"}},
        {"/x", "refused 550|550 none", "/x", {"CWD /x", "CWD "}},
        {"", "refused 550|550 none", "", {"CWD "}},
        {"locked", "refused 553|553 no", "locked", {"CWD locked"}},
    };
    for (const auto& row : rows) {
        const std::size_t before = server.GetCommands().size();
        FTPDestinationConnection destination;
        destination.directory = QString::fromLatin1(row.directory);
        CFTPCommandSequenceChangeDir sequence(*stream, abort, transcript);
        EXPECT_EQ(Outcome([&] { return ChangeDirWithFallback(destination, sequence); }), row.outcome)
            << row.directory;
        EXPECT_EQ(destination.directory, QString::fromLatin1(row.left));
        const Commands all = server.GetCommands();
        EXPECT_EQ(Commands(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), row.commands)
            << row.directory;
    }
    EXPECT_TRUE(traces.Has("\"ChangeDirWithFallback, ChangeDir throws: \"553"));
}
