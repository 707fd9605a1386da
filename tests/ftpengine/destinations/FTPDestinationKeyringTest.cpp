#include <map>
#include <sys/stat.h>

#include <QFile>

#include "destinations/TestDestinations.h"
#include "ftpengine/destinations/Keyring.h"

namespace {

using Scope = CSettingsStore::Scope;
using SaveResult = CFTPDestinations::SaveResult;

class CMemoryKeyring final : public CKeyring {
public:
    bool Store(const Item& item) override
    {
        if (isThere) {
            secrets[item.name] = item.secret;
            label = item.label;
        }
        return isThere;
    }
    std::optional<CSecretText> Find(const QString& name) override
    {
        const auto found = secrets.find(name);
        return isThere && found != secrets.end() ? std::optional(found->second) : std::nullopt;
    }
    bool Remove(const QString& name) override { return isThere && secrets.erase(name) == 1; }

    bool isThere = true;
    std::map<QString, CSecretText> secrets;
    QString label;
};

// The stored destinations with a keyring of the test's own.
struct TestKeyring {
    TestDestinations test;
    CMemoryKeyring keyring;
    CFTPDestinations destinations{*test.store, test.protection, &keyring};

    CFTPDestination Saved(const FTPDestinationConnection& record, bool allUsers = false)
    {
        CFTPDestination destination = destinations.Create(allUsers);
        destination.connection = record;
        EXPECT_EQ(destinations.Save(destination), SaveResult::Saved);
        return destination;
    }
    bool HasBytes(int key) const
    {
        const Scope scope = key < 0x10000 ? Scope::User : Scope::Machine;
        return test.store
            ->ReadBytes(scope, Root + QLatin1Char('/') + QString::number(key), QStringLiteral("Password"))
            .has_value();
    }
    QString PasswordOf(int key) const { return destinations.Load(key).connection.password.GetText(); }
};

} // namespace

TEST(FTPDestinations, APasswordOfTheUserGoesIntoTheKeyring)
{
    TestKeyring own;
    own.Saved(FullRecord());
    ASSERT_EQ(own.keyring.secrets.size(), 1u);
    EXPECT_EQ(own.keyring.secrets.begin()->second, Secret);
    EXPECT_EQ(own.keyring.label, QStringLiteral("anna@ftp.example.org"));
    EXPECT_FALSE(own.HasBytes(1));
    EXPECT_FALSE(own.test.IsInAnyFile(Secret));
    ExpectEqual(own.destinations.Load(1).connection, FullRecord());
}

TEST(FTPDestinations, APasswordOfAllUsersOrInClearGoesIntoNoKeyring)
{
    TestKeyring own;
    own.Saved(FullRecord(), true);
    own.test.SkipProtection();
    own.Saved(FullRecord());
    EXPECT_TRUE(own.keyring.secrets.empty());
    EXPECT_TRUE(own.HasBytes(0x10000));
    EXPECT_EQ(own.PasswordOf(1), Secret);
}

TEST(FTPDestinations, WithoutAKeyringTheStoreHasThePassword)
{
    TestKeyring own;
    own.keyring.isThere = false;
    own.Saved(FullRecord());
    EXPECT_TRUE(own.HasBytes(1));
    EXPECT_EQ(own.PasswordOf(1), Secret);
    // It goes on working, and moves when it is typed again.
    own.keyring.isThere = true;
    EXPECT_EQ(own.PasswordOf(1), Secret);
    CFTPDestination edited = own.destinations.Load(1);
    edited.connection.password = QStringLiteral("new");
    EXPECT_EQ(own.destinations.Save(edited), SaveResult::Saved);
    EXPECT_FALSE(own.HasBytes(1));
    EXPECT_EQ(own.keyring.secrets.size(), 1u);
    EXPECT_EQ(own.PasswordOf(1), QStringLiteral("new"));
    // And back, when the keyring is gone.
    own.keyring.isThere = false;
    EXPECT_EQ(own.PasswordOf(1), QString());
    edited.connection.password = QStringLiteral("newer");
    EXPECT_EQ(own.destinations.Save(edited), SaveResult::Saved);
    EXPECT_EQ(own.PasswordOf(1), QStringLiteral("newer"));
    own.keyring.isThere = true;
    EXPECT_EQ(own.PasswordOf(1), QStringLiteral("newer"));
}

TEST(FTPDestinations, SavingWithAnEmptyPasswordKeepsTheOneInTheKeyring)
{
    TestKeyring own;
    CFTPDestination edited = own.Saved(FullRecord());
    edited.connection.password = {};
    edited.connection.server = QStringLiteral("new.example.org");
    EXPECT_EQ(own.destinations.Save(edited), SaveResult::Saved);
    EXPECT_EQ(own.PasswordOf(1), Secret);
    EXPECT_EQ(own.keyring.secrets.size(), 1u);
}

TEST(FTPDestinations, ANewPasswordTakesThePlaceOfTheOneInTheKeyring)
{
    TestKeyring own;
    CFTPDestination edited = own.Saved(FullRecord());
    edited.connection.password = QStringLiteral("new");
    EXPECT_EQ(own.destinations.Save(edited), SaveResult::Saved);
    ASSERT_EQ(own.keyring.secrets.size(), 1u);
    EXPECT_EQ(own.keyring.secrets.begin()->second, QStringLiteral("new"));
}

TEST(FTPDestinations, ADeletedDestinationLeavesNothingInTheKeyring)
{
    TestKeyring own;
    own.Saved(FullRecord());
    EXPECT_TRUE(own.destinations.Delete(1));
    EXPECT_TRUE(own.keyring.secrets.empty());
    // What stays in a keyring that was locked then is found by no later destination.
    own.Saved(FullRecord());
    own.keyring.isThere = false;
    EXPECT_TRUE(own.destinations.Delete(1));
    own.keyring.isThere = true;
    FTPDestinationConnection other = FullRecord();
    other.password = {};
    own.Saved(other);
    EXPECT_EQ(own.PasswordOf(1), QString());
}

TEST(FTPDestinations, WhatCannotBeWrittenLeavesTheKeyringAsItWas)
{
    TestKeyring own;
    CFTPDestination edited = own.Saved(FullRecord());
    const auto before = own.keyring.secrets;
    const QString file = own.test.scratch.Path(QStringLiteral("user/Corvane.ini"));
    ::chmod(QFile::encodeName(file).constData(), 0444);
    {
        const COrdinaryRights rights(own.test.scratch);
        edited.connection.password = QStringLiteral("new");
        EXPECT_EQ(own.destinations.Save(edited), SaveResult::NotSaved);
        EXPECT_FALSE(own.destinations.Delete(1));
    }
    EXPECT_EQ(own.keyring.secrets, before);
    EXPECT_EQ(own.PasswordOf(1), Secret);
}
