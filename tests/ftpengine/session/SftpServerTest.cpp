#include <sys/mount.h>
#include <sys/stat.h>
#include <thread>

#include <QBuffer>
#include <QDir>
#include <QFile>

#include "ResourceGuard.h"
#include "ftpengine/messages/EngineStatus.h"
#include "session/SftpServerFixture.h"
#include "support/CuttingProxy.h"

// What a session does with a real server, and without it when the connection breaks.

namespace {

QByteArray Pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

// Gives zeros for as long as anybody wants some, and tells when it is asked so often.
class CEndlessSource final : public QIODevice {
public:
    explicit CEndlessSource(CEvent& reached) : reached(reached) { open(QIODevice::ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* bytes, qint64 size) override
    {
        std::fill_n(bytes, size, '\0');
        given += size;
        if (given > 8 << 20) {
            reached.Set();
        }
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    CEvent& reached;
    qint64 given = 0;
};

// A disk of a megabyte in a folder that it makes, for as long as it lives.
class CSmallDisk {
public:
    explicit CSmallDisk(const QString& folder) : path(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        isThere = ::mount("none", path.constData(), "tmpfs", 0, "size=1m,mode=0777") == 0;
    }
    ~CSmallDisk()
    {
        if (isThere) {
            ::umount2(path.constData(), MNT_DETACH);
        }
    }
    CSmallDisk(const CSmallDisk&) = delete;
    CSmallDisk& operator=(const CSmallDisk&) = delete;

    bool IsThere() const { return isThere; }

private:
    const QByteArray path;
    bool isThere = false;
};

class SftpServer : public CSftpServerFixture {
protected:
    using CSftpServerFixture::CSftpServerFixture;

    static void Send(CRemoteSession& session, const QString& path, const QByteArray& bytes)
    {
        QBuffer source;
        source.setData(bytes);
        source.open(QIODevice::ReadOnly);
        session.Send(source, path, {});
    }

    QByteArray OnDisk(const QString& path) const
    {
        QFile file(server.GetRoot() + path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return file.readAll();
    }

    unsigned ModeOnDisk(const QString& path) const
    {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(server.GetRoot() + path).constData(), &status), 0);
        return status.st_mode & 07777;
    }
};

// Agrees on keys anew after each megabyte, while blocks are under way.
class SftpServerRekeying : public SftpServer {
protected:
    SftpServerRekeying() : SftpServer(QStringLiteral("RekeyLimit 1M\n")) {}
};

} // namespace

TEST_F(SftpServer, DoesWhatASessionAsksFor)
{
    const CResourceGuard guard;
    Prepare();
    const auto session = Open();
    session->MakeDirectory(QStringLiteral("www"));
    session->MakeDirectory(QStringLiteral("www"));
    session->MakeDirectory(QStringLiteral("www/\u00fc b"));
    for (const qsizetype size : {0, 1, 32768, 5'000'000}) {
        const QByteArray bytes = Pattern(size);
        Send(*session, QStringLiteral("www/file"), bytes);
        EXPECT_TRUE(OnDisk(QStringLiteral("www/file")) == bytes) << size;
        EXPECT_EQ(session->GetSize(QStringLiteral("www/file")), size);
        EXPECT_TRUE(session->Read(QStringLiteral("www/file"), 5'000'000) == bytes);
    }
    EXPECT_EQ(ModeOnDisk(QStringLiteral("www")), 0755u);
    EXPECT_EQ(ModeOnDisk(QStringLiteral("www/file")), 0644u);
    Send(*session, QStringLiteral("www/other"), "new");
    session->Rename(QStringLiteral("www/other"), QStringLiteral("www/file"));
    EXPECT_EQ(OnDisk(QStringLiteral("www/file")), "new");
    const std::vector<RemoteEntry> entries = session->List(QStringLiteral("www"));
    ASSERT_EQ(entries.size(), 2u);
    for (const RemoteEntry& entry : entries) {
        EXPECT_EQ(entry.isDirectory, entry.name == QStringLiteral("\u00fc b"));
        EXPECT_EQ(entry.size.has_value(), !entry.isDirectory);
        EXPECT_GT(entry.modified.value_or(0), 1'700'000'000);
    }
    EXPECT_FALSE(session->Read(QStringLiteral("www/gone"), 100).has_value());
    EXPECT_EQ(Thrown([&] { session->RemoveDirectory(QStringLiteral("www")); }),
              QStringLiteral("550 www: Failure\r\n"));
    session->RemoveFile(QStringLiteral("www/file"));
    session->RemoveDirectory(QStringLiteral("www/\u00fc b"));
    session->RemoveDirectory(QStringLiteral("www"));
    session->KeepAlive();
    EXPECT_EQ(session->List({}).size(), 0u);
    session->Quit();
}

TEST_F(SftpServerRekeying, LosesNoByte)
{
    Prepare();
    const auto session = Open();
    const QByteArray bytes = Pattern(20'000'000);
    Send(*session, QStringLiteral("f"), bytes);
    EXPECT_TRUE(OnDisk(QStringLiteral("f")) == bytes);
    EXPECT_TRUE(session->Read(QStringLiteral("f"), bytes.size()) == bytes);
}

TEST_F(SftpServer, OpensTheDestinationsDirectory)
{
    Prepare();
    QDir(server.GetRoot()).mkpath(QStringLiteral("a/b"));
    server.GiveToUser(server.GetRoot() + QStringLiteral("a/b"));
    const QString absolute = server.GetRoot() + QStringLiteral("a/b");
    for (const QString& directory : {QStringLiteral("a/b"), QStringLiteral("~/a/b"), absolute}) {
        setting.destination.directory = directory;
        Send(*Open(), QStringLiteral("f"), directory.toUtf8());
        EXPECT_EQ(OnDisk(QStringLiteral("a/b/f")), directory.toUtf8());
    }
    setting.destination.directory = QStringLiteral("a/gone");
    EXPECT_EQ(LoginResult(), QStringLiteral("550 a/gone: No such file\r\n"));
}

TEST_F(SftpServer, WhatIsNotAllowedIsARefusal)
{
    Prepare();
    QDir(server.GetRoot()).mkpath(QStringLiteral("closed"));
    const QString closed = server.GetRoot() + QStringLiteral("closed");
    server.GiveToUser(closed);
    ::chmod(QFile::encodeName(closed).constData(), 0500);
    const auto session = Open();
    const QString refused = QStringLiteral("550 closed/f: Permission denied\r\n");
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("closed/f"), "x"); }), refused);
    EXPECT_EQ(Thrown([&] { session->MakeDirectory(QStringLiteral("closed/f")); }), refused);
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("gone/f"), "x"); }),
              QStringLiteral("550 gone/f: No such file\r\n"));
    Send(*session, QStringLiteral("f"), "goes on");
    EXPECT_EQ(OnDisk(QStringLiteral("f")), "goes on");
    ::chmod(QFile::encodeName(closed).constData(), 0700);
}

TEST_F(SftpServer, AFullDiskIsNamed)
{
    Prepare();
    const CSmallDisk disk(server.GetRoot() + QStringLiteral("full"));
    if (!disk.IsThere()) {
        GTEST_SKIP() << "Only the administrator can make a small disk; SftpSession has the case in memory.";
    }
    const auto session = Open();
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("full/f"), Pattern(5'000'000)); }),
              QStringLiteral("552 full/f: the server's disk is full.\r\n"));
    session->RemoveFile(QStringLiteral("full/f"));
    Send(*session, QStringLiteral("full/f"), "fits");
    EXPECT_EQ(OnDisk(QStringLiteral("full/f")), "fits");
}

TEST_F(SftpServer, StoresManyFilesAndListsManyMore)
{
    Prepare();
    const auto session = Open();
    for (int i = 0; i < 300; ++i) {
        Send(*session, QStringLiteral("%1.html").arg(i), QByteArray::number(i));
    }
    EXPECT_EQ(session->List({}).size(), 300u);
    EXPECT_EQ(OnDisk(QStringLiteral("299.html")), "299");
    QDir(server.GetRoot()).mkpath(QStringLiteral("many"));
    for (int i = 0; i < 2000; ++i) {
        QFile file(server.GetRoot() + QStringLiteral("many/%1").arg(i));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(session->List(QStringLiteral("many")).size(), 2000u);
}

TEST_F(SftpServer, ACancelEndsATransferAtOnce)
{
    const CResourceGuard guard;
    Prepare();
    CEvent reached;
    CEndlessSource source(reached);
    std::thread cancelling([&] {
        reached.Wait(std::chrono::seconds(60));
        setting.abortEvent->Set();
    });
    EXPECT_EQ(Thrown([&] { Open()->Send(source, QStringLiteral("f"), {}); }),
              QString::number(EngineStatus::Aborted));
    cancelling.join();
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::Aborted));
}

TEST_F(SftpServer, ASilentConnectionEndsEveryOperation)
{
    const CResourceGuard guard;
    Prepare();
    CCuttingProxy proxy(server.GetPort());
    setting.destination.port = proxy.GetPort();
    setting.destination.fingerprint = GetFingerprint();
    setting.timeouts.reply = std::chrono::milliseconds(500);
    const auto session = Open();
    proxy.isSilent = true;
    EXPECT_EQ(Thrown([&] { session->KeepAlive(); }), QString::number(EngineStatus::TimedOut));
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::TimedOut));
}

// Cut after any number of the server's bytes, in the handshake, the login or whatever follows.
TEST_F(SftpServer, ABrokenConnectionIsAFailureOfTheNetworkWhereverItBreaks)
{
    const CResourceGuard guard;
    Prepare();
    CCuttingProxy proxy(server.GetPort());
    setting.destination.port = proxy.GetPort();
    setting.destination.fingerprint = GetFingerprint();
    const auto doAll = [&] {
        const auto session = Open();
        session->MakeDirectory(QStringLiteral("d"));
        Send(*session, QStringLiteral("d/f"), Pattern(200'000));
        session->List(QStringLiteral("d"));
        session->Rename(QStringLiteral("d/f"), QStringLiteral("d/g"));
        session->Read(QStringLiteral("d/g"), 300'000);
        session->RemoveFile(QStringLiteral("d/g"));
    };
    EXPECT_EQ(Thrown(doAll), QString());
    const int64_t all = proxy.bytesCarried;
    EXPECT_GT(all, 200'000);
    constexpr int cuts = 60;
    for (int cut = 0; cut < cuts; ++cut) {
        // Close together at the start, where every byte is another step.
        proxy.bytesToCut =
            cut < cuts / 2 ? 1 + cut * 150 : 5000 + (all - 5000) * (cut - cuts / 2) / (cuts / 2);
        EXPECT_EQ(Thrown(doAll), QString::number(EngineStatus::ConnectionReset)) << proxy.bytesToCut;
    }
    proxy.bytesToCut = INT64_MAX;
    EXPECT_EQ(Thrown(doAll), QString());
}

TEST_F(SftpServer, AServerOfSomethingElseIsNoServerOfSftp)
{
    CScriptedServer ftp;
    ftp.Start();
    setting.destination.port = ftp.GetPort();
    setting.timeouts.reply = std::chrono::milliseconds(500);
    const QString result = LoginResult();
    EXPECT_TRUE(result == QString::number(EngineStatus::TimedOut) ||
                result == QString::number(EngineStatus::TlsFailed) ||
                result == QString::number(EngineStatus::ConnectionReset))
        << qPrintable(result);
    ftp.Stop();
}
