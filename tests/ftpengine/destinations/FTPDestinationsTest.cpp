#include "destinations/TestDestinations.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

} // namespace

TEST(FTPDestinations, ARecordComesBackAsItWasSaved)
{
    for (const bool allUsers : {false, true}) {
        TestDestinations test;
        const CFTPDestination saved = test.Saved(allUsers, FullRecord());
        const CFTPDestination loaded = test.destinations.Load(saved.key);
        ExpectEqual(loaded.connection, FullRecord());
        EXPECT_TRUE(loaded.loaded);
        EXPECT_EQ(loaded.allUsers, allUsers);
        EXPECT_EQ(loaded.key, saved.key);
        EXPECT_EQ(loaded.keyName, QString::number(saved.key));
        EXPECT_EQ(loaded.parentKeyPath, Root);
    }
}

TEST(FTPDestinations, EveryFieldIsAValueUnderTheKey)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    const QString key = QStringLiteral("1");
    EXPECT_EQ(test.Read(Scope::User, key, "Dispname"), QStringLiteral("My site"));
    EXPECT_EQ(test.Read(Scope::User, key, "Server"), QStringLiteral("ftp.example.org"));
    EXPECT_EQ(test.Read(Scope::User, key, "Port"), QStringLiteral("2121"));
    EXPECT_EQ(test.Read(Scope::User, key, "Username"), QStringLiteral("anna"));
    EXPECT_EQ(test.Read(Scope::User, key, "Directory"), QStringLiteral("/www/a b/\u00fc"));
    EXPECT_EQ(test.Read(Scope::User, key, "Password"), std::nullopt); // bytes, no text
    EXPECT_TRUE(test.store->ReadBytes(Scope::User, Root + QStringLiteral("/1"), QStringLiteral("Password"))
                    .has_value());
}

TEST(FTPDestinations, ANewOneTakesTheLowestFreeKeyOfItsScope)
{
    const struct {
        QList<int> taken;
        bool allUsers;
        int expected;
    } rows[] = {
        {{}, false, 1},
        {{}, true, 0x10000},
        {{1}, false, 2},
        {{1, 2, 4}, false, 3},
        {{2}, false, 1},
        {{1, 2, 4}, true, 0x10000},
        {{0x10000, 0x10001, 0x10003}, true, 0x10002},
        {{0x10000}, false, 1},
    };
    for (const auto& row : rows) {
        TestDestinations test;
        for (const int key : row.taken) {
            test.Write(key < 0x10000 ? Scope::User : Scope::Machine, QString::number(key), "Dispname",
                       QStringLiteral("x"));
        }
        const CFTPDestination created = test.destinations.Create(row.allUsers);
        EXPECT_EQ(created.key, row.expected);
        EXPECT_EQ(created.allUsers, row.allUsers);
        EXPECT_FALSE(created.loaded);
        EXPECT_EQ(created.connection.port, 21);
        EXPECT_EQ(test.EnumeratedKeys().size(), row.taken.size()); // it comes to exist when it is saved
    }
}

TEST(FTPDestinations, TheNumberTellsTheScope)
{
    TestDestinations test;
    for (const int key : {65535, 65536, 65537}) {
        test.Write(Scope::User, QString::number(key), "Dispname", QStringLiteral("user"));
        test.Write(Scope::Machine, QString::number(key), "Dispname", QStringLiteral("machine"));
    }
    EXPECT_EQ(test.destinations.Load(65535).connection.displayName, QStringLiteral("user"));
    EXPECT_EQ(test.destinations.Load(65536).connection.displayName, QStringLiteral("machine"));
    EXPECT_EQ(test.destinations.Load(65537).connection.displayName, QStringLiteral("machine"));

    test.destinations.Delete(65535);
    test.destinations.Delete(65536);
    EXPECT_EQ(test.store->ListSubKeys(Scope::User, Root),
              QStringList({QStringLiteral("65536"), QStringLiteral("65537")}));
    EXPECT_EQ(test.store->ListSubKeys(Scope::Machine, Root),
              QStringList({QStringLiteral("65535"), QStringLiteral("65537")}));
}

TEST(FTPDestinations, TheUsersComeBeforeThoseOfAllUsers)
{
    TestDestinations test;
    for (const int key : {0x10001, 0x10000}) {
        test.Write(Scope::Machine, QString::number(key), "Dispname", QStringLiteral("m"));
    }
    for (const int key : {2, 10, 1}) {
        test.Write(Scope::User, QString::number(key), "Dispname", QStringLiteral("u"));
    }
    EXPECT_EQ(test.EnumeratedKeys(), QList<int>({1, 10, 2, 0x10000, 0x10001}));
    EXPECT_TRUE(test.destinations.Enumerate().back().allUsers);
    EXPECT_FALSE(test.destinations.Enumerate().front().allUsers);
}

TEST(FTPDestinations, TheDefaultIsOneNumberOfTheUser)
{
    TestDestinations test;
    EXPECT_EQ(test.destinations.GetDefault(), 0);
    EXPECT_TRUE(test.destinations.SetDefault(0x10000));
    EXPECT_EQ(test.destinations.GetDefault(), 0x10000);
    EXPECT_EQ(test.store->Read(Scope::Machine, Root, QString()), std::nullopt);
    test.store->Write(Scope::User, Root, QString(), QStringLiteral("none"));
    EXPECT_EQ(test.destinations.GetDefault(), 0);
}

TEST(FTPDestinations, DeletingTheDefaultClearsIt)
{
    for (const bool allUsers : {false, true}) {
        TestDestinations test;
        const int first = test.Saved(allUsers, FullRecord()).key;
        const int second = test.Saved(allUsers, FullRecord()).key;
        test.destinations.SetDefault(first);
        EXPECT_TRUE(test.destinations.Delete(second));
        EXPECT_EQ(test.destinations.GetDefault(), first);
        EXPECT_TRUE(test.destinations.Delete(first));
        EXPECT_EQ(test.destinations.GetDefault(), 0);
        EXPECT_EQ(test.store->Read(Scope::User, Root, QString()), std::nullopt);
        EXPECT_EQ(test.EnumeratedKeys(), QList<int>());
    }
}

// For instance because another program has written what this one doesn't touch.
TEST(FTPDestinations, OneThatCannotBeRemovedIsTheDefaultNoMore)
{
    TestDestinations test;
    const int key = test.Saved(true, FullRecord()).key;
    test.destinations.SetDefault(key);
    QFile file(test.store->Locate(Scope::Machine, Root));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("strange=@Variant(\\0\\0\\0\\x1)\n");
    file.close();
    EXPECT_FALSE(test.destinations.Delete(key));
    EXPECT_EQ(test.destinations.GetDefault(), 0);
}

TEST(FTPDestinations, DeletingTheDefaultLeavesTheOthersAndTheOptions)
{
    TestDestinations test;
    test.SkipProtection();
    test.Saved(false, FullRecord());
    test.Saved(false, FullRecord());
    test.destinations.SetDefault(1);
    EXPECT_TRUE(test.destinations.Delete(1));
    EXPECT_EQ(test.EnumeratedKeys(), QList<int>({2}));
    EXPECT_EQ(test.Read(Scope::User, QStringLiteral("Options"), "SkipDPAPI"), QStringLiteral("1"));
}

TEST(FTPDestinations, TheURLNamesServerAndDirectory)
{
    const struct {
        const char* server;
        const char* directory;
        uint16_t port;
        const char* expected;
    } rows[] = {
        {"ftp.example.org", "", 21, "ftp://ftp.example.org/"},
        {"ftp.example.org", "www/photos", 21, "ftp://ftp.example.org/www/photos"},
        {"ftp.example.org", "/www", 21, "ftp://ftp.example.org//www"},
        {"", "", 21, "ftp:///"},
        // With another port the text ends at the ":".
        {"ftp.example.org", "www", 2121, "ftp://ftp.example.org:"},
        {"ftp.example.org", "www", 0, "ftp://ftp.example.org:"},
    };
    for (const auto& row : rows) {
        const FTPDestinationConnection record{.displayName = QStringLiteral("name"),
                                              .userName = QStringLiteral("anna"),
                                              .password = Secret,
                                              .server = QString::fromLatin1(row.server),
                                              .directory = QString::fromLatin1(row.directory),
                                              .port = row.port};
        EXPECT_EQ(GetURL(record), QString::fromLatin1(row.expected));
    }
}

TEST(FTPDestinations, KeepProtocolAndKeyFileAndChangeThem)
{
    TestDestinations test;
    for (const ServerProtocol protocol : {ServerProtocol::FtpTls, ServerProtocol::FtpImplicitTls,
                                          ServerProtocol::Sftp, ServerProtocol::Ftp}) {
        FTPDestinationConnection record = FullRecord();
        record.protocol = protocol;
        record.identityFile = QStringLiteral("/home/anna/key");
        CFTPDestination saved = test.Saved(false, record);
        const FTPDestinationConnection loaded = test.destinations.Load(saved.key).connection;
        EXPECT_EQ(loaded.protocol, protocol);
        EXPECT_EQ(loaded.identityFile, record.identityFile);
        saved.connection.protocol = ServerProtocol::Ftp;
        saved.connection.identityFile.clear();
        test.destinations.Save(saved);
        const FTPDestinationConnection changed = test.destinations.Load(saved.key).connection;
        EXPECT_EQ(changed.protocol, ServerProtocol::Ftp);
        EXPECT_EQ(changed.identityFile, QString());
    }
}

TEST(FTPDestinations, OfAnEarlierVersionAreFTPInClearAndStayAsTheyAre)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    const QString key = QStringLiteral("1");
    EXPECT_EQ(test.Read(Scope::User, key, "Protocol"), std::nullopt);
    EXPECT_EQ(test.Read(Scope::User, key, "IdentityFile"), std::nullopt);
    EXPECT_EQ(test.destinations.Load(1).connection.protocol, ServerProtocol::Ftp);
}

TEST(FTPDestinations, AProtocolOfALaterVersionSendsNoPasswordInClear)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    test.Write(Scope::User, QStringLiteral("1"), "Protocol", QStringLiteral("gopher"));
    EXPECT_EQ(test.destinations.Load(1).connection.protocol, ServerProtocol::FtpTls);
}

TEST(FTPDestinations, WithoutAPortHaveThatOfTheirProtocol)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    test.Write(Scope::User, QStringLiteral("1"), "Port", QString());
    EXPECT_EQ(test.destinations.Load(1).connection.port, 21);
    test.Write(Scope::User, QStringLiteral("1"), "Protocol", QStringLiteral("sftp"));
    EXPECT_EQ(test.destinations.Load(1).connection.port, 22);
}

TEST(FTPDestinations, AreShownWithTheirScheme)
{
    const struct {
        ServerProtocol protocol;
        uint16_t port;
        const char* url;
    } rows[] = {{ServerProtocol::Ftp, 21, "ftp://a/web"},
                {ServerProtocol::Ftp, 2121, "ftp://a:"}, // odd on purpose
                {ServerProtocol::FtpTls, 21, "ftpes://a/web"},
                {ServerProtocol::FtpTls, 2121, "ftpes://a:2121/web"},
                {ServerProtocol::FtpImplicitTls, 990, "ftps://a/web"},
                {ServerProtocol::Sftp, 22, "sftp://a/web"},
                {ServerProtocol::Sftp, 21, "sftp://a:21/web"}};
    for (const auto& row : rows) {
        FTPDestinationConnection record;
        record.server = QStringLiteral("a");
        record.directory = QStringLiteral("web");
        record.protocol = row.protocol;
        record.port = row.port;
        EXPECT_EQ(GetURL(record), QLatin1String(row.url));
    }
}
