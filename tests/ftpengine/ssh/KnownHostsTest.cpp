#include "ftpengine/ssh/KnownHosts.h"

#include <sys/stat.h>

#include <QCryptographicHash>
#include <QFile>
#include <QMessageAuthenticationCode>

#include "support/ScratchFolder.h"

namespace {

using Doubt = ServerIdentity::Doubt;

// As much of a key as matters here: its kind, and something behind it.
QByteArray Blob(const QByteArray& kind, const QByteArray& rest)
{
    return QByteArray(3, '\0') + static_cast<char>(kind.size()) + kind + rest;
}

QByteArray Line(const QByteArray& hosts, const QByteArray& rest)
{
    return hosts + " ssh-ed25519 " + Blob("ssh-ed25519", rest).toBase64();
}

QByteArray Hashed(const QByteArray& name)
{
    const QByteArray salt(20, 's');
    return "|1|" + salt.toBase64() + '|' +
           QMessageAuthenticationCode::hash(name, salt, QCryptographicHash::Sha1).toBase64();
}

// What stands behind the kinds of the keys that are found; "!" before a revoked one.
QByteArray Found(const QByteArray& file, const char* server, uint16_t port)
{
    QByteArrayList found;
    for (const KnownHostKey& key : FindKnownHostKeys(file, QString::fromUtf8(server), port)) {
        found += (key.isRevoked ? "!" : "") + key.blob.mid(4 + key.blob[3]);
    }
    return found.join(' ');
}

ServerIdentity Identity(const char* server, uint16_t port, const QByteArray& blob)
{
    ServerIdentity identity;
    identity.server = QString::fromUtf8(server);
    identity.port = port;
    identity.hostKey = blob;
    return identity;
}

} // namespace

TEST(KnownHosts, AServerIsFoundByNamePatternOrHash)
{
    const struct {
        QByteArray line;
        const char* server;
        uint16_t port;
        bool isFound;
    } rows[] = {
        {Line("example.org", "k"), "example.org", 22, true},
        {Line("example.org", "k"), "EXAMPLE.org", 22, true},
        {Line("Example.ORG", "k"), "example.org", 22, true},
        {Line("example.org", "k"), "example.org", 2222, false},
        {Line("example.org", "k"), "www.example.org", 22, false},
        {Line("example.org", "k"), "example.or", 22, false},
        {Line("[example.org]:2222", "k"), "example.org", 2222, true},
        {Line("[example.org]:2222", "k"), "example.org", 22, false},
        {Line("a,example.org,b", "k"), "example.org", 22, true},
        {Line("*.example.org", "k"), "www.example.org", 22, true},
        {Line("*.example.org", "k"), "example.org", 22, false},
        {Line("*", "k"), "example.org", 22, true},
        {Line("ex*mp*.o?g", "k"), "example.org", 22, true},
        {Line("ex*mp*.o?g", "k"), "example.oorg", 22, false},
        {Line("*.example.org,!www.example.org", "k"), "www.example.org", 22, false},
        {Line("!www.example.org,*.example.org", "k"), "ftp.example.org", 22, true},
        {Line("!www.example.org", "k"), "ftp.example.org", 22, false},
        {Line("192.0.2.1", "k"), "192.0.2.1", 22, true},
        {Line("::1", "k"), "::1", 22, true},
        {Line("[::1]:2222", "k"), "::1", 2222, true},
        {Line(Hashed("example.org"), "k"), "example.org", 22, true},
        {Line(Hashed("example.org"), "k"), "Example.org", 22, true},
        {Line(Hashed("example.org"), "k"), "example.com", 22, false},
        {Line(Hashed("[example.org]:2222"), "k"), "example.org", 2222, true},
        {Line("|1|", "k"), "example.org", 22, false},
        {Line("|2|a|b", "k"), "example.org", 22, false},
        {"# " + Line("example.org", "k"), "example.org", 22, false},
        {"@cert-authority " + Line("example.org", "k"), "example.org", 22, false},
        {"\t example.org\tssh-ed25519  " + Blob("ssh-ed25519", "k").toBase64() + " a comment\r",
         "example.org", 22, true},
        {"example.org ssh-rsa " + Blob("ssh-ed25519", "k").toBase64(), "example.org", 22, false},
        {"example.org ssh-ed25519", "example.org", 22, false},
        {"example.org ssh-ed25519 !!!!", "example.org", 22, false},
        {"example.org", "example.org", 22, false},
        {"@revoked", "example.org", 22, false},
        {"", "example.org", 22, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Found(row.line, row.server, row.port), row.isFound ? "k" : "")
            << row.line.constData() << " for " << row.server << ':' << row.port;
    }
}

TEST(KnownHosts, AllKeysOfAServerAreFound)
{
    const QByteArray file = "# keys\n\n" + Line("a", "1") + '\n' + Line("b", "2") + "\r\n" + "@revoked " +
                            Line("a,b", "3") + '\n' + Line("*", "4");
    EXPECT_EQ(Found(file, "a", 22), "1 !3 4");
    EXPECT_EQ(Found(file, "b", 22), "2 !3 4");
    EXPECT_EQ(Found(file, "c", 22), "4");
}

TEST(KnownHosts, AKeyIsKnownChangedOrUnknown)
{
    const QByteArray key = Blob("ssh-ed25519", "key");
    const KnownHostKey same{.blob = key};
    const KnownHostKey other{.blob = Blob("ssh-ed25519", "other")};
    const KnownHostKey otherKind{.blob = Blob("ssh-rsa", "other")};
    const KnownHostKey revoked{.blob = key, .isRevoked = true};
    const KnownHostKey otherRevoked{.blob = other.blob, .isRevoked = true};
    const struct {
        std::vector<KnownHostKey> known;
        Doubt doubt;
    } rows[] = {
        {{}, Doubt::UnknownAuthority},       {{same}, Doubt::None},
        {{other}, Doubt::Changed},           {{otherKind}, Doubt::Changed},
        {{other, same}, Doubt::None},        {{revoked}, Doubt::Changed},
        {{same, revoked}, Doubt::Changed},   {{otherRevoked}, Doubt::UnknownAuthority},
        {{otherRevoked, same}, Doubt::None},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(JudgeHostKey(row.known, key), row.doubt) << (&row - rows);
    }
}

TEST(KnownHosts, TheKindStandsAtTheHeadOfTheKey)
{
    const struct {
        QByteArray blob;
        QByteArray kind;
    } rows[] = {
        {Blob("ssh-ed25519", "x"), "ssh-ed25519"},
        {Blob("ssh-ed25519", ""), "ssh-ed25519"},
        {QByteArray("\0\0\0\x05ssh-", 8), ""},
        {QByteArray("\xff\xff\xff\xffx", 5), ""},
        {QByteArray("\0\0\0\0", 4), ""},
        {QByteArray("\0\0", 2), ""},
        {"", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(KindOfHostKey(row.blob), row.kind) << row.blob.toHex().constData();
    }
}

TEST(KnownHosts, WhatIsRememberedTakesThePlaceOfWhatWas)
{
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("trust/ssh"));
    const QByteArray first = Blob("ssh-ed25519", "1");
    const QByteArray second = Blob("ssh-rsa", "2");
    ASSERT_TRUE(RememberHostKey(folder, Identity("example.org", 22, first)));
    ASSERT_TRUE(RememberHostKey(folder, Identity("example.org", 2222, first)));
    ASSERT_TRUE(RememberHostKey(folder, Identity("other.org", 22, first)));
    ASSERT_TRUE(RememberHostKey(folder, Identity("Example.org", 22, second)));
    EXPECT_EQ(scratch.Read(QStringLiteral("trust/ssh/known_hosts")),
              "[example.org]:2222 ssh-ed25519 " + first.toBase64() + "\nother.org ssh-ed25519 " +
                  first.toBase64() + "\nexample.org ssh-rsa " + second.toBase64() + '\n');
    const auto known = FindKnownHostKeys(folder, QStringLiteral("example.org"), 22);
    EXPECT_EQ(JudgeHostKey(known, second), Doubt::None);
    EXPECT_EQ(JudgeHostKey(known, first), Doubt::Changed);
    struct stat status;
    ASSERT_EQ(::stat(QFile::encodeName(folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST(KnownHosts, NothingIsRememberedWithoutAFolderOrAKey)
{
    const CScratchFolder scratch;
    EXPECT_FALSE(RememberHostKey({}, Identity("example.org", 22, Blob("ssh-ed25519", "1"))));
    EXPECT_FALSE(RememberHostKey(scratch.Path(QStringLiteral("trust")), Identity("example.org", 22, {})));
    scratch.Write(QStringLiteral("file"), "x");
    EXPECT_FALSE(RememberHostKey(scratch.Path(QStringLiteral("file/trust")),
                                 Identity("example.org", 22, Blob("ssh-ed25519", "1"))));
}
