#include "FTPEngineFixture.h"
#include "common/Text.h"
#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/net/Connection.h"
#include "support/ScratchFolder.h"
#include "support/TraceRecorder.h"

namespace {

using std::chrono::milliseconds;

// Transfers over a stream to the scripted server, without a task.
class FTPTransfer : public testing::Test {
protected:
    const CResourceGuard guard;
    CTraceRecorder traces;
    const CScratchFolder scratch;
    CScriptedServer server;
    const std::shared_ptr<CRecordingFTPTarget> target = std::make_shared<CRecordingFTPTarget>();
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    std::vector<QString> transcript;
    std::unique_ptr<CSocketStream> stream;
    QString listing;

    void Open(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        server.On("GREETING", [](CServerSession&, const std::string&) {});
        server.Start();
        stream = std::make_unique<CSocketStream>(timeouts);
        OpenConnection(server.GetDestination(), abort, *stream);
    }

    template <class Function>
    static std::string Outcome(const Function& function)
    {
        try {
            return std::to_string(function().code);
        } catch (const FTPReply& reply) {
            return "refused " + std::to_string(reply.code);
        } catch (int error) {
            return "thrown " + std::to_string(error);
        }
    }

    std::string List()
    {
        CFTPCommandSequenceList sequence(*stream, abort, transcript);
        return Outcome([&] { return sequence.Run(listing); });
    }

    std::string Store(const QString& path)
    {
        CFTPCommandSequenceStor sequence(*stream, abort, transcript);
        return Outcome([&] { return sequence.Run(path, QStringLiteral("remote.bin"), target); });
    }

    QString WriteFile(qsizetype size) const
    {
        QByteArray pattern; // of a length that no buffer has
        for (int i = 0; i < 1021; ++i) {
            pattern += static_cast<char>(i * 7);
        }
        const QByteArray bytes = pattern.repeated(size / pattern.size() + 1).left(size);
        return scratch.Write(QStringLiteral("local.bin"), bytes);
    }
};

} // namespace

TEST_F(FTPTransfer, AListingOfAnyLengthIsComplete)
{
    Open();
    for (const std::size_t size : {0u, 1u, 127u, 128u, 129u, 255u, 256u, 257u, 100000u}) {
        server.listing = std::string(size, 'x');
        EXPECT_EQ(List(), "226") << size;
        EXPECT_EQ(listing, QString(static_cast<qsizetype>(size), QLatin1Char('x'))) << size;
    }
    EXPECT_FALSE(abort->IsSet());
}

TEST_F(FTPTransfer, AListingInShortSegmentsIsComplete)
{
    server.On("LIST", [](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        for (int i = 0; i < 100; ++i) {
            session.SendData("line " + std::to_string(i) + "\r\n");
        }
        session.CloseData();
        session.Send("226 done\r\n");
    });
    Open();
    EXPECT_EQ(List(), "226");
    EXPECT_EQ(listing.count(QStringLiteral("\r\n")), 100);
    EXPECT_TRUE(listing.endsWith(QStringLiteral("line 99\r\n")));
}

TEST_F(FTPTransfer, ListsNamesAlone)
{
    Open();
    server.listing = "a\r\nb\r\n";
    CFTPCommandSequenceNlst sequence(*stream, abort, transcript);
    EXPECT_EQ(Outcome([&] { return sequence.Run(listing); }), "226");
    EXPECT_EQ(listing, QStringLiteral("a\r\nb\r\n"));
    EXPECT_EQ(server.GetCommands(), (std::vector<std::string>{"PASV", "NLST"}));
}

TEST_F(FTPTransfer, TheReplyMayComeBeforeTheData)
{
    server.On("LIST", [](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n226 done\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData("late\r\n");
        session.CloseData();
    });
    Open();
    EXPECT_EQ(List(), "226");
    EXPECT_EQ(listing, QStringLiteral("late\r\n"));
}

TEST_F(FTPTransfer, ARefusedDataConnectionOfAListingBreaksTheWait)
{
    server.On("PASV", [](CServerSession& session, const std::string&) {
        const std::string reply = session.ListenForData();
        session.GetDataListener().Close();
        session.Send(reply);
    });
    server.On("LIST", [](CServerSession& session, const std::string&) { session.Stall(); });
    Open();
    EXPECT_EQ(List(), "thrown 10061");
    EXPECT_TRUE(traces.Has("\"List, WSAConnect throws: \"10061"));
}

TEST_F(FTPTransfer, ABrokenDataConnectionOfAListingBreaksTheWait)
{
    server.On("LIST", [](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData("half a li");
        session.ResetData();
        session.Stall();
    });
    Open();
    EXPECT_EQ(List(), "thrown 10054");
    EXPECT_FALSE(abort->IsSet()); // nobody has given up
}

TEST_F(FTPTransfer, ARefusedListingSignalsTheAbortEvent)
{
    server.Reply("LIST", "550 no\r\n");
    Open();
    EXPECT_EQ(List(), "refused 550");
    EXPECT_TRUE(abort->IsSet());
}

TEST_F(FTPTransfer, AListingThatDoesNotEndAfterTheReplyIsGivenUp)
{
    server.On("LIST", [](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData("half\r\n");
        session.Send("226 done\r\n");
        session.Stall();
    });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.dataStall = milliseconds(50);
    Open(timeouts);
    EXPECT_EQ(List(), "thrown 10060");
}

TEST_F(FTPTransfer, ADataConnectionThatIsNeverOpenedIsGivenUp)
{
    // A queue of one that is full: the system lets nobody else in, and answers nothing.
    std::vector<CSocket> others(3);
    server.On("PASV", [&others](CServerSession& session, const std::string&) {
        const std::string reply = session.ListenForData(0);
        for (CSocket& other : others) {
            other.Create();
            other.Connect(LoopbackAddress(session.GetDataListener().GetPort()), milliseconds(50));
        }
        session.Send(reply);
    });
    server.On("LIST", [](CServerSession& session, const std::string&) { session.Stall(); });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.dataStall = milliseconds(50);
    Open(timeouts);
    EXPECT_EQ(List(), "thrown 10060");
    EXPECT_TRUE(traces.Has("\"List, WSAConnect throws: \"10060"));
}

TEST_F(FTPTransfer, AnAbortEndsAListingInItsMiddle)
{
    const auto abortEvent = abort;
    server.On("LIST", [abortEvent](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData("a\r\n");
        abortEvent->Set();
        session.Stall();
    });
    Open();
    EXPECT_EQ(List(), "thrown 995");
    EXPECT_TRUE(traces.Has("_T(\"List, WSAWaitForMultipleEvents aborted\")"));
}

TEST_F(FTPTransfer, AnEndlessListingDoesNotFillTheMemory)
{
    server.On("LIST", [](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        const std::string lines(1 << 20, 'x');
        for (int i = 0; i < 80; ++i) {
            session.SendData(lines);
        }
        session.Stall();
    });
    Open();
    EXPECT_EQ(List(), "thrown 10040");
    EXPECT_TRUE(traces.Has("\"List, WSARecv throws: \"10040"));
}

TEST_F(FTPTransfer, AnUnreadableReplyToPasvIsANumber)
{
    server.Reply("PASV", "227 somewhere\r\n");
    Open();
    EXPECT_EQ(List(), "thrown 11004");
    EXPECT_EQ(Store(WriteFile(1)), "thrown 11004");
    EXPECT_EQ(server.GetCommands(), (std::vector<std::string>{"PASV", "PASV"}));
    EXPECT_TRUE(traces.Has("_T(\"ParsePasvResponse failed\")"));
}

TEST_F(FTPTransfer, StoresFilesOfAnyLength)
{
    Open();
    for (const qsizetype size : {0, 1, 8191, 8192, 8193, 300000}) {
        const QString path = WriteFile(size);
        const std::size_t progressBefore = target->GetProgress().size();
        EXPECT_EQ(Store(path), "226") << size;
        EXPECT_EQ(server.GetFiles()["remote.bin"], scratch.Read(QStringLiteral("local.bin")).toStdString())
            << size;
        // One message for each block, with that block's size.
        const auto progress = target->GetProgress();
        ASSERT_EQ(progress.size() - progressBefore, static_cast<std::size_t>((size + 8191) / 8192)) << size;
        if (size > 0) {
            EXPECT_EQ(progress.back().bytes, static_cast<uint32_t>((size - 1) % 8192 + 1));
            EXPECT_EQ(progress.back().localPath, path);
        }
    }
    EXPECT_EQ(server.GetCommands().back(), "STOR remote.bin");
    EXPECT_TRUE(traces.Has("CFTPCommandSTOR::Execute entering"));
    EXPECT_TRUE(traces.Has("CFTPCommandSTOR::Execute exiting"));
}

TEST_F(FTPTransfer, StoresWithoutAnyoneToTell)
{
    Open();
    const QString path = WriteFile(10000);
    CFTPCommandSequenceStor sequence(*stream, abort, transcript);
    EXPECT_EQ(Outcome([&] { return sequence.Run(path, QStringLiteral("r"), {}); }), "226");
}

TEST_F(FTPTransfer, ARefusedDataConnectionOfAFileIsLeftToTheServersWords)
{
    server.On("PASV", [](CServerSession& session, const std::string&) {
        const std::string reply = session.ListenForData();
        session.GetDataListener().Close();
        session.Send(reply);
    });
    server.Reply("STOR", "425 no connection\r\n");
    Open();
    EXPECT_EQ(Store(WriteFile(10)), "refused 425");
    EXPECT_TRUE(traces.Has("Error number:274d      "));
}

TEST_F(FTPTransfer, OrToTheTimeOut)
{
    server.On("PASV", [](CServerSession& session, const std::string&) {
        const std::string reply = session.ListenForData();
        session.GetDataListener().Close();
        session.Send(reply);
    });
    server.On("STOR", [](CServerSession& session, const std::string&) { session.Stall(); });
    Open(ShortTimeouts());
    EXPECT_EQ(Store(WriteFile(10)), "thrown 10060");
    EXPECT_FALSE(abort->IsSet());
}

TEST_F(FTPTransfer, ARefusedStoreSignalsTheAbortEvent)
{
    server.Reply("STOR", "553 no\r\n");
    Open(ShortTimeouts());
    EXPECT_EQ(Store(WriteFile(10)), "refused 553");
    EXPECT_TRUE(abort->IsSet());
}

TEST_F(FTPTransfer, AMissingFileIsNoEmptyFile)
{
    int dataFailure = 0;
    server.On("STOR", [&dataFailure](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        dataFailure = session.AwaitDataFailure();
        session.Send("426 broken\r\n");
    });
    Open(ShortTimeouts());
    EXPECT_EQ(Store(scratch.Path(QStringLiteral("missing"))), "refused 426");
    EXPECT_TRUE(target->GetProgress().empty());
    server.Stop();
    EXPECT_EQ(dataFailure, 10054); // an end would be that of an empty file
}

TEST_F(FTPTransfer, AFolderOrAPipeIsNoFile)
{
    server.Reply("STOR", "451 gave up\r\n");
    Open(ShortTimeouts());
    EXPECT_EQ(Store(scratch.Path()), "refused 451");
    EXPECT_TRUE(target->GetProgress().empty());
}

TEST_F(FTPTransfer, AServerThatClosesTheDataEarlyStillGetsItsSay)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        session.ResetData();
        session.Send("426 broken\r\n");
    });
    Open();
    EXPECT_EQ(Store(WriteFile(200000)), "refused 426");
    EXPECT_FALSE(target->GetProgress().empty());
}

TEST_F(FTPTransfer, ADataConnectionThatTakesNothingIsGivenUp)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.Stall();
    });
    FTPTimeouts timeouts = ShortTimeouts();
    timeouts.reply = milliseconds(100);
    timeouts.dataStall = milliseconds(200);
    Open(timeouts);
    EXPECT_EQ(Store(WriteFile(40 << 20)), "thrown 10060");
    EXPECT_LT(target->GetProgress().size(), 5000u);
}

TEST_F(FTPTransfer, AStoreThatIsAbortedIsBrokenOff)
{
    const auto abortEvent = abort;
    int dataFailure = 0;
    CEvent seen;
    server.On("STOR", [&, abortEvent](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        abortEvent->Set();
        dataFailure = session.AwaitDataFailure();
        seen.Set();
    });
    Open();
    EXPECT_EQ(Store(WriteFile(40 << 20)), "thrown 995");
    ASSERT_TRUE(seen.Wait(milliseconds(30000)));
    EXPECT_EQ(dataFailure, 10054); // an end would make the part a whole
    server.Stop();
}

TEST_F(FTPTransfer, TheReplyHasToComeInTimeAfterTheLastByte)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.ReadData(); // all is there, but nothing is said
        session.Stall();
    });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.afterData = milliseconds(200);
    Open(timeouts);
    EXPECT_EQ(Store(WriteFile(10)), "thrown 10060");
}

TEST_F(FTPTransfer, AFileMayTakeLongerThanAReply)
{
    server.On("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        // Little by little: in more time than a reply has.
        for (int i = 0; i < 40; ++i) {
            static_cast<void>(session.GetStop().Wait(milliseconds(20)));
            session.TakeSomeData();
        }
        session.ReadData();
        session.Send("226 stored\r\n");
    });
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.reply = milliseconds(200);
    Open(timeouts);
    EXPECT_EQ(Store(WriteFile(20 << 20)), "226");
}

TEST_F(FTPTransfer, ATaskNamesNoAddressButThePeers)
{
    server.On("PASV", [](CServerSession& session, const std::string&) {
        std::string reply = session.ListenForData();
        session.Send(reply.replace(reply.find("127,0,0,1"), 9, "192,0,2,1"));
    });
    Open();
    EXPECT_EQ(Store(WriteFile(10)), "226");
}

TEST_F(FTPTransfer, AnIntermediateReplyIsNoSuccessOfATransfer)
{
    server.Reply("LIST", "350 and now\r\n");
    server.Reply("STOR", "350 and now\r\n");
    Open();
    EXPECT_EQ(List(), "350");
    EXPECT_TRUE(abort->IsSet());
    abort->Reset();
    EXPECT_EQ(Store(WriteFile(10)), "350");
    EXPECT_TRUE(abort->IsSet());
}
