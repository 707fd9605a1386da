#include "ftpengine/FTPDestinations.h"

#include <sys/stat.h>

#include <QFile>

#include "ftpengine/PasswordProtection.h"
#include "support/ScratchFolder.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

const QString Root = QStringLiteral("Corvane/FTPDestinations");
const QString Secret = QStringLiteral("correct horse");

// Stores in folders of the test's own.
struct TestDestinations {
    const CScratchFolder scratch;
    const QString user = scratch.Path(QStringLiteral("user"));
    const QString machine = scratch.Path(QStringLiteral("machine"));
    const std::unique_ptr<CSettingsStore> store = CreateIniSettings(user, machine);
    const CPasswordProtection protection{user, machine};
    CFTPDestinations destinations{*store, protection};

    void Write(Scope scope, const QString& subKey, const char* name, const QString& value) const
    {
        EXPECT_TRUE(store->Write(scope, Root + QLatin1Char('/') + subKey, QString::fromLatin1(name), value));
    }

    std::optional<QString> Read(Scope scope, const QString& subKey, const char* name) const
    {
        return store->Read(scope, Root + QLatin1Char('/') + subKey, QString::fromLatin1(name));
    }

    void SkipProtection() const
    {
        Write(Scope::User, QStringLiteral("Options"), "SkipDPAPI", QStringLiteral("1"));
    }

    CFTPDestination Saved(bool allUsers, const FTPDestinationConnection& record)
    {
        CFTPDestination destination = destinations.Create(allUsers);
        destination.connection = record;
        EXPECT_EQ(destinations.Save(destination), SaveResult::Saved);
        return destination;
    }

    QList<int> EnumeratedKeys() const
    {
        QList<int> keys;
        for (const CFTPDestination& destination : destinations.Enumerate()) {
            keys += destination.key;
        }
        return keys;
    }

    // In any file, in any of the forms in which a text may have been written.
    bool IsInAnyFile(const QString& text) const
    {
        const QByteArray wide(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        for (const QString& name : scratch.ListFiles()) {
            const QByteArray bytes = scratch.Read(name);
            for (const QByteArray& form : {text.toUtf8(), wide, wide.toHex(), wide.toBase64(),
                                           text.toUtf8().toHex(), text.toUtf8().toBase64()}) {
                if (bytes.contains(form)) {
                    return true;
                }
            }
        }
        return false;
    }
};

FTPDestinationConnection FullRecord()
{
    return {.displayName = QStringLiteral("My site"),
            .userName = QStringLiteral("anna"),
            .password = Secret,
            .server = QStringLiteral("ftp.example.org"),
            .directory = QStringLiteral("/www/a b/\u00fc"),
            .port = 2121};
}

void ExpectEqual(const FTPDestinationConnection& found, const FTPDestinationConnection& expected)
{
    EXPECT_EQ(found.displayName, expected.displayName);
    EXPECT_EQ(found.userName, expected.userName);
    EXPECT_EQ(found.password, expected.password);
    EXPECT_EQ(found.server, expected.server);
    EXPECT_EQ(found.directory, expected.directory);
    EXPECT_EQ(found.port, expected.port);
}

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

TEST(FTPDestinations, ThePasswordIsInNoFile)
{
    for (const bool allUsers : {false, true}) {
        TestDestinations test;
        const CFTPDestination saved = test.Saved(allUsers, FullRecord());
        test.destinations.Save(test.destinations.Load(saved.key));
        test.destinations.SetDefault(saved.key);
        EXPECT_FALSE(test.IsInAnyFile(Secret));
        EXPECT_TRUE(test.IsInAnyFile(QStringLiteral("ftp.example.org")));
        test.destinations.Delete(saved.key);
        EXPECT_FALSE(test.IsInAnyFile(Secret));
    }
}

TEST(FTPDestinations, WithSkipDPAPIThePasswordIsPlainText)
{
    for (const bool allUsers : {false, true}) {
        TestDestinations test;
        test.SkipProtection();
        const CFTPDestination saved = test.Saved(allUsers, FullRecord());
        EXPECT_EQ(test.Read(allUsers ? Scope::Machine : Scope::User, saved.keyName, "Password"), Secret);
        EXPECT_EQ(test.destinations.Load(saved.key).connection.password, Secret);
        EXPECT_FALSE(test.scratch.ListFiles().contains(QStringLiteral("user/Corvane.key")));
    }
}

TEST(FTPDestinations, APasswordOfTheOtherKindReadsAsEmpty)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    test.SkipProtection();
    EXPECT_EQ(test.destinations.Load(1).connection.password, QString());
    EXPECT_EQ(test.destinations.Save([&] {
        CFTPDestination changed = test.destinations.Load(1);
        changed.connection.password = Secret;
        return changed;
    }()),
              SaveResult::Saved);
    test.Write(Scope::User, QStringLiteral("Options"), "SkipDPAPI", QStringLiteral("0"));
    EXPECT_EQ(test.destinations.Load(1).connection.password, QString());
}

TEST(FTPDestinations, APasswordThatCannotBeOpenedIsEmptyAndTheRestIsThere)
{
    FTPDestinationConnection expected = FullRecord();
    expected.password.clear();
    const struct {
        const char* what;
        void (*damage)(TestDestinations& test);
    } rows[] = {
        {"the key is lost",
         [](TestDestinations& test) {
             QFile::remove(test.scratch.Path(QStringLiteral("user/Corvane.key")));
         }},
        {"another key",
         [](TestDestinations& test) {
             test.scratch.Write(QStringLiteral("user/Corvane.key"), QByteArray(32, 'k'));
         }},
        {"a damaged key",
         [](TestDestinations& test) {
             test.scratch.Write(QStringLiteral("user/Corvane.key"), QByteArray(5, 'k'));
         }},
        {"a key that others can read",
         [](TestDestinations& test) {
             ::chmod(QFile::encodeName(test.scratch.Path(QStringLiteral("user/Corvane.key"))).constData(),
                     0644);
         }},
        {"damaged bytes",
         [](TestDestinations& test) {
             test.store->WriteAll(Scope::User, Root + QStringLiteral("/1"),
                                  {{QStringLiteral("Password"), QByteArray(60, 'x')}});
         }},
        {"no bytes",
         [](TestDestinations& test) {
             test.store->WriteAll(Scope::User, Root + QStringLiteral("/1"),
                                  {{QStringLiteral("Password"), QByteArray()}});
         }},
        {"text",
         [](TestDestinations& test) {
             test.Write(Scope::User, QStringLiteral("1"), "Password", Secret);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        TestDestinations test;
        test.Saved(false, FullRecord());
        row.damage(test);
        const CFTPDestination loaded = test.destinations.Load(1);
        EXPECT_TRUE(loaded.loaded);
        ExpectEqual(loaded.connection, expected);
        EXPECT_EQ(test.destinations.Enumerate().size(), 1u);
    }
}

TEST(FTPDestinations, SavingWithAnEmptyPasswordKeepsTheOlderOne)
{
    TestDestinations test;
    CFTPDestination edited = test.Saved(false, FullRecord());
    edited.connection.password.clear();
    edited.connection.server = QStringLiteral("new.example.org");
    EXPECT_EQ(test.destinations.Save(edited), SaveResult::Saved);
    const CFTPDestination loaded = test.destinations.Load(edited.key);
    EXPECT_EQ(loaded.connection.server, QStringLiteral("new.example.org"));
    EXPECT_EQ(loaded.connection.password, Secret);
}

TEST(FTPDestinations, WithoutAFitKeyAllButThePasswordIsSaved)
{
    TestDestinations test;
    test.scratch.Write(QStringLiteral("user/Corvane.key"), "damaged");
    CFTPDestination destination = test.destinations.Create(false);
    destination.connection = FullRecord();
    EXPECT_EQ(test.destinations.Save(destination), SaveResult::SavedWithoutPassword);
    EXPECT_EQ(test.destinations.Load(1).connection.server, QStringLiteral("ftp.example.org"));
    EXPECT_EQ(test.destinations.Load(1).connection.password, QString());
    EXPECT_FALSE(test.IsInAnyFile(Secret));
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

TEST(FTPDestinations, WhatIsNoNumberIsNoDestination)
{
    TestDestinations test;
    for (const char* name : {"Options", "abc", "0", "00", "007", "7abc", "99999999999", "1.5", " 3"}) {
        test.Write(Scope::User, QString::fromLatin1(name), "Dispname", QStringLiteral("x"));
    }
    test.Write(Scope::User, QStringLiteral("5"), "Server", QStringLiteral("s"));
    EXPECT_EQ(test.EnumeratedKeys(), QList<int>({5}));
    EXPECT_FALSE(test.destinations.Enumerate().front().loaded);
}

TEST(FTPDestinations, AKeyThatIsNotThereIsNotLoaded)
{
    TestDestinations test;
    test.Saved(false, FullRecord());
    for (const int key :
         {0, -1, 2, 65535, 65536, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const CFTPDestination loaded = test.destinations.Load(key);
        EXPECT_FALSE(loaded.loaded) << key;
        ExpectEqual(loaded.connection, FTPDestinationConnection());
    }
}

TEST(FTPDestinations, WhatIsAbsentStaysAsItIsInANewRecord)
{
    TestDestinations test;
    test.Write(Scope::User, QStringLiteral("1"), "Username", QStringLiteral("anna"));
    const CFTPDestination loaded = test.destinations.Load(1);
    EXPECT_FALSE(loaded.loaded);
    ExpectEqual(loaded.connection, {.displayName = {},
                                    .userName = QStringLiteral("anna"),
                                    .password = {},
                                    .server = {},
                                    .directory = {},
                                    .port = 21});
}

TEST(FTPDestinations, APortThatIsNoneIs21)
{
    const struct {
        const char* stored;
        uint16_t expected;
    } rows[] = {
        {"21", 21}, {"1", 1}, {"65535", 65535}, {"65536", 21}, {"0", 21}, {"-1", 21}, {"", 21}, {"ftp", 21},
    };
    for (const auto& row : rows) {
        TestDestinations test;
        test.Write(Scope::User, QStringLiteral("1"), "Port", QString::fromLatin1(row.stored));
        EXPECT_EQ(test.destinations.Load(1).connection.port, row.expected) << row.stored;
    }
}

TEST(FTPDestinations, ATextIsReadInto260UnitsWithItsTerminator)
{
    TestDestinations test;
    test.SkipProtection();
    for (const qsizetype length : {CFTPDestinations::MaxTextLength, CFTPDestinations::MaxTextLength + 1}) {
        const QString text(length, QLatin1Char('x'));
        for (const char* name : {"Dispname", "Server", "Username", "Directory", "Password"}) {
            test.Write(Scope::User, QStringLiteral("1"), name, text);
        }
        const QString expected = length == 259 ? text : QString();
        const FTPDestinationConnection record = test.destinations.Load(1).connection;
        EXPECT_EQ(record.displayName, expected);
        EXPECT_EQ(record.server, expected);
        EXPECT_EQ(record.userName, expected);
        EXPECT_EQ(record.directory, expected);
        EXPECT_EQ(record.password, expected);
    }
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

TEST(FTPDestinations, AnyTextComesBackAsItWas)
{
    for (const QString& text :
         {QStringLiteral("a/b\\c"), QStringLiteral("100% %41 %zz"),
          QStringLiteral("\u65e5\u672c \u00e4 \U0001f600"), QStringLiteral("line\r\nbreak\ttab"),
          QStringLiteral("[group]"), QStringLiteral("a=b;c#d,e"), QStringLiteral("  blanks  "),
          QStringLiteral("\"quoted\""), QStringLiteral("@Invalid()"), QStringLiteral("@ByteArray(x)"),
          QString(QChar(u'\0')) + QLatin1Char('x')}) {
        TestDestinations test;
        FTPDestinationConnection record{
            .displayName = text, .userName = text, .password = text, .server = text, .directory = text};
        const int key = test.Saved(false, record).key;
        // As a program that starts anew.
        const auto store = CreateIniSettings(test.user, test.machine);
        ExpectEqual(CFTPDestinations(*store, test.protection).Load(key).connection, record);
    }
}

TEST(FTPDestinations, AThousandDestinationsAreFoundAndFilledUp)
{
    constexpr int count = 1000;
    QByteArray file = "[FTPDestinations]\n";
    for (int key = 1; key <= count; ++key) {
        const QByteArray number = QByteArray::number(key);
        file += number + "\\Dispname=Site " + number + "\n" + number + "\\Server=s" + number + "\n";
    }
    TestDestinations test;
    test.scratch.Write(QStringLiteral("user/Corvane.ini"), file);
    EXPECT_EQ(test.destinations.Enumerate().size(), static_cast<size_t>(count));
    EXPECT_EQ(test.destinations.Load(777).connection.server, QStringLiteral("s777"));
    EXPECT_EQ(test.Saved(false, FullRecord()).key, count + 1);
    EXPECT_TRUE(test.destinations.Delete(500));
    EXPECT_EQ(test.Saved(false, FullRecord()).key, 500);
    EXPECT_EQ(test.destinations.Enumerate().size(), static_cast<size_t>(count + 1));
}

TEST(FTPDestinations, AStoreThatCannotBeWrittenStaysAsItIs)
{
    TestDestinations test;
    test.Saved(true, FullRecord());
    test.destinations.SetDefault(0x10000);
    const QString file = QStringLiteral("machine/Corvane.ini");
    ::chmod(QFile::encodeName(test.scratch.Path(file)).constData(), 0444);
    const QByteArray before = test.scratch.Read(file);
    {
        const COrdinaryRights rights(test.scratch);
        CFTPDestination changed = test.destinations.Load(0x10000);
        EXPECT_TRUE(changed.loaded);
        changed.connection.server = QStringLiteral("elsewhere");
        EXPECT_EQ(test.destinations.Save(changed), SaveResult::NotSaved);
        EXPECT_FALSE(test.destinations.Delete(0x10000));
        EXPECT_EQ(test.destinations.Create(true).key, 0x10001);
    }
    EXPECT_EQ(test.scratch.Read(file), before);
    EXPECT_EQ(test.destinations.GetDefault(), 0x10000);
}

TEST(FTPDestinations, ADestinationWithoutAPlaceIsNotSaved)
{
    TestDestinations test;
    CFTPDestination homeless;
    homeless.connection = FullRecord();
    EXPECT_EQ(test.destinations.Save(homeless), SaveResult::NotSaved);
    EXPECT_EQ(test.scratch.ListFiles(), QStringList());
}

TEST(FTPDestinations, GarbageInsteadOfAStoreIsAnEmptyStore)
{
    for (const QByteArray& bytes :
         {QByteArray("\0\xff\x01garbage", 10), QByteArray("[FTPDestinations\n1\\Server"),
          QByteArray("====\n[]\n"), QByteArray(10'000, '[')}) {
        TestDestinations test;
        test.scratch.Write(QStringLiteral("user/Corvane.ini"), bytes);
        EXPECT_EQ(test.EnumeratedKeys(), QList<int>());
        EXPECT_EQ(test.Saved(false, FullRecord()).key, 1);
        ExpectEqual(test.destinations.Load(1).connection, FullRecord());
    }
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
