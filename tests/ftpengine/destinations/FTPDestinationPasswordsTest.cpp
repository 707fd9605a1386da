#include <sys/stat.h>

#include <QFile>

#include "destinations/TestDestinations.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

} // namespace

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
    expected.password = {};
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
    edited.connection.password = {};
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
