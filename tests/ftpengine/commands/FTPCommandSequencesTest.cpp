#include "commands/FTPSequenceFixture.h"

namespace {

using FTPSequence = CFTPSequenceFixture;

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
                                           QStringLiteral("PASS ****\r\n"),
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

TEST_F(FTPSequence, TheGreetingEndsWithItsFinalLine)
{
    const struct {
        std::vector<std::string> greeting;
        const char* outcome;
        bool isUnfinished = false; // then a short time without a byte ends it
    } rows[] = {
        {{"220-Hello\r\n220-you\r\n220 ready\r\n"}, "230|230 in"},
        {{"220-Hello\r\n", "220-you\r\n22", "0 ready\r", "\n"}, "230|230 in"},
        {{"220 first\r\n220 second\r\n"}, "230|230 in"}, // all of it is the greeting
        {{"22", "0 ready\r\n"}, "230|230 in"},
        {{"220 ready"}, "230|230 in", true},
        {{"220 " + std::string(122, 'x') + "\r\n"}, "230|230 in"},
        {{"220 " + std::string(123, 'x') + "\r\n"}, "230|230 in"},
        {{"220 " + std::string(5000, 'x') + "\r\n"}, "230|230 in"},
        {{"120 in a minute\r\n", "220 ready\r\n"}, "230|230 in"},
        {{"421 full\r\n"}, "refused 421|421 full"},
        {{"500 no\r\n"}, "refused 500|500 no"},
        {{"hello\r\n"}, "thrown 6"},
        {{"SSH-2.0-x\r\n"}, "thrown 6"},
        {{"\r\n"}, "thrown 6"},
        {{std::string("\0\0", 2)}, "thrown 6", true},
        {{"999 what\r\n"}, "thrown 6"},
        {{"220-Hello\r\n"}, "thrown 10060", true},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.On("GREETING", [&row](CServerSession& session, const std::string&) {
            session.SendInPieces(row.greeting, std::chrono::milliseconds(5));
        });
        one.Start();
        CSocketStream connection(row.isUnfinished ? ShortTimeouts() : PatientTimeouts());
        OpenConnection(one.GetDestination(), abort, connection);
        EXPECT_EQ(LoginOver(connection, QStringLiteral("x")), row.outcome) << row.greeting.front();
    }
}

TEST_F(FTPSequence, NoReplyIsWaitedForLongerThanItTakes)
{
    // Each of these waits would come to no end in this test.
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.reply = std::chrono::hours(1);
    timeouts.greeting = std::chrono::hours(1);
    Open(timeouts);
    EXPECT_EQ(Login(), "230|230 in");
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "200|200 type");
}

TEST_F(FTPSequence, AMultiLineReplyThatIsCutAnywhereIsOne)
{
    // Lines that end at a multiple of 128 bytes, pauses between them, single bytes.
    const std::string line = "200-" + std::string(122, 'x') + "\r\n";
    const std::string reply = line + line + "200-y\r\n 200 no end\r\n200 done\r\n";
    for (const std::size_t size : {std::size_t(1), std::size_t(7), std::size_t(128), reply.size()}) {
        CScriptedServer one;
        one.On("GREETING", [](CServerSession&, const std::string&) {});
        one.On("TYPE", [&](CServerSession& session, const std::string&) {
            for (std::size_t at = 0; at < reply.size(); at += size) {
                session.SendInPieces({reply.substr(at, size)}, std::chrono::milliseconds(size == 1 ? 0 : 2));
            }
        });
        one.Start();
        CSocketStream connection(PatientTimeouts());
        OpenConnection(one.GetDestination(), abort, connection);
        CFTPCommandSequenceTypeI type(connection, abort, transcript);
        CFTPCommandSequenceQuit quit(connection, abort, transcript);
        EXPECT_EQ(Outcome([&] { return type.Run(); }), "200|200 done") << size;
        EXPECT_EQ(Outcome([&] { return quit.Run(); }), "221|221 bye") << size;
    }
}

TEST_F(FTPSequence, WhatCameBeforeACommandIsNotItsReply)
{
    CEvent said;
    server.On("TYPE", [&said](CServerSession& session, const std::string&) {
        session.Send("200 type\r\n");
        session.Send("550 something else\r\n");
        said.Set();
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "200|200 type");
    ASSERT_TRUE(said.Wait(std::chrono::milliseconds(30000)));
    EXPECT_EQ(Run<CFTPCommandSequenceQuit>(), "221|221 bye");
}

TEST_F(FTPSequence, AFarewellIsTheReplyToWhatIsNotAnswered)
{
    CEvent gone;
    server.On("TYPE", [&gone](CServerSession& session, const std::string&) {
        session.Send("200 type\r\n421 idle for too long\r\n");
        session.Close();
        gone.Set();
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "200|200 type");
    ASSERT_TRUE(gone.Wait(std::chrono::milliseconds(30000)));
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "refused 421|421 idle for too long");
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
        EXPECT_EQ(LoginOver(connection, QStringLiteral("x")), row.outcome);
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
    EXPECT_EQ(Login(), "thrown 10040");
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
        for (int i = 0; i < 100000 && session.IsOpen(); ++i) {
            session.Send("150 still waiting\r\n");
        }
    });
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 10040");
}

TEST_F(FTPSequence, PreliminaryRepliesWithoutEndAreATimeOut)
{
    server.On("TYPE", [](CServerSession& session, const std::string&) {
        while (session.IsOpen() && !session.GetStop().IsSet()) {
            session.SendInPieces({"150 still waiting\r\n"}, std::chrono::milliseconds(10));
        }
    });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.preliminary = std::chrono::milliseconds(100);
    OpenQuietly(timeouts);
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "thrown 10060");
    stream.reset();
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

TEST_F(FTPSequence, EachPreliminaryReplyStartsTheTimeOutAnew)
{
    server.On("TYPE", [](CServerSession& session, const std::string&) {
        session.SendInPieces({"100 wait\r\n", "100 wait\r\n", "100 wait\r\n", "200 done\r\n"},
                             std::chrono::milliseconds(700));
    });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.reply = std::chrono::milliseconds(1500); // less than the four pieces take
    OpenQuietly(timeouts);
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "200|200 done");
}

TEST_F(FTPSequence, WhatAServerRefusesWithIsInTheTranscript)
{
    server.Reply("TYPE", "500 no\r\n");
    server.Reply("QUIT", "what?\r\n");
    OpenQuietly();
    EXPECT_EQ(Run<CFTPCommandSequenceTypeI>(), "refused 500|500 no");
    EXPECT_EQ(Run<CFTPCommandSequenceQuit>(), "thrown 6");
    const std::vector<QString> expected = {QStringLiteral("TYPE I\r\n"), QStringLiteral("500 no\r\n"),
                                           QStringLiteral("QUIT\r\n"), QStringLiteral("what?\r\n")};
    EXPECT_EQ(transcript, expected);
}
