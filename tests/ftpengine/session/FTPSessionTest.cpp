#include "ftpengine/session/FTPSession.h"

#include <atomic>

#include "session/FTPSessionFixture.h"

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using FTPSession = CFTPSessionFixture;

std::vector<std::string> Names(const std::vector<RemoteEntry>& entries)
{
    std::vector<std::string> names;
    for (const RemoteEntry& entry : entries) {
        names.push_back((entry.isDirectory ? "d " : "- ") + Narrow(entry.name));
    }
    return names;
}

CScriptedServer::Handler Saying(const std::string& bytes)
{
    return [bytes](CServerSession& session, const std::string&) {
        session.Send(bytes);
    };
}

} // namespace

TEST_F(FTPSession, OpensInItsDirectory)
{
    server.Start();
    EXPECT_EQ(Open(ServerProtocol::Ftp, QStringLiteral("www")), "done");
    session->Quit();
    EXPECT_THAT(server.GetCommands(), ElementsAre("USER anna", "PASS s3cret", "FEAT", "OPTS UTF8 ON",
                                                  "TYPE I", "CWD www", "PWD", "QUIT"));
    for (const QString& line : log.transcript) {
        EXPECT_FALSE(line.contains(QStringLiteral("s3cret"))) << qPrintable(line);
    }
    EXPECT_FALSE(log.identity.has_value());
}

TEST_F(FTPSession, AnAnswerToAChallengeIsNotInTheTranscript)
{
    server.Reply("USER", "331 otp-md5 99 test ext\r\n");
    server.Start();
    EXPECT_EQ(Open(), "done");
    const std::string answer = server.GetCommands()[1].substr(5);
    EXPECT_EQ(answer.find("s3cret"), std::string::npos);
    for (const QString& line : log.transcript) {
        EXPECT_FALSE(line.contains(Widen(answer))) << qPrintable(line);
    }
}

TEST_F(FTPSession, WhatKeepsItFromOpening)
{
    const struct {
        const char* verb;
        const char* reply;
        const char* outcome;
    } rows[] = {
        {"GREETING", "421 full\r\n", "refused 421"},
        {"USER", "530 no\r\n", "refused 530"},
        {"PASS", "530 Login incorrect.\r\n", "refused 530"},
        {"USER", "530 Non-anonymous sessions must use encryption.\r\n", "thrown 12047"},
        {"PASS", "534 no\r\n", "thrown 12047"},
        {"GREETING", "421 Sorry, cleartext sessions are not accepted.\r\n", "thrown 12047"},
        {"CWD", "550 none\r\n", "refused 550"},
        {"PWD", "257 where?\r\n", "refused 550"},
        {"TYPE", "what?\r\n", "thrown 6"},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.Reply(row.verb, row.reply);
        one.Start();
        setting.destination = one.GetDestination(QStringLiteral("www"));
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), row.outcome) << row.reply;
    }
}

TEST_F(FTPSession, ALineBreakIsRefusedBeforeAnythingIsSent)
{
    server.Start();
    EXPECT_EQ(Open(ServerProtocol::Ftp, QStringLiteral("a\r\nDELE b")), "thrown 123");
    setting.destination = server.GetDestination();
    setting.destination.password = QStringLiteral("a\nb");
    EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), "thrown 123");
    EXPECT_THAT(server.GetCommands(), ElementsAre());
    EXPECT_EQ(Open(), "done");
    EXPECT_EQ(Outcome([&] { session->RemoveFile(QStringLiteral("a\r\nDELE b")); }), "thrown 123");
    EXPECT_THAT(server.GetCommands(), testing::Not(testing::Contains(testing::HasSubstr("DELE"))));
}

TEST_F(FTPSession, AnotherProtocolIsNotSupported)
{
    server.Start();
    setting.destination = server.GetDestination();
    setting.destination.protocol = ServerProtocol::Sftp;
    EXPECT_EQ(Outcome([&] { OpenFTPSession(setting, log); }), "thrown 10043");
    EXPECT_THAT(server.GetCommands(), ElementsAre());
}

TEST_F(FTPSession, SendsReadsAndRemovesFiles)
{
    server.Start();
    ASSERT_EQ(Open(), "done");
    const QByteArray bytes = QByteArray("0123456789abcdef").repeated(100'000);
    EXPECT_EQ(Send(bytes), "done");
    EXPECT_EQ(progress, bytes.size());
    EXPECT_EQ(server.GetFiles()["a.jpg"], bytes.toStdString());
    EXPECT_EQ(session->GetSize(QStringLiteral("a.jpg")), bytes.size());
    EXPECT_EQ(session->Read(QStringLiteral("a.jpg"), bytes.size()), bytes);
    EXPECT_EQ(Send(QByteArray(), QStringLiteral("empty")), "done");
    EXPECT_EQ(session->GetSize(QStringLiteral("empty")), 0);
    EXPECT_EQ(session->Read(QStringLiteral("empty"), 0), QByteArray());
    session->RemoveFile(QStringLiteral("a.jpg"));
    EXPECT_EQ(session->GetSize(QStringLiteral("a.jpg")), std::nullopt);
    EXPECT_EQ(session->Read(QStringLiteral("a.jpg"), 100), std::nullopt);
    EXPECT_EQ(Outcome([&] { session->RemoveFile(QStringLiteral("a.jpg")); }), "refused 550");
    session->KeepAlive();
    EXPECT_EQ(server.GetCommands().back(), "NOOP");
}

TEST_F(FTPSession, AFileThatIsTooLongIsNotRead)
{
    server.PutFile("long", std::string(1001, 'x'));
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Outcome([&] { session->Read(QStringLiteral("long"), 1000); }), "thrown 10040");
}

TEST_F(FTPSession, AFileOfAnotherSizeIsNoSuccess)
{
    server.On("SIZE", Saying("213 5\r\n"));
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send("123456"), "refused 451");
    EXPECT_EQ(Send("12345"), "done") << "the session goes on";
}

TEST_F(FTPSession, WithoutSizesNoneIsAskedFor)
{
    server.features.clear();
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send("123456"), "done");
    EXPECT_EQ(session->GetSize(QStringLiteral("a.jpg")), std::nullopt);
    EXPECT_THAT(CommandsFrom(5), ElementsAre("PASV", "STOR a.jpg"));
}

TEST_F(FTPSession, AServerThatRefusesTheExtendedFormIsAskedInTheOldOne)
{
    server.On("EPSV", Saying("522 use (1)\r\n"));
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send("1"), "done");
    EXPECT_EQ(Send("2"), "done");
    EXPECT_THAT(CommandsFrom(6),
                ElementsAre("EPSV", "PASV", "STOR a.jpg", "SIZE a.jpg", "PASV", "STOR a.jpg", "SIZE a.jpg"));
}

TEST_F(FTPSession, SpeaksIPv6)
{
    CScriptedServer six(AF_INET6);
    if (!six.IsOpen()) {
        GTEST_SKIP() << "This machine has no IPv6.";
    }
    six.features.clear();
    six.Start();
    setting.destination = six.GetDestination();
    session = OpenRemoteSession(setting, log);
    EXPECT_EQ(Send("123"), "done");
    EXPECT_EQ(six.GetFiles()["a.jpg"], "123");
    session.reset();
}

TEST_F(FTPSession, ListsByFactsWhereTheServerHasThem)
{
    server.features += " MLST type*;size*;modify*;\r\n";
    server.listing =
        "type=cdir; .\r\ntype=dir; sub\r\ntype=file;size=7;modify=20260131120000; b\xc3\xa4r.jpg\r\n";
    server.Start();
    ASSERT_EQ(Open(), "done");
    const auto entries = session->List(QStringLiteral("www"));
    EXPECT_THAT(Names(entries), ElementsAre("d sub", "- b\xc3\xa4r.jpg"));
    EXPECT_EQ(entries[1].size, 7);
    EXPECT_EQ(entries[1].modified, 1769860800);
    EXPECT_EQ(server.GetCommands().back(), "MLSD www");
    session->List(QString());
    EXPECT_EQ(server.GetCommands().back(), "MLSD");
}

TEST_F(FTPSession, ListsByLinesOtherwise)
{
    server.listing =
        "total 1\r\ndrwxr-xr-x 2 u g 1 Jan  5 2026 .vistorama\r\n-rw-r--r-- 1 u g 9 Jan  5 2026 a\r\n";
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_THAT(Names(session->List(QStringLiteral("www/two words"))), ElementsAre("d .vistorama", "- a"));
    EXPECT_THAT(CommandsFrom(6), ElementsAre("CWD www/two words", "EPSV", "LIST -a", "CWD /home"));
    session->List(QString());
    EXPECT_THAT(CommandsFrom(10), ElementsAre("EPSV", "LIST -a"));
}

TEST_F(FTPSession, AListingInTheServersWordsComesAsItIs)
{
    server.listing = "  total 2\r\n-rw-r--r--   1 a b  12 Nov 20 14:34 x \r\n";
    server.features = " MLST type*;\r\n";
    server.Start();
    ASSERT_EQ(Open(), "done");
    const std::size_t before = server.GetCommands().size();
    EXPECT_EQ(session->ListInWords(QStringLiteral("www")), Widen(server.listing));
    EXPECT_THAT(CommandsFrom(before), ElementsAre("CWD www", "PASV", "LIST", "CWD /home"));
}

TEST_F(FTPSession, AServerThatTakesTheOptionForANameIsAskedWithoutIt)
{
    server.On("LIST", [](CServerSession& session, const std::string& argument) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData(argument.empty() ? "01-05-26  12:30PM  <DIR>  a\r\n" : "");
        session.CloseData();
        session.Send("226 done\r\n");
    });
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_THAT(Names(session->List(QString())), ElementsAre("d a"));
    EXPECT_THAT(Names(session->List(QString())), ElementsAre("d a"));
    EXPECT_THAT(CommandsFrom(6), ElementsAre("EPSV", "LIST -a", "EPSV", "LIST", "EPSV", "LIST"));
}

TEST_F(FTPSession, ADirectoryThatIsNotThereHasNoListing)
{
    server.On("CWD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "gone" ? "550 none\r\n" : "250 in\r\n");
    });
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Outcome([&] { session->List(QStringLiteral("gone")); }), "refused 550");
}

TEST_F(FTPSession, ARefusedListingLeadsBack)
{
    server.On("LIST", Saying("450 not now\r\n"));
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Outcome([&] { session->List(QStringLiteral("www")); }), "refused 450");
    EXPECT_EQ(server.GetCommands().back(), "CWD /home");
}

TEST_F(FTPSession, AListingThatIsUnknownAfterAllIsAskedForInTheOtherForm)
{
    server.features += " MLST\r\n";
    server.On("MLSD", Saying("500 what?\r\n"));
    server.listing = "drwxr-xr-x 2 u g 1 Jan  5 2026 a\r\n";
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_THAT(Names(session->List(QString())), ElementsAre("d a"));
    session->List(QString());
    const auto commands = server.GetCommands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "MLSD"), 1);
}

TEST_F(FTPSession, ADirectoryThatIsThereIsAsGoodAsMade)
{
    server.On("MKD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "new" ? "257 made\r\n" : "550 no\r\n");
    });
    server.On("CWD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "bad" ? "550 none\r\n" : "250 in\r\n");
    });
    server.Start();
    ASSERT_EQ(Open(), "done");
    session->MakeDirectory(QStringLiteral("new"));
    session->MakeDirectory(QStringLiteral("old"));
    EXPECT_EQ(Outcome([&] { session->MakeDirectory(QStringLiteral("bad")); }), "refused 550");
    EXPECT_THAT(CommandsFrom(6),
                ElementsAre("MKD new", "MKD old", "CWD old", "CWD /home", "MKD bad", "CWD bad"));
    session->RemoveDirectory(QStringLiteral("new"));
    EXPECT_EQ(server.GetCommands().back(), "RMD new");
}

TEST_F(FTPSession, ARenameReplacesWhatIsThere)
{
    std::atomic<int> refusals = 1;
    server.On("RNTO", [&refusals](CServerSession& session, const std::string&) {
        session.Send(refusals-- > 0 ? "553 it is there\r\n" : "250 renamed\r\n");
    });
    server.PutFile("b", "old");
    server.Start();
    ASSERT_EQ(Open(), "done");
    session->Rename(QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_THAT(CommandsFrom(6), ElementsAre("RNFR a", "RNTO b", "DELE b", "RNFR a", "RNTO b"));
    refusals = 1;
    // Nothing is there that could be in the way.
    EXPECT_EQ(Outcome([&] { session->Rename(QStringLiteral("a"), QStringLiteral("c")); }), "refused 553");
    session->Rename(QStringLiteral("a"), QStringLiteral("d"));
    EXPECT_EQ(server.GetCommands().back(), "RNTO d");
    server.Stop();
}

TEST_F(FTPSession, ARenameThatMaySucceedLaterRemovesNothing)
{
    server.Reply("RNTO", "450 busy\r\n");
    server.PutFile("b", "old");
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Outcome([&] { session->Rename(QStringLiteral("a"), QStringLiteral("b")); }), "refused 450");
    EXPECT_EQ(server.GetFiles()["b"], "old");
}

TEST_F(FTPSession, TheServersWordsAboutABrokenTransferAreHeard)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        session.ResetData();
        session.Send("552 no space\r\n");
    });
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send(QByteArray(20 << 20, 'x')), "refused 552");
    session->KeepAlive(); // the session goes on
    EXPECT_EQ(server.GetCommands().back(), "NOOP");
}

TEST_F(FTPSession, ACancelBreaksATransferOffInTheMiddle)
{
    const auto abort = setting.abortEvent;
    int dataFailure = 0;
    server.On("STOR", [&, abort](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        abort->Set();
        dataFailure = session.AwaitDataFailure();
        session.Stall();
    });
    server.Start();
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send(QByteArray(40 << 20, 'x')), "thrown 995");
    session.reset();
    server.Stop();
    EXPECT_EQ(dataFailure, 10054); // an end would make the part a whole
}

TEST_F(FTPSession, ATransferThatStallsIsGivenUp)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.Stall();
    });
    server.Start();
    setting.timeouts.dataStall = milliseconds(100);
    setting.timeouts.lastWords = milliseconds(100);
    ASSERT_EQ(Open(), "done");
    EXPECT_EQ(Send(QByteArray(40 << 20, 'x')), "thrown 10060");
}
