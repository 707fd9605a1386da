#include <limits>
#include <sys/stat.h>

#include <QFile>

#include "destinations/TestDestinations.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

} // namespace

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

// Odd on purpose: whoever has put them there sees them, though no key leads to those of the other scope.
TEST(FTPDestinations, EveryNumberButZeroIsADestinationOfItsScope)
{
    TestDestinations test;
    test.Write(Scope::User, QStringLiteral("70000"), "Dispname", QStringLiteral("user"));
    test.Write(Scope::User, QStringLiteral("0"), "Dispname", QStringLiteral("zero"));
    test.Write(Scope::Machine, QStringLiteral("5"), "Dispname", QStringLiteral("machine"));
    const auto destinations = test.destinations.Enumerate();
    ASSERT_EQ(destinations.size(), 2u);
    EXPECT_EQ(destinations[0].connection.displayName, QStringLiteral("user"));
    EXPECT_FALSE(destinations[0].allUsers);
    EXPECT_EQ(destinations[1].connection.displayName, QStringLiteral("machine"));
    EXPECT_TRUE(destinations[1].allUsers);
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
        EXPECT_EQ(test.destinations.Load(1).loaded, length == 259);
        EXPECT_EQ(record.server, expected);
        EXPECT_EQ(record.userName, expected);
        EXPECT_EQ(record.directory, expected);
        EXPECT_EQ(record.password, expected);
    }
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
    EXPECT_EQ(test.destinations.GetDefault(), 0x10000); // whose file could not be written either
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
