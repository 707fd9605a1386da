#pragma once

#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/secrets/PasswordProtection.h"
#include "support/ScratchFolder.h"

// For the tests of the stored destinations.

inline const QString Root = QStringLiteral("Corvane/FTPDestinations");
inline const QString Secret = QStringLiteral("correct horse");

// The stored destinations, over stores in folders of the test's own.
struct TestDestinations {
    const CScratchFolder scratch;
    const QString user = scratch.Path(QStringLiteral("user"));
    const QString machine = scratch.Path(QStringLiteral("machine"));
    const std::unique_ptr<CSettingsStore> store = CreateIniSettings(user, machine);
    const CPasswordProtection protection{user, machine};
    CFTPDestinations destinations{*store, protection};

    void Write(CSettingsStore::Scope scope, const QString& subKey, const char* name,
               const QString& value) const
    {
        EXPECT_TRUE(store->Write(scope, Root + QLatin1Char('/') + subKey, QString::fromLatin1(name), value));
    }

    std::optional<QString> Read(CSettingsStore::Scope scope, const QString& subKey, const char* name) const
    {
        return store->Read(scope, Root + QLatin1Char('/') + subKey, QString::fromLatin1(name));
    }

    void SkipProtection() const
    {
        Write(CSettingsStore::Scope::User, QStringLiteral("Options"), "SkipDPAPI", QStringLiteral("1"));
    }

    CFTPDestination Saved(bool allUsers, const FTPDestinationConnection& record)
    {
        CFTPDestination destination = destinations.Create(allUsers);
        destination.connection = record;
        EXPECT_EQ(destinations.Save(destination), CFTPDestinations::SaveResult::Saved);
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

inline FTPDestinationConnection FullRecord()
{
    return {.displayName = QStringLiteral("My site"),
            .userName = QStringLiteral("anna"),
            .password = Secret,
            .server = QStringLiteral("ftp.example.org"),
            .directory = QStringLiteral("/www/a b/\u00fc"),
            .port = 2121};
}

inline void ExpectEqual(const FTPDestinationConnection& found, const FTPDestinationConnection& expected)
{
    EXPECT_EQ(found.displayName, expected.displayName);
    EXPECT_EQ(found.userName, expected.userName);
    EXPECT_EQ(found.password, expected.password);
    EXPECT_EQ(found.server, expected.server);
    EXPECT_EQ(found.directory, expected.directory);
    EXPECT_EQ(found.port, expected.port);
}
