#include "FTPEngineFixture.h"
#include "TraceRecorder.h"
#include "common/Text.h"
#include "ftpengine/Connection.h"
#include "ftpengine/FTPCommandSequences.h"
#include "ftpengine/FTPTasks.h"

namespace {

using Commands = std::vector<std::string>;

// Sequences over a stream to the scripted server, without a task.
class FTPSequence : public testing::Test {
protected:
    const CResourceGuard guard;
    CTraceRecorder traces;
    CScriptedServer server;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    std::vector<QString> transcript;
    std::unique_ptr<CSocketStream> stream;

    void Open(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        server.Start();
        stream = std::make_unique<CSocketStream>(timeouts);
        OpenConnection(server.GetDestination(), abort, *stream);
    }

    // "230 in", "refused 530 no" or "thrown 6" of a sequence that has no greeting before it.
    template <class Sequence, class... Arguments>
    std::string Run(const Arguments&... arguments)
    {
        Sequence sequence(*stream, abort, transcript);
        return Outcome([&] { return sequence.Run(arguments...); });
    }

    template <class Function>
    static std::string Outcome(const Function& function)
    {
        try {
            return Line(function());
        } catch (const FTPReply& reply) {
            return "refused " + Line(reply);
        } catch (int error) {
            return "thrown " + std::to_string(error);
        }
    }

    static std::string Line(const FTPReply& reply)
    {
        return std::to_string(reply.code) + '|' + Narrow(reply.text.trimmed());
    }

    // Opens without a greeting, for one command after the other.
    void OpenQuietly(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        server.On("GREETING", [](CServerSession&, const std::string&) {});
        Open(timeouts);
    }

    std::string Login(const QString& password = QStringLiteral("s3cret"))
    {
        return Run<CFTPCommandSequenceLogin>(QStringLiteral("anna"), password);
    }
};

} // namespace

TEST_F(FTPSequence, LogsIn)
{
    Open();
    EXPECT_EQ(Login(), "230|230 in");
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret"}));
    const std::vector<QString> expected = {QString(),
                                           QStringLiteral("220 ready\r\n"),
                                           QStringLiteral("USER anna\r\n"),
                                           QStringLiteral("331 password\r\n"),
                                           QStringLiteral("PASS s3cret\r\n"),
                                           QStringLiteral("230 in\r\n")};
    EXPECT_EQ(transcript, expected);
}

TEST_F(FTPSequence, NoTraceShowsThePassword)
{
    Open();
    Login();
    stream.reset();
    EXPECT_TRUE(traces.Has("CA2CT(buf.buf)"));
    for (const QString& line : traces.GetLines()) {
        EXPECT_FALSE(line.contains(QStringLiteral("s3cret"))) << qPrintable(line);
    }
}

TEST_F(FTPSequence, NamesAreSentInUtf8)
{
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceChangeDir>(QString::fromUtf8("gr\xc3\xbc\xc3\x9f \xf0\x9f\x90\x88")),
              "250|250 changed");
    EXPECT_EQ(server.GetCommands(), (Commands{"CWD gr\xc3\xbc\xc3\x9f \xf0\x9f\x90\x88"}));
}

TEST_F(FTPSequence, SendsAPasswordAlsoWhenNoneIsAskedFor)
{
    server.Reply("USER", "230 in already\r\n");
    server.Reply("PASS", "503 no need\r\n");
    Open();
    EXPECT_EQ(Login(), "refused 503|503 no need");
    EXPECT_EQ(server.GetCommands(), (Commands{"USER anna", "PASS s3cret"}));
}

TEST_F(FTPSequence, AnswersAChallengeWithSixWords)
{
    server.Reply("USER", "331 otp-md5 99 test ext\r\n");
    Open();
    EXPECT_EQ(Login(QStringLiteral("This is a test.")), "230|230 in");
    EXPECT_EQ(server.GetCommands().back(), "PASS BAIL TUFT BITS GANG CHEF THY");
}

TEST_F(FTPSequence, AnUnreasonableChallengeEndsTheLogin)
{
    server.Reply("USER", "331 otp-md5 2000000000 test ext\r\n");
    Open();
    EXPECT_EQ(Login(), "thrown 6");
}

TEST_F(FTPSequence, TheGreetingEndsWithASilence)
{
    const struct {
        std::vector<std::string> greeting;
        const char* outcome;
    } rows[] = {
        {{"220-Hello\r\n220-you\r\n220 ready\r\n"}, "230|230 in"},
        {{"220 first\r\n", "220 second\r\n"}, "230|230 in"},
        {{"22", "0 ready\r\n"}, "230|230 in"},
        {{"220 ready"}, "230|230 in"},
        {{"220 " + std::string(122, 'x') + "\r\n"}, "230|230 in"},
        {{"220 " + std::string(123, 'x') + "\r\n"}, "230|230 in"},
        {{"220 " + std::string(5000, 'x') + "\r\n"}, "230|230 in"},
        {{"220 good\r\n", "421 not so good\r\n"}, "refused 421|421 not so good"},
        {{"421 full\r\n"}, "refused 421|421 full"},
        {{"500 no\r\n"}, "refused 500|500 no"},
        {{"120 in a minute\r\n"}, "thrown 6"},
        {{"hello\r\n"}, "thrown 6"},
        {{"SSH-2.0-x\r\n"}, "thrown 6"},
        {{"\r\n"}, "thrown 6"},
        {{std::string("\0\0", 2)}, "thrown 6"},
        {{"999 what\r\n"}, "thrown 6"},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.On("GREETING", [&row](CServerSession& session, const std::string&) {
            session.SendInPieces(row.greeting, std::chrono::milliseconds(5));
        });
        one.Start();
        CSocketStream connection(ShortTimeouts());
        OpenConnection(one.GetDestination(), abort, connection);
        CFTPCommandSequenceLogin login(connection, abort, transcript);
        EXPECT_EQ(Outcome([&] { return login.Run(QStringLiteral("anna"), QStringLiteral("x")); }),
                  row.outcome)
            << row.greeting.front();
    }
}

TEST_F(FTPSequence, AServerThatIsSilentAtFirstHasFailed)
{
    server.On("GREETING", [](CServerSession& session, const std::string&) { session.Stall(); });
    Open(ShortTimeouts());
    EXPECT_EQ(Login(), "thrown 10060");
    EXPECT_TRUE(traces.Has("\"WelcomeReply throws: \"10060"));
    EXPECT_TRUE(traces.Has("_T(\"Receive, WaitForMultipleObjects timed out\")"));
}

TEST_F(FTPSequence, ACloseEndsTheGreeting)
{
    const struct {
        const char* greeting;
        const char* outcome;
    } rows[] = {
        {"421 too many\r\n", "refused 421|421 too many"},
        {"421-too\r\n", "refused 421|421-too"},
        {"", "thrown 6"},
        {"bye\r\n", "thrown 6"},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.On("GREETING", [&row](CServerSession& session, const std::string&) {
            session.Send(row.greeting);
            session.Close();
        });
        one.Start();
        CSocketStream connection(PatientTimeouts());
        OpenConnection(one.GetDestination(), abort, connection);
        CFTPCommandSequenceLogin login(connection, abort, transcript);
        EXPECT_EQ(Outcome([&] { return login.Run(QStringLiteral("anna"), QStringLiteral("x")); }),
                  row.outcome);
    }
}

TEST_F(FTPSequence, AnEndlessGreetingIsNoGreeting)
{
    server.On("GREETING", [](CServerSession& session, const std::string&) {
        for (int i = 0; i < 10000; ++i) {
            session.Send("220-" + std::string(122, 'x') + "\r\n");
        }
        session.Stall();
    });
    Open();
    EXPECT_EQ(Login(), "thrown 6");
}

TEST_F(FTPSequence, PreliminaryRepliesAreNotTheEnd)
{
    server.Reply("QUIT", "150 wait\r\n221 bye\r\n");
    server.On("TYPE", [](CServerSession& session, const std::string&) {
        session.SendInPieces({"100 wait\r\n", "199 wait\r\n", "200 done\r\n"}, std::chrono::milliseconds(1));
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceQuit>(), "221|221 bye");
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "200|200 done");
    EXPECT_EQ(transcript.size(), 4u);
    EXPECT_EQ(transcript[1], QStringLiteral("221 bye\r\n"));
}

TEST_F(FTPSequence, AFloodOfPreliminaryRepliesComesToAnEnd)
{
    server.On("TYPE", [](CServerSession& session, const std::string&) {
        for (int i = 0; i < 20000; ++i) {
            session.Send("150 still waiting\r\n");
        }
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 6");
}

TEST_F(FTPSequence, TheGroupOfTheReplyDecides)
{
    const struct {
        std::string reply;
        const char* outcome;
    } rows[] = {
        {"200 a\r\n", "200|200 a"},
        {"399 a\r\n", "399|399 a"},
        {"400 a\r\n", "refused 400|400 a"},
        {"599 a\r\n", "refused 599|599 a"},
        {"600 a\r\n", "thrown 6"},
        {"000 a\r\n", "thrown 6"},
        {"99 a\r\n", "thrown 6"},
        {"-20 a\r\n", "thrown 6"},
        {"what\r\n", "thrown 6"},
        {"\r\n", "thrown 6"},
        {"200-a\r\n200-b\r\n200 c\r\n", "200|200 c"},
        {"200-a\r\n500 c\r\n", "refused 500|500 c"},
        {"550 " + std::string(122, 'x') + "\r\n", nullptr},
        {"550 " + std::string(121, 'x') + "\r\n", nullptr},
        {"550 " + std::string(123, 'x') + "\r\n", nullptr},
        {"550 " + std::string(250, 'x') + "\r\n", nullptr},
        {"550 " + std::string(65530, 'x') + "\r\n", nullptr},
        {std::string("\0\0\r\n", 4), "thrown 6"},
    };
    std::size_t next = 0;
    server.On("TYPE", [&](CServerSession& session, const std::string&) { session.Send(rows[next++].reply); });
    OpenQuietly();
    for (const auto& row : rows) {
        const std::string whole = "refused 550|" + row.reply.substr(0, row.reply.size() - 2);
        EXPECT_EQ(Run<CFTPCommandSequenceTypeA>(), row.outcome == nullptr ? whole : row.outcome) << row.reply;
    }
    server.Stop();
    EXPECT_TRUE(traces.Has("_T(\"ExecuteCurrentSequence unknown group\")"));
    EXPECT_TRUE(traces.Has("\"ExecuteCurrentSequence throws: \"550"));
}

TEST_F(FTPSequence, ASilentServerIsATimeOut)
{
    server.On("TYPE", [](CServerSession& session, const std::string&) { session.Stall(); });
    OpenQuietly(ShortTimeouts());
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 10060");
    const std::vector<QString> expected = {QStringLiteral("TYPE I\r\n")};
    EXPECT_EQ(transcript, expected);
}

TEST_F(FTPSequence, AClosedConnectionIsAnUnknownReplyAndThenAReset)
{
    server.On("TYPE", [](CServerSession& session, const std::string&) { session.Close(); });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 6");
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 10054");
}

TEST_F(FTPSequence, EntersAPathAndMakesWhatIsMissing)
{
    OpenQuietly();
    const struct {
        const char* path;
        const char* outcome;
        Commands commands;
    } rows[] = {
        {"", "200|", {}},
        {"a", "250|250 changed", {"MKD a", "CWD a"}},
        {"a\\b c", "250|250 changed", {"MKD a", "CWD a", "MKD b c", "CWD b c"}},
        {"..\\..\\a", "250|250 changed", {"CWD ..", "CWD ..", "MKD a", "CWD a"}},
        {"a/b", "250|250 changed", {"MKD a/b", "CWD a/b"}}, // cut at the one separator only
        {"\\a\\\\b\\", "250|250 changed", {"MKD a", "CWD a", "MKD b", "CWD b"}},
    };
    for (const auto& row : rows) {
        const std::size_t before = server.GetCommands().size();
        EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(QString::fromLatin1(row.path)), row.outcome) << row.path;
        const Commands all = server.GetCommands();
        EXPECT_EQ(Commands(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), row.commands)
            << row.path;
    }
}

TEST_F(FTPSequence, EnteringSwallowsARefusedMkdAlone)
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

TEST_F(FTPSequence, EnteringDoesNotSwallowANetworkFailure)
{
    server.Reply("MKD", "what?\r\n");
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceOpenDir>(QStringLiteral("a")), "thrown 6");
}

TEST_F(FTPSequence, CreatesANameAndDoesNotEnterIt)
{
    server.On("MKD", [](CServerSession& session, const std::string& name) {
        session.Send(name == "old" ? "550 exists\r\n" : name == "odd" ? "350 hm\r\n" : "257 made\r\n");
    });
    OpenQuietly();
    const struct {
        const char* path;
        const char* outcome;
        Commands commands;
    } rows[] = {
        {"", "200|", {}},
        {"a", "257|257 made", {"MKD a"}},
        {"a\\b", "257|257 made", {"MKD a", "MKD b"}}, // beside each other
        {"old", "250|250 changed", {"MKD old", "CWD old"}},
        {"old\\b", "257|257 made", {"MKD old", "CWD old", "MKD b"}},
        {"odd", "250|250 changed", {"MKD odd", "CWD odd"}},
        {"..\\a", "257|257 made", {"CWD ..", "MKD a"}},
    };
    for (const auto& row : rows) {
        const std::size_t before = server.GetCommands().size();
        EXPECT_EQ(Run<CFTPCommandSequenceCreateDir>(QString::fromLatin1(row.path)), row.outcome) << row.path;
        const Commands all = server.GetCommands();
        EXPECT_EQ(Commands(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), row.commands)
            << row.path;
    }
}

TEST_F(FTPSequence, CreatingReportsThatTheNameCannotBeEntered)
{
    server.Reply("MKD", "550 no\r\n");
    server.Reply("CWD", "551 nor in\r\n");
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceCreateDir>(QStringLiteral("a")), "refused 551|551 nor in");
    EXPECT_EQ(Run<CFTPCommandSequenceCreateDir>(QStringLiteral("..")), "refused 551|551 nor in");
}

TEST_F(FTPSequence, RenamesUnlessTheFirstHalfIsRefused)
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

TEST_F(FTPSequence, ANameThatBreaksTheLineIsNeverSent)
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

TEST_F(FTPSequence, AFailedGroupLeavesNothingForTheNextRun)
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

TEST_F(FTPSequence, FindsTheDeepestDirectoryThatIsThere)
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
