#include "ftpengine/secrets/PasswordProtection.h"

#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "support/ScratchFolder.h"

namespace {

using Scope = CSettingsStore::Scope;

constexpr Scope BothScopes[] = {Scope::User, Scope::Machine};

// A home and a machine of the test's own.
struct TestKeys {
    const CScratchFolder scratch;
    const CPasswordProtection protection{scratch.Path(QStringLiteral("user")),
                                         scratch.Path(QStringLiteral("machine"))};

    QByteArray KeyName(Scope scope) const { return QFile::encodeName(protection.GetKeyPath(scope)); }

    mode_t KeyMode(Scope scope) const
    {
        struct stat status;
        EXPECT_EQ(::stat(KeyName(scope).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QByteArray KeyBytes(Scope scope) const
    {
        QFile file(protection.GetKeyPath(scope));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

} // namespace

TEST(PasswordProtection, GivesBackWhatItProtected)
{
    const TestKeys test;
    for (const Scope scope : BothScopes) {
        for (const QByteArray& clear :
             {QByteArray(), QByteArray("secret"), QByteArray("\0\xff\n", 3), QByteArray(100'000, 'x')}) {
            const auto opaque = test.protection.Protect(scope, clear);
            ASSERT_TRUE(opaque.has_value());
            EXPECT_EQ(test.protection.Unprotect(scope, *opaque), clear);
        }
    }
}

TEST(PasswordProtection, TheSamePasswordNeverLooksTheSame)
{
    const TestKeys test;
    const auto first = test.protection.Protect(Scope::User, "secret");
    EXPECT_NE(first, test.protection.Protect(Scope::User, "secret"));
    EXPECT_FALSE(first->contains("secret"));
}

TEST(PasswordProtection, TheUsersKeyIsForTheUserAloneAndTheMachinesForAll)
{
    const TestKeys test;
    const mode_t formerMask = ::umask(0077);
    for (const Scope scope : BothScopes) {
        EXPECT_TRUE(test.protection.Protect(scope, "secret").has_value());
    }
    ::umask(formerMask);
    EXPECT_EQ(test.KeyMode(Scope::User), 0600u);
    EXPECT_EQ(test.KeyMode(Scope::Machine), 0644u);
    EXPECT_NE(test.KeyBytes(Scope::User), test.KeyBytes(Scope::Machine));
    EXPECT_EQ(test.KeyBytes(Scope::User).size(), 32);
    EXPECT_EQ(test.scratch.ListFiles(),
              QStringList({QStringLiteral("machine/Corvane.key"), QStringLiteral("user/Corvane.key")}));
}

TEST(PasswordProtection, WhatIsProtectedForOneIsClosedToTheOther)
{
    const TestKeys test;
    const TestKeys elsewhere;
    for (const Scope scope : BothScopes) {
        const Scope other = scope == Scope::User ? Scope::Machine : Scope::User;
        const auto opaque = test.protection.Protect(scope, "secret");
        EXPECT_TRUE(test.protection.Protect(other, "x").has_value());
        EXPECT_TRUE(elsewhere.protection.Protect(scope, "x").has_value());
        EXPECT_EQ(test.protection.Unprotect(other, *opaque), std::nullopt);
        EXPECT_EQ(elsewhere.protection.Unprotect(scope, *opaque), std::nullopt);
    }
}

TEST(PasswordProtection, OpeningNeverMakesAKey)
{
    const TestKeys test;
    EXPECT_EQ(test.protection.Unprotect(Scope::User, QByteArray(100, 'x')), std::nullopt);
    EXPECT_EQ(test.scratch.ListFiles(), QStringList());
}

TEST(PasswordProtection, DamagedBytesAreRefused)
{
    const TestKeys test;
    const QByteArray opaque = test.protection.Protect(Scope::User, "secret").value();
    for (qsizetype size = 0; size < opaque.size(); ++size) {
        EXPECT_EQ(test.protection.Unprotect(Scope::User, opaque.left(size)), std::nullopt) << size;
    }
    for (qsizetype position = 0; position < opaque.size(); ++position) {
        QByteArray changed = opaque;
        changed[position] = static_cast<char>(changed[position] ^ 1);
        EXPECT_EQ(test.protection.Unprotect(Scope::User, changed), std::nullopt) << position;
    }
    EXPECT_EQ(test.protection.Unprotect(Scope::User, opaque + 'x'), std::nullopt);
}

TEST(PasswordProtection, AnUnfitKeyFileIsNeitherUsedNorReplaced)
{
    const struct {
        const char* what;
        Scope scope;
        QByteArray bytes;
        mode_t mode;
    } rows[] = {
        {"empty", Scope::User, QByteArray(), 0600},
        {"too short", Scope::User, QByteArray(31, 'k'), 0600},
        {"too long", Scope::User, QByteArray(33, 'k'), 0600},
        {"too short for the machine", Scope::Machine, QByteArray(31, 'k'), 0644},
        {"readable by the group", Scope::User, QByteArray(32, 'k'), 0640},
        {"readable by others", Scope::User, QByteArray(32, 'k'), 0604},
        {"writable by others", Scope::User, QByteArray(32, 'k'), 0602},
        {"the machine's writable by the group", Scope::Machine, QByteArray(32, 'k'), 0664},
        {"the machine's writable by others", Scope::Machine, QByteArray(32, 'k'), 0646},
    };
    for (const auto& row : rows) {
        const TestKeys test;
        const QByteArray opaque = test.protection.Protect(row.scope, "secret").value();
        QFile file(test.protection.GetKeyPath(row.scope));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.bytes);
        file.close();
        EXPECT_EQ(::chmod(test.KeyName(row.scope).constData(), row.mode), 0);

        EXPECT_EQ(test.protection.Unprotect(row.scope, opaque), std::nullopt) << row.what;
        EXPECT_EQ(test.protection.Protect(row.scope, "secret"), std::nullopt) << row.what;
        EXPECT_EQ(test.KeyBytes(row.scope), row.bytes) << row.what;
        EXPECT_EQ(test.KeyMode(row.scope), row.mode) << row.what;
    }
}

TEST(PasswordProtection, AWrongModePutRightOpensAgain)
{
    const TestKeys test;
    const QByteArray opaque = test.protection.Protect(Scope::User, "secret").value();
    ::chmod(test.KeyName(Scope::User).constData(), 0666);
    EXPECT_EQ(test.protection.Unprotect(Scope::User, opaque), std::nullopt);
    ::chmod(test.KeyName(Scope::User).constData(), 0600);
    EXPECT_EQ(test.protection.Unprotect(Scope::User, opaque), QByteArray("secret"));
}

TEST(PasswordProtection, AKeyFileOfSomebodyElseIsNotUsed)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "Only an administrator can give a file away.";
    }
    const TestKeys test;
    for (const Scope scope : BothScopes) {
        const QByteArray opaque = test.protection.Protect(scope, "secret").value();
        constexpr uid_t nobody = 65534;
        EXPECT_EQ(::chown(test.KeyName(scope).constData(), nobody, static_cast<gid_t>(-1)), 0);
        EXPECT_EQ(test.protection.Unprotect(scope, opaque), std::nullopt);
        EXPECT_EQ(test.protection.Protect(scope, "secret"), std::nullopt);
    }
}

TEST(PasswordProtection, WhatIsNoPlainFileIsNoKey)
{
    const struct {
        const char* what;
        int (*make)(const char* name);
    } rows[] = {
        {"a folder",
         [](const char* name) {
             return ::mkdir(name, 0700);
         }},
        {"a pipe",
         [](const char* name) {
             return ::mkfifo(name, 0600);
         }},
        {"a link to nothing",
         [](const char* name) {
             return ::symlink("/nonexistent/key", name);
         }},
        {"a link to bytes without end",
         [](const char* name) {
             return ::symlink("/dev/zero", name);
         }},
    };
    for (const auto& row : rows) {
        const TestKeys test;
        QDir().mkpath(test.scratch.Path(QStringLiteral("user")));
        ASSERT_EQ(row.make(test.KeyName(Scope::User).constData()), 0);
        EXPECT_EQ(test.protection.Protect(Scope::User, "secret"), std::nullopt) << row.what;
        EXPECT_EQ(test.protection.Unprotect(Scope::User, QByteArray(100, 'x')), std::nullopt) << row.what;
    }
}

TEST(PasswordProtection, WithoutAPlaceForAKeyNothingIsProtected)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("file"), "x");
    const CPasswordProtection protection(scratch.Path(QStringLiteral("file/user")),
                                         scratch.Path(QStringLiteral("machine")));
    EXPECT_EQ(protection.Protect(Scope::User, "secret"), std::nullopt);
    {
        const COrdinaryRights rights(scratch);
        EXPECT_EQ(protection.Protect(Scope::Machine, "secret"), std::nullopt);
    }
    EXPECT_EQ(scratch.ListFiles(), QStringList(QStringLiteral("file")));
}

TEST(PasswordProtection, ThreadsThatMakeTheFirstKeyAgreeOnOne)
{
    const TestKeys test;
    std::vector<QByteArray> opaque(8);
    std::vector<std::thread> threads;
    for (QByteArray& one : opaque) {
        threads.emplace_back([&] {
            // As another program would, with an object of its own.
            const CPasswordProtection protection(test.scratch.Path(QStringLiteral("user")),
                                                 test.scratch.Path(QStringLiteral("machine")));
            one = protection.Protect(Scope::User, "secret").value_or(QByteArray());
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const QByteArray& one : opaque) {
        EXPECT_EQ(test.protection.Unprotect(Scope::User, one), QByteArray("secret"));
    }
    EXPECT_EQ(test.scratch.ListFiles(), QStringList(QStringLiteral("user/Corvane.key")));
}
