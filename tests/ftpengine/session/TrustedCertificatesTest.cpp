#include "ftpengine/session/TrustedCertificates.h"

#include "support/ScratchFolder.h"

namespace {

using Doubt = ServerIdentity::Doubt;

ServerIdentity MakeIdentity(const QString& server, uint16_t port, char fingerprint, Doubt doubt = Doubt::None)
{
    ServerIdentity identity;
    identity.server = server;
    identity.port = port;
    identity.fingerprint = QByteArray(32, fingerprint);
    identity.doubt = doubt;
    return identity;
}

class TrustedCertificates : public testing::Test {
protected:
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("new/folder"));
    const CTrustedCertificates trusted{folder};
};

} // namespace

TEST_F(TrustedCertificates, KnowWhatWasTakenForEachServerAndPort)
{
    const QString server = QStringLiteral("Example.org");
    EXPECT_EQ(trusted.Find(server, 21), std::nullopt);
    trusted.Remember(MakeIdentity(server, 21, 'a'));
    trusted.Remember(MakeIdentity(server, 990, 'b'));
    trusted.Remember(MakeIdentity(QStringLiteral("fe80::1"), 21, 'c'));
    EXPECT_EQ(trusted.Find(QStringLiteral("example.ORG"), 21), QByteArray(32, 'a'));
    EXPECT_EQ(trusted.Find(server, 990), QByteArray(32, 'b'));
    EXPECT_EQ(trusted.Find(QStringLiteral("fe80::1"), 21), QByteArray(32, 'c'));
    EXPECT_EQ(trusted.Find(QStringLiteral("other.org"), 21), std::nullopt);
    trusted.Remember(MakeIdentity(server, 21, 'd'));
    EXPECT_EQ(trusted.Find(server, 21), QByteArray(32, 'd'));
    EXPECT_EQ(trusted.Find(server, 990), QByteArray(32, 'b'));
    EXPECT_EQ(scratch.Read(QStringLiteral("new/folder/certificates")),
              "[fe80::1]:21 sha256:" + QByteArray(32, 'c').toHex() +
                  "\nexample.org:21 sha256:" + QByteArray(32, 'd').toHex() +
                  "\nexample.org:990 sha256:" + QByteArray(32, 'b').toHex() + "\n");
}

TEST_F(TrustedCertificates, ADamagedFileIsReadAsFarAsItGoes)
{
    scratch.Write(QStringLiteral("new/folder/certificates"),
                  "nonsense\na:21 sha256:0123\nb:21 md5:" + QByteArray(32, 'b').toHex() +
                      "\n\n c:21\nd:21 sha256:" + QByteArray(32, 'd').toHex());
    EXPECT_EQ(trusted.Find(QStringLiteral("a"), 21), std::nullopt);
    EXPECT_EQ(trusted.Find(QStringLiteral("b"), 21), std::nullopt);
    EXPECT_EQ(trusted.Find(QStringLiteral("d"), 21), QByteArray(32, 'd'));
}

TEST_F(TrustedCertificates, WithoutAFolderNobodyIsKnown)
{
    EXPECT_EQ(CTrustedCertificates(QString()).Find(QStringLiteral("a"), 21), std::nullopt);
}

TEST_F(TrustedCertificates, WhatRemainsToBeDoubted)
{
    const QString server = QStringLiteral("a");
    trusted.Remember(MakeIdentity(server, 21, 'k'));
    FTPDestinationConnection any;
    FTPDestinationConnection pinned;
    pinned.fingerprint = QByteArray(32, 'p');
    const struct {
        const char* name;
        ServerIdentity identity;
        const FTPDestinationConnection& destination;
        Doubt expected;
    } rows[] = {
        {"proven", MakeIdentity(server, 990, 'x'), any, Doubt::None},
        {"unknown", MakeIdentity(server, 990, 'x', Doubt::UnknownAuthority), any, Doubt::UnknownAuthority},
        {"other name", MakeIdentity(server, 990, 'x', Doubt::OtherName), any, Doubt::OtherName},
        {"taken", MakeIdentity(server, 21, 'k', Doubt::Expired), any, Doubt::None},
        {"changed", MakeIdentity(server, 21, 'x', Doubt::UnknownAuthority), any, Doubt::Changed},
        {"changed to a proven one", MakeIdentity(server, 21, 'x'), any, Doubt::None},
        {"wanted", MakeIdentity(server, 990, 'p', Doubt::UnknownAuthority), pinned, Doubt::None},
        {"not wanted though proven", MakeIdentity(server, 990, 'x'), pinned, Doubt::Changed},
        {"not wanted though taken", MakeIdentity(server, 21, 'k', Doubt::Expired), pinned, Doubt::Changed},
        {"nothing shown", ServerIdentity(), any, Doubt::UnknownAuthority},
        {"nothing shown where one is wanted", ServerIdentity(), pinned, Doubt::UnknownAuthority},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RemainingDoubt(row.identity, row.destination, trusted), row.expected) << row.name;
    }
}
