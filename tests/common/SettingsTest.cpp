#include "common/Settings.h"

#include <sys/stat.h>
#include <thread>

#include <QFile>

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

TEST(Settings, TellsWhetherAScopeCanBeWrittenWithoutWriting)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("file"), "x");
    scratch.Write(QStringLiteral("full/Corvane.ini"), "[x]\n");
    scratch.Write(QStringLiteral("taken/Corvane.ini/folder"), "");
    const QString key = QStringLiteral("Corvane/FTPDestinations");
    const struct {
        const char* machine;
        bool canWrite;
    } rows[] = {{"new/below/new", true}, {"full", true}, {"file/below", false}, {"taken", false}};
    const QStringList before = scratch.ListFiles();
    for (const auto& row : rows) {
        const auto store = CreateIniSettings(scratch.Path(QStringLiteral("user")),
                                             scratch.Path(QString::fromLatin1(row.machine)));
        EXPECT_EQ(store->CanWrite(Scope::Machine, key), row.canWrite) << row.machine;
        EXPECT_TRUE(store->CanWrite(Scope::User, key));
    }
    EXPECT_EQ(scratch.ListFiles(), before);
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

namespace {

const QString Root = QStringLiteral("Corvane/FTPDestinations");

QString SubKey(const QString& name)
{
    return Root + QLatin1Char('/') + name;
}

// A store over two folders that do not exist yet.
struct TestStore {
    const CScratchFolder scratch;
    const std::unique_ptr<CSettingsStore> store =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));

    // The same files, seen by a program that starts anew.
    std::unique_ptr<CSettingsStore> Reopened() const
    {
        return CreateIniSettings(scratch.Path(QStringLiteral("user")),
                                 scratch.Path(QStringLiteral("machine")));
    }

    QFile::Permissions RightsOf(const QString& file) const
    {
        return QFile::permissions(scratch.Path(file)) & ~RightsOfMe;
    }

    static constexpr QFile::Permissions RightsOfMe =
        QFile::ReadUser | QFile::WriteUser | QFile::ExeUser | QFile::ExeOwner;
};

} // namespace

TEST(Settings, SubKeysAreListedOnceAndInTheOrderOfTheirNames)
{
    const TestStore test;
    EXPECT_EQ(test.store->ListSubKeys(Scope::User, Root), QStringList());
    for (const char* name : {"2", "10", "Options", "1", "a b/c", "\xc3\xa4%"}) {
        test.store->Write(Scope::User, SubKey(QString::fromUtf8(name)), QStringLiteral("Dispname"),
                          QStringLiteral("x"));
        test.store->Write(Scope::User, SubKey(QString::fromUtf8(name)), QStringLiteral("Server"),
                          QStringLiteral("y"));
    }
    test.store->Write(Scope::User, Root, QString(), QStringLiteral("1"));
    test.store->Write(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("a"),
                      QStringLiteral("b"));
    const QStringList expected{QStringLiteral("1"),       QStringLiteral("10"),  QStringLiteral("2"),
                               QStringLiteral("Options"), QStringLiteral("a b"), QStringLiteral("\u00e4%")};
    EXPECT_EQ(test.store->ListSubKeys(Scope::User, Root), expected);
    EXPECT_EQ(test.Reopened()->ListSubKeys(Scope::User, Root), expected);
    EXPECT_EQ(test.store->ListSubKeys(Scope::Machine, Root), QStringList());
}

TEST(Settings, RemovingTheDefaultValueLeavesTheSubKeys)
{
    const TestStore test;
    test.store->Write(Scope::User, Root, QString(), QStringLiteral("7"));
    test.store->Write(Scope::User, SubKey(QStringLiteral("7")), QStringLiteral("Server"),
                      QStringLiteral("s"));
    EXPECT_EQ(test.Reopened()->Read(Scope::User, Root, QString()), QStringLiteral("7"));

    EXPECT_TRUE(test.store->RemoveValue(Scope::User, Root, QString()));
    EXPECT_EQ(test.Reopened()->Read(Scope::User, Root, QString()), std::nullopt);
    EXPECT_EQ(test.Reopened()->ListSubKeys(Scope::User, Root), QStringList(QStringLiteral("7")));
}

TEST(Settings, ARemovedKeyTakesItsOwnValuesAndNoOthers)
{
    const TestStore test;
    for (const char* name : {"1", "1/deep", "10", "11"}) {
        test.store->Write(Scope::User, SubKey(QString::fromLatin1(name)), QStringLiteral("Server"),
                          QStringLiteral("s"));
    }
    EXPECT_TRUE(test.store->RemoveKey(Scope::User, SubKey(QStringLiteral("1"))));
    EXPECT_EQ(test.Reopened()->ListSubKeys(Scope::User, Root),
              QStringList({QStringLiteral("10"), QStringLiteral("11")}));
}

TEST(Settings, RemovingWhatIsNotThereMakesNoFile)
{
    const TestStore test;
    EXPECT_TRUE(test.store->RemoveKey(Scope::Machine, SubKey(QStringLiteral("1"))));
    EXPECT_TRUE(test.store->RemoveValue(Scope::User, Root, QString()));
    EXPECT_EQ(test.scratch.ListFiles(), QStringList());
}

TEST(Settings, AValueIsReadAsWhatItWasWrittenAs)
{
    const QByteArray allBytes = [] {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i) {
            bytes += static_cast<char>(i);
        }
        return bytes;
    }();
    const TestStore test;
    const QString text = QStringLiteral("@ByteArray(x), \"y\"; %41\\n\u00e4\n");
    EXPECT_TRUE(test.store->WriteAll(Scope::User, Root,
                                     {{QStringLiteral("bytes"), allBytes}, {QStringLiteral("text"), text}}));
    for (const auto& store : {test.Reopened(), test.Reopened()}) {
        EXPECT_EQ(store->ReadBytes(Scope::User, Root, QStringLiteral("bytes")), allBytes);
        EXPECT_EQ(store->Read(Scope::User, Root, QStringLiteral("bytes")), std::nullopt);
        EXPECT_EQ(store->Read(Scope::User, Root, QStringLiteral("text")), text);
        EXPECT_EQ(store->ReadBytes(Scope::User, Root, QStringLiteral("text")), std::nullopt);
    }
}

TEST(Settings, AFileOfTheUserIsForTheUserAloneAndOneOfTheMachineForAll)
{
    const TestStore test;
    test.scratch.Write(QStringLiteral("user/Corvane.ini"), "[Vistorama]\nold=1\n");
    QFile::setPermissions(test.scratch.Path(QStringLiteral("user/Corvane.ini")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    const mode_t formerMask = ::umask(0077);
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        EXPECT_TRUE(test.store->Write(scope, Root, QStringLiteral("a"), QStringLiteral("b")));
        EXPECT_TRUE(test.store->Write(scope, QStringLiteral("New/Root"), QStringLiteral("a"), QString()));
    }
    ::umask(formerMask);
    const QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner;
    const QFile::Permissions everybodys = mine | QFile::ReadGroup | QFile::ReadOther;
    EXPECT_EQ(test.RightsOf(QStringLiteral("user/Corvane.ini")), mine);
    EXPECT_EQ(test.RightsOf(QStringLiteral("user/New.ini")), mine);
    EXPECT_EQ(test.RightsOf(QStringLiteral("machine/Corvane.ini")), everybodys);
    EXPECT_EQ(test.RightsOf(QStringLiteral("machine/New.ini")), everybodys);
    EXPECT_EQ(test.store->Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("old")),
              QStringLiteral("1"));
}

TEST(Settings, AFileThatCannotBeReadIsNotReplaced)
{
    const TestStore test;
    const QString file = test.scratch.Write(QStringLiteral("user/Corvane.ini"), "[Vistorama]\nold=1\n");
    EXPECT_EQ(::chmod(QFile::encodeName(test.scratch.Path(QStringLiteral("user"))).constData(), 0777), 0);
    EXPECT_EQ(::chmod(QFile::encodeName(file).constData(), 0200), 0);
    {
        const COrdinaryRights rights(test.scratch);
        EXPECT_FALSE(test.store->Write(Scope::User, Root, QStringLiteral("a"), QStringLiteral("b")));
    }
    EXPECT_EQ(::chmod(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(test.scratch.Read(QStringLiteral("user/Corvane.ini")), "[Vistorama]\nold=1\n");
}

TEST(Settings, RemovingFromAScopeThatCannotBeWrittenSaysSo)
{
    const TestStore test;
    test.store->Write(Scope::User, SubKey(QStringLiteral("1")), QStringLiteral("Server"),
                      QStringLiteral("s"));
    EXPECT_EQ(
        ::chmod(QFile::encodeName(test.scratch.Path(QStringLiteral("user/Corvane.ini"))).constData(), 0444),
        0);
    const COrdinaryRights rights(test.scratch);
    EXPECT_FALSE(test.store->RemoveKey(Scope::User, SubKey(QStringLiteral("1"))));
    EXPECT_FALSE(test.store->RemoveValue(Scope::User, SubKey(QStringLiteral("1")), QStringLiteral("Server")));
    EXPECT_EQ(test.store->Read(Scope::User, SubKey(QStringLiteral("1")), QStringLiteral("Server")),
              QStringLiteral("s"));
}

TEST(Settings, ADamagedFileIsWrittenAndACopyKeepsItsLines)
{
    const TestStore test;
    const QByteArray damaged = "[Vistorama]\nold=1\nno value here\n[Vistorama\nlost\n";
    test.scratch.Write(QStringLiteral("user/Corvane.ini"), damaged);
    EXPECT_EQ(test.store->Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("old")),
              QStringLiteral("1"));
    EXPECT_TRUE(test.store->Write(Scope::User, Root, QStringLiteral("a"), QStringLiteral("b")));
    EXPECT_EQ(test.store->Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("old")),
              QStringLiteral("1"));
    EXPECT_EQ(test.Reopened()->Read(Scope::User, Root, QStringLiteral("a")), QStringLiteral("b"));
    EXPECT_EQ(test.scratch.Read(QStringLiteral("user/Corvane.ini.damaged")), damaged);
    EXPECT_EQ(test.RightsOf(QStringLiteral("user/Corvane.ini.damaged")),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST(Settings, AFileWithSerialisedValuesIsLeftAlone)
{
    // A list that claims to have 4 billion entries, and one of lists of lists.
    const QByteArray list = "\\0\\0\\0\\x9\\xff\\xff\\xff\\xff)";
    const QByteArray nested = QByteArray("\\0\\0\\0\\x9\\0\\0\\0\\x1").repeated(50'000) + ')';
    const QString key = QStringLiteral("Corvane/FTPDestinations/1");
    const QString name = QStringLiteral("Server");
    for (const QByteArray& value :
         {"@Variant(" + list, "@Variant(" + nested, "@DateTime(" + list, "\"@Variant(" + list + '"',
          "\\x40Va\\x72iant(" + list, "\\100Varian\\164(" + list, "@Var\\\r\niant(" + list,
          "@V\\qariant(" + list, "\\x10040Variant(" + list, "a, @Variant(" + list, "@\"Var\"iant(" + list}) {
        const CScratchFolder scratch;
        const QByteArray file = "[FTPDestinations]\n1\\Server=host\n2\\Server=" + value + '\n';
        scratch.Write(QStringLiteral("user/Corvane.ini"), file);
        const auto store =
            CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
        EXPECT_EQ(store->Read(Scope::User, key, name), std::nullopt) << value.left(30).constData();
        EXPECT_EQ(store->ListSubKeys(Scope::User, QStringLiteral("Corvane")), QStringList());
        EXPECT_FALSE(store->CanWrite(Scope::User, key));
        EXPECT_FALSE(store->Write(Scope::User, key, name, QStringLiteral("other")));
        EXPECT_FALSE(store->RemoveValue(Scope::User, key, name));
        EXPECT_FALSE(store->RemoveKey(Scope::User, key));
        EXPECT_EQ(scratch.Read(QStringLiteral("user/Corvane.ini")), file);
        EXPECT_EQ(scratch.ListFiles(), QStringList{QStringLiteral("user/Corvane.ini")});
        // Once somebody has mended it, it is read again.
        scratch.Write(QStringLiteral("user/Corvane.ini"), "[FTPDestinations]\n1\\Server=host\n");
        EXPECT_EQ(store->Read(Scope::User, key, name), QStringLiteral("host"));
    }
}

TEST(Settings, TextsThatLookLikeSerialisedValuesComeBack)
{
    for (const QString& text :
         {QStringLiteral("@Variant(x)"), QStringLiteral("@DateTime(x)"), QStringLiteral("@@Variant(x)"),
          QStringLiteral("anna@Variant.example"), QStringLiteral("@ByteArray(x)"), QStringLiteral("@")}) {
        const CScratchFolder scratch;
        const auto store =
            CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
        const QString key = QStringLiteral("Corvane/Vistorama");
        EXPECT_TRUE(store->Write(Scope::User, key, QStringLiteral("a"), text));
        EXPECT_EQ(store->Read(Scope::User, key, QStringLiteral("a")), text);
        EXPECT_TRUE(store->Write(Scope::User, key, QStringLiteral("b"), text));
    }
}

TEST(Settings, WhatAnotherProgramWritesIsSeen)
{
    const TestStore test;
    const auto read = [&] {
        return test.store->Read(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("a"));
    };
    EXPECT_EQ(read(), std::nullopt);
    test.scratch.Write(QStringLiteral("user/Corvane.ini"), "[Vistorama]\na=first\n");
    EXPECT_EQ(read(), QStringLiteral("first"));
    test.scratch.Write(QStringLiteral("user/Corvane.ini"), "[Vistorama]\na=another\n");
    EXPECT_EQ(read(), QStringLiteral("another"));
    QFile::remove(test.scratch.Path(QStringLiteral("user/Corvane.ini")));
    EXPECT_TRUE(test.store->Write(Scope::User, QStringLiteral("Corvane/Vistorama"), QStringLiteral("b"),
                                  QStringLiteral("new")));
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(test.store->ListSubKeys(Scope::User, QStringLiteral("Corvane")),
              QStringList(QStringLiteral("Vistorama")));
}

TEST(Settings, ThreadsWriteAndReadOneFile)
{
    const TestStore test;
    constexpr int writes = 20;
    std::vector<std::thread> threads;
    for (const char* name : {"1", "2", "3", "4"}) {
        threads.emplace_back([&, key = SubKey(QString::fromLatin1(name))] {
            for (int i = 0; i < writes; ++i) {
                EXPECT_TRUE(test.store->Write(Scope::User, key, QStringLiteral("a"), QString::number(i)));
                EXPECT_EQ(test.store->Read(Scope::User, key, QStringLiteral("a")), QString::number(i));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(test.Reopened()->ListSubKeys(Scope::User, Root).size(), 4);
}
