#include "ftpengine/session/SftpSession.h"

#include <QBuffer>

#include "ftpengine/messages/EngineStatus.h"
#include "support/MemorySftpServer.h"

// The session over a server in memory: what it asks for, what it makes of the answers, and of odd ones.

namespace {

QByteArray Pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

class SftpSession : public testing::Test {
protected:
    CMemorySftpServer server;
    SessionLog log;
    CMemorySftpStream* stream = nullptr; // of the session that was opened last
    std::optional<std::size_t> answersToCut;

    std::unique_ptr<CSftpSession> Open(const char* directory = "")
    {
        auto made = std::make_unique<CMemorySftpStream>(server);
        made->answersToCut = answersToCut;
        stream = made.get();
        return std::make_unique<CSftpSession>(std::move(made), QString::fromUtf8(directory), log);
    }

    // The number or the reply's text; empty if nothing was thrown.
    template <class Action>
    QString Thrown(const Action& action)
    {
        try {
            action();
        } catch (int number) {
            return QString::number(number);
        } catch (const FTPReply& reply) {
            return reply.text;
        }
        return {};
    }

    void Send(CRemoteSession& session, const char* path, const QByteArray& bytes)
    {
        QBuffer source;
        source.setData(bytes);
        source.open(QIODevice::ReadOnly);
        session.Send(source, QString::fromUtf8(path), {});
    }

    void Refuse(SftpType type, SftpStatus status)
    {
        server.refuse = [type, status](SftpType asked, const std::string&) {
            return asked == type ? std::optional(status) : std::nullopt;
        };
    }

    std::string Stored(const std::string& path) const
    {
        const auto found = server.nodes.find(path);
        return found == server.nodes.end() ? "absent" : found->second.bytes;
    }
};

} // namespace

TEST_F(SftpSession, ADirectoryIsSeenFromTheLoginsFolder)
{
    for (const char* path : {"/home/a", "/home/a/b", "/srv"}) {
        server.nodes[path].isDirectory = true;
    }
    server.nodes["/home/file"].bytes = "x";
    const struct {
        const char* directory;
        const char* file; // where a file named "f" is looked for
        const char* thrown;
    } rows[] = {
        {"", "/home/f", ""},
        {"a", "/home/a/f", ""},
        {"a/b", "/home/a/b/f", ""},
        {"/srv", "/srv/f", ""},
        {"~", "/home/f", ""},
        {"~/a", "/home/a/f", ""},
        {"~a", "", "550 ~a: No such file\r\n"},
        {"absent", "", "550 absent: No such file\r\n"},
        {"file", "", "550 file: this is no directory.\r\n"},
        {"a\nb", "", "123"},
    };
    for (const auto& row : rows) {
        const QString thrown = Thrown([&] {
            server.requests.clear();
            const auto session = Open(row.directory);
            session->GetSize(QStringLiteral("f"));
            EXPECT_EQ(server.requests.back(), std::string("STAT ") + row.file) << row.directory;
            session->GetSize(QStringLiteral("/absolute/f"));
            EXPECT_EQ(server.requests.back(), "STAT /absolute/f");
        });
        EXPECT_EQ(thrown, QString::fromLatin1(row.thrown)) << row.directory;
    }
}

TEST_F(SftpSession, AFileIsStoredWholeInManyBlocksAtOnce)
{
    const auto session = Open();
    for (const qsizetype size : {0, 1, 32767, 32768, 32769, 3'000'000}) {
        const QByteArray bytes = Pattern(size);
        QBuffer source;
        source.setData("before" + bytes);
        source.open(QIODevice::ReadOnly);
        source.seek(6);
        int64_t progress = 0;
        session->Send(source, QStringLiteral("f"), [&progress](int64_t count) {
            EXPECT_GT(count, 0);
            progress += count;
        });
        EXPECT_TRUE(Stored("/home/f") == bytes.toStdString()) << size;
        EXPECT_EQ(progress, size);
        EXPECT_EQ(server.requests.back(), "CLOSE /home/f");
    }
    EXPECT_EQ(server.nodes["/home/f"].permissions, 0644u);
    // A shorter one leaves nothing of the longer one before.
    Send(*session, "f", "short");
    EXPECT_EQ(Stored("/home/f"), "short");
}

TEST_F(SftpSession, ARefusedBlockEndsTheFileAndClosesIt)
{
    const auto session = Open();
    const struct {
        SftpType refused;
        SftpStatus status;
        uint64_t freeBlocks;
        const char* thrown;
    } rows[] = {
        {SftpType::Open, {3, "Permission denied"}, 1000, "550 f: Permission denied\r\n"},
        {SftpType::Write, {4, "Failure"}, 1000, "550 f: Failure\r\n"},
        {SftpType::Write, {4, "Failure"}, 0, "552 f: the server's disk is full.\r\n"},
        {SftpType::Write, {4, "Disk quota exceeded"}, 1000, "552 f: Disk quota exceeded\r\n"},
        {SftpType::Close, {4, "Failure"}, 1000, "550 f: Failure\r\n"},
        {SftpType::Close, {4, "Failure"}, 3, "552 f: the server's disk is full.\r\n"},
        {SftpType::Write, {7, ""}, 1000, "10054"},
    };
    for (const auto& row : rows) {
        server.freeBlocks = row.freeBlocks;
        Refuse(row.refused, row.status);
        EXPECT_EQ(Thrown([&] { Send(*session, "f", Pattern(3'000'000)); }), QString::fromUtf8(row.thrown));
        server.refuse = nullptr;
    }
    // The session goes on after a refusal; without the extension no disk is asked for.
    Send(*session, "f", "good");
    EXPECT_EQ(Stored("/home/f"), "good");
    server.extensions.clear();
    server.freeBlocks = 0;
    const auto plain = Open();
    Refuse(SftpType::Write, {4, "Failure"});
    EXPECT_EQ(Thrown([&] { Send(*plain, "f", "x"); }), QStringLiteral("550 f: Failure\r\n"));
}

TEST_F(SftpSession, AfterARefusalNoMoreThanWhatWasUnderWayIsSent)
{
    const auto session = Open();
    Refuse(SftpType::Write, {4, "Failure"});
    server.requests.clear();
    EXPECT_EQ(Thrown([&] { Send(*session, "f", Pattern(10'000'000)); }),
              QStringLiteral("550 f: Failure\r\n"));
    EXPECT_LE(std::count(server.requests.begin(), server.requests.end(), "WRITE /home/f"), 65);
    EXPECT_EQ(std::count(server.requests.begin(), server.requests.end(), "CLOSE /home/f"), 1);
}

TEST_F(SftpSession, AFileOfAnotherSizeThanWasSentIsARefusal)
{
    const auto session = Open();
    server.shownSize = 3;
    EXPECT_EQ(Thrown([&] { Send(*session, "f", "12345"); }),
              QStringLiteral("451 f: the server holds 3 of 5 bytes.\r\n"));
    server.shownSize.reset();
    Refuse(SftpType::FStat, {8, "Operation unsupported"}); // a server that doesn't tell is believed
    EXPECT_EQ(Thrown([&] { Send(*session, "f", "12345"); }), QString());
}

TEST_F(SftpSession, ASourceThatCannotBeReadIsAFailure)
{
    const auto session = Open();
    QBuffer closed;
    EXPECT_EQ(Thrown([&] { session->Send(closed, QStringLiteral("f"), {}); }), QStringLiteral("10107"));
    Send(*session, "f", "good");
    EXPECT_EQ(Stored("/home/f"), "good");
}

TEST_F(SftpSession, AListingTellsSizesTimesAndWhereLinksLead)
{
    server.nodes["/home/file"].bytes = "12345";
    server.nodes["/home/file"].modified = 1'600'000'000;
    server.nodes["/home/folder"].isDirectory = true;
    server.nodes["/home/folder/inner"].bytes = "x";
    server.nodes["/home/toFolder"].target = "/home/folder";
    server.nodes["/home/toFile"].target = "/home/file";
    server.nodes["/home/toNothing"].target = "/gone";
    server.nodes["/home/\xc3\xbc x"].bytes = "1";
    const auto session = Open();
    QStringList found;
    for (const RemoteEntry& entry : session->List({})) {
        found += entry.name + (entry.isDirectory ? QStringLiteral("/ ") : QStringLiteral(" ")) +
                 (entry.size ? QString::number(*entry.size) : QStringLiteral("-")) + QLatin1Char(' ') +
                 QString::number(entry.modified.value_or(0));
    }
    EXPECT_EQ(
        found,
        QStringList({QStringLiteral("file 5 1600000000"), QStringLiteral("folder/ - 1700000000"),
                     QStringLiteral("toFile 5 1600000000"), QStringLiteral("toFolder/ - 1700000000"),
                     QStringLiteral("toNothing - 1700000000"), QStringLiteral("\u00fc x 1 1700000000")}));
    EXPECT_EQ(session->List(QStringLiteral("folder")).size(), 1u);
    EXPECT_EQ(Thrown([&] { session->List(QStringLiteral("gone")); }),
              QStringLiteral("550 gone: No such file\r\n"));
}

TEST_F(SftpSession, AListingOfAnyLengthComesWhole)
{
    for (const std::size_t count : {0u, 1u, 98u, 99u, 2000u}) {
        CMemorySftpServer other;
        for (std::size_t i = 0; i < count; ++i) {
            other.nodes["/home/" + std::to_string(i)].bytes = "x";
        }
        CSftpSession session(std::make_unique<CMemorySftpStream>(other), {}, log);
        EXPECT_EQ(session.List({}).size(), count);
        EXPECT_EQ(other.requests.back(), "CLOSE /home");
    }
}

TEST_F(SftpSession, AListingInTheServersWordsHasALineForEachEntry)
{
    server.nodes["/home/a b"].bytes = "x";
    server.nodes["/home/folder"].isDirectory = true;
    const auto session = Open();
    const QStringList lines = session->ListInWords({}).split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith(QLatin1Char('-'))) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[0].endsWith(QStringLiteral("a b"))) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[1].endsWith(QStringLiteral("folder"))) << qPrintable(lines[1]);
    EXPECT_EQ(lines[2], QString());
    EXPECT_EQ(Thrown([&] { session->ListInWords(QStringLiteral("gone")); }),
              QStringLiteral("550 gone: No such file\r\n"));
}

TEST_F(SftpSession, AListingThatIsRefusedInTheMiddleIsARefusal)
{
    const auto session = Open();
    Refuse(SftpType::ReadDir, {3, "Permission denied"});
    EXPECT_EQ(Thrown([&] { session->List({}); }), QStringLiteral("550 : Permission denied\r\n"));
    server.refuse = nullptr;
    EXPECT_EQ(session->List({}).size(), 0u);
}

TEST_F(SftpSession, NamesThatLeadElsewhereAreNotListed)
{
    server.nodes["/home/good"].bytes = "x";
    server.listedBesides = {"", "../up", "a/b", "/etc/passwd"};
    EXPECT_EQ(Open()->List({}).size(), 1u);
}

TEST_F(SftpSession, ADirectoryThatIsThereNeedNotBeMade)
{
    const auto session = Open();
    session->MakeDirectory(QStringLiteral("d"));
    EXPECT_TRUE(server.nodes["/home/d"].isDirectory);
    EXPECT_EQ(server.nodes["/home/d"].permissions, 0755u);
    session->MakeDirectory(QStringLiteral("d"));
    server.nodes["/home/f"].bytes = "x";
    EXPECT_EQ(Thrown([&] { session->MakeDirectory(QStringLiteral("f")); }),
              QStringLiteral("550 f: Failure\r\n"));
    EXPECT_EQ(Thrown([&] { session->MakeDirectory(QStringLiteral("gone/d")); }),
              QStringLiteral("550 gone/d: No such file\r\n"));
}

TEST_F(SftpSession, ARenameReplacesWhatBearsTheName)
{
    for (const bool inOneStep : {true, false}) {
        if (!inOneStep) {
            server.extensions.clear();
        }
        const auto session = Open();
        Send(*session, "old", "1");
        session->Rename(QStringLiteral("old"), QStringLiteral("new"));
        EXPECT_EQ(Stored("/home/new"), "1");
        Send(*session, "old", "2");
        server.requests.clear();
        session->Rename(QStringLiteral("old"), QStringLiteral("new"));
        EXPECT_EQ(Stored("/home/new"), "2");
        EXPECT_EQ(Stored("/home/old"), "absent");
        const auto removes = std::count(server.requests.begin(), server.requests.end(), "REMOVE /home/new");
        EXPECT_EQ(removes, inOneStep ? 0 : 1);
        // Nothing is lost when there is nothing to rename.
        EXPECT_NE(Thrown([&] { session->Rename(QStringLiteral("old"), QStringLiteral("new")); }), QString());
        EXPECT_EQ(Stored("/home/new"), "2");
    }
}

TEST_F(SftpSession, RemovesFilesAndEmptyDirectories)
{
    server.nodes["/home/d"].isDirectory = true;
    server.nodes["/home/d/f"].bytes = "x";
    const auto session = Open();
    EXPECT_EQ(Thrown([&] { session->RemoveDirectory(QStringLiteral("d")); }),
              QStringLiteral("550 d: Failure\r\n"));
    session->RemoveFile(QStringLiteral("d/f"));
    EXPECT_EQ(Thrown([&] { session->RemoveFile(QStringLiteral("d/f")); }),
              QStringLiteral("550 d/f: No such file\r\n"));
    session->RemoveDirectory(QStringLiteral("d"));
    EXPECT_EQ(server.nodes.count("/home/d"), 0u);
}

TEST_F(SftpSession, AFileIsReadWholeWhateverPiecesTheServerGives)
{
    const auto session = Open();
    for (const std::size_t readAtOnce : {SIZE_MAX, std::size_t{1000}}) {
        server.readAtOnce = readAtOnce;
        for (const qsizetype size : {0, 1, 999, 1000, 32768, 40000, 262144, 300000}) {
            const QByteArray bytes = Pattern(size);
            server.nodes["/home/f"].bytes = bytes.toStdString();
            EXPECT_TRUE(session->Read(QStringLiteral("f"), 300000) == bytes) << size;
        }
    }
    EXPECT_EQ(server.requests.back(), "CLOSE /home/f");
    EXPECT_FALSE(session->Read(QStringLiteral("gone"), 100).has_value());
    EXPECT_EQ(Thrown([&] { session->Read(QStringLiteral("f"), 299999); }),
              QString::number(EngineStatus::MessageTooLong));
    Refuse(SftpType::Read, {3, "Permission denied"});
    EXPECT_EQ(Thrown([&] { session->Read(QStringLiteral("f"), 300000); }),
              QStringLiteral("550 f: Permission denied\r\n"));
    EXPECT_EQ(server.requests.back(), "CLOSE /home/f");
}

TEST_F(SftpSession, ASizeIsThatOfAFile)
{
    server.nodes["/home/f"].bytes = "123";
    server.nodes["/home/d"].isDirectory = true;
    const auto session = Open();
    EXPECT_EQ(session->GetSize(QStringLiteral("f")), 3);
    EXPECT_EQ(session->GetSize(QStringLiteral("d")), std::nullopt);
    EXPECT_EQ(session->GetSize(QStringLiteral("gone")), std::nullopt);
    Refuse(SftpType::Stat, {3, "Permission denied"});
    EXPECT_EQ(Thrown([&] { session->GetSize(QStringLiteral("f")); }),
              QStringLiteral("550 f: Permission denied\r\n"));
}

TEST_F(SftpSession, ANameWithALineBreakIsRefusedBeforeItIsSent)
{
    const auto session = Open();
    server.requests.clear();
    const QString nul = QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b");
    for (const QString& name : {QStringLiteral("a\nb"), QStringLiteral("a\rb"), nul}) {
        EXPECT_EQ(Thrown([&] { session->List(name); }), QStringLiteral("123"));
        EXPECT_EQ(Thrown([&] { session->MakeDirectory(name); }), QStringLiteral("123"));
        EXPECT_EQ(Thrown([&] { session->Rename(name, QStringLiteral("x")); }), QStringLiteral("123"));
        EXPECT_EQ(Thrown([&] { session->Rename(QStringLiteral("x"), name); }), QStringLiteral("123"));
        EXPECT_EQ(Thrown([&] { session->RemoveFile(name); }), QStringLiteral("123"));
    }
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(SftpSession, TheTranscriptTellsCommandsAndRefusals)
{
    const auto session = Open();
    session->MakeDirectory(QStringLiteral("d"));
    Thrown([&] { session->RemoveFile(QStringLiteral("gone")); });
    EXPECT_EQ(log.transcript, (std::vector<QString>{QStringLiteral("REALPATH ."), QStringLiteral("MKDIR d"),
                                                    QStringLiteral("REMOVE gone"),
                                                    QStringLiteral("550 gone: No such file")}));
}

TEST_F(SftpSession, AfterTheGoodbyeTheStreamIsClosed)
{
    const auto session = Open();
    session->KeepAlive();
    EXPECT_EQ(server.requests.back(), "REALPATH /home");
    session->Quit();
    EXPECT_TRUE(stream->isClosed);
    EXPECT_EQ(Thrown([&] { session->KeepAlive(); }), QString::number(EngineStatus::ConnectionReset));
}

// Whatever was under way: a break at each answer is a failure of the network, never something else.
TEST_F(SftpSession, ABreakAtAnyAnswerIsAFailureOfTheNetwork)
{
    const auto doAll = [this] {
        server = CMemorySftpServer();
        const auto session = Open();
        session->MakeDirectory(QStringLiteral("d"));
        session->List({});
        Send(*session, "d/f", Pattern(300'000));
        session->Rename(QStringLiteral("d/f"), QStringLiteral("d/g"));
        session->Read(QStringLiteral("d/g"), 1'000'000);
        session->RemoveFile(QStringLiteral("d/g"));
        session->RemoveDirectory(QStringLiteral("d"));
        session->KeepAlive();
    };
    EXPECT_EQ(Thrown(doAll), QString());
    const std::size_t all = server.answers;
    EXPECT_GT(all, 40u);
    for (std::size_t cut = 0; cut <= all; ++cut) {
        answersToCut = cut;
        EXPECT_EQ(Thrown(doAll), QString::number(EngineStatus::ConnectionReset)) << cut;
    }
}
