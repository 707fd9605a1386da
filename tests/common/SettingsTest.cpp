#include "common/Settings.h"

#include "support/ScratchFolder.h"

using Scope = CSettingsStore::Scope;

TEST(Settings, ValuesAreKeptByScopeKeyAndName)
{
    const CScratchFolder scratch;
    const QString key = QStringLiteral("Corvane/Vistorama");
    const QString name = QStringLiteral("ProjectFileName");
    {
        const auto store =
            CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
        EXPECT_FALSE(store->Read(Scope::User, key, name).has_value());
        EXPECT_TRUE(store->Write(Scope::User, key, name, QStringLiteral("/h\u00f6me/a, b.gallery")));
        EXPECT_TRUE(store->Write(Scope::Machine, key, name, QStringLiteral("other")));
    }
    const auto store =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
    EXPECT_EQ(store->Read(Scope::User, key, name), QStringLiteral("/h\u00f6me/a, b.gallery"));
    EXPECT_EQ(store->Read(Scope::Machine, key, name), QStringLiteral("other"));
    EXPECT_FALSE(store->Read(Scope::User, QStringLiteral("Corvane/Other"), name).has_value());
}

TEST(Settings, AScopeThatCannotBeWrittenSaysSo)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("file"), "x");
    const auto store =
        CreateIniSettings(scratch.Path(QStringLiteral("file/user")), scratch.Path(QStringLiteral("machine")));
    EXPECT_FALSE(store->Write(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("a"),
                              QStringLiteral("b")));
}

TEST(Settings, ATableGivesDefaults)
{
    const CScratchFolder scratch;
    const auto store =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
    CRegistrySettingsBase settings(*store, Scope::User, QStringLiteral("Corvane/Vistorama"),
                                   {{QStringLiteral("RecentFoldersCount"), QStringLiteral("10")},
                                    {QStringLiteral("Name"), QStringLiteral("default")}});
    EXPECT_EQ(settings.GetDWord(QStringLiteral("RecentFoldersCount")), 10u);
    EXPECT_EQ(settings.GetDWord(QStringLiteral("Unknown")), 0u);
    EXPECT_EQ(settings.GetString(QStringLiteral("Name")), QStringLiteral("default"));
    EXPECT_EQ(settings.GetString(QStringLiteral("Unknown")), QString());

    EXPECT_TRUE(settings.SetString(QStringLiteral("RecentFoldersCount"), QStringLiteral("3")));
    EXPECT_EQ(settings.GetDWord(QStringLiteral("RecentFoldersCount")), 3u);
    EXPECT_TRUE(settings.SetString(QStringLiteral("RecentFoldersCount"), QStringLiteral("many")));
    EXPECT_EQ(settings.GetDWord(QStringLiteral("RecentFoldersCount")), 10u);
}
