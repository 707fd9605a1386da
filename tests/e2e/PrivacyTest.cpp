#include <cctype>
#include <sys/stat.h>

#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

#include "Program.h"
#include "common/FileSystem.h"
#include "support/ScriptedServer.h"

// Who else may read what the program keeps, and where a password comes to lie.

namespace {

const QByteArray Password = "Tr0ub4dor-und-3";

struct Found {
    QString path; // relative to the scratch folder
    mode_t mode;
    bool isDirectory;
};

class Privacy : public testing::Test {
protected:
    CProgram program;
    CScriptedServer server;
    QString log; // what the programs have printed

    void SetUp() override { server.RefuseOthers(); }

    // As on a machine whose users share everything: what the program leaves to the mask is open to all.
    ProgramResult RunOpenly(const QStringList& arguments)
    {
        const ProgramResult result =
            program.RunInShell(QStringLiteral("umask 0; exec \"$program\" \"$@\""), arguments);
        log += result.output + result.errors;
        return result;
    }

    void AddDestination()
    {
        program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), QString::fromUtf8(Password));
        const ProgramResult added = RunOpenly(
            {QStringLiteral("destination"), QStringLiteral("add"), QStringLiteral("home"), GetAddress()});
        ASSERT_EQ(added.exitCode, 0) << qPrintable(added.errors);
    }

    QString GetAddress() const { return QStringLiteral("ftp://photo@127.0.0.1:%1").arg(server.GetPort()); }

    std::vector<Found> FindAll(const QString& folder) const
    {
        std::vector<Found> found;
        QDirIterator walk(program.Path(folder), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = walk.next();
            struct stat status;
            EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
            found.push_back(
                {path.mid(program.Path(QString()).size()), status.st_mode & 07777u, S_ISDIR(status.st_mode)});
        }
        return found;
    }
};

// As QSettings writes the bytes of UTF-16: a digit after an escaped zero has to be escaped as well.
QByteArray InSettings(const QByteArray& text)
{
    QByteArray escaped;
    for (const char unit : text) {
        const bool looksLikeDigit =
            !escaped.isEmpty() && std::isxdigit(static_cast<unsigned char>(unit)) != 0;
        escaped += looksLikeDigit ? "\\x" + QByteArray(1, unit).toHex() : QByteArray(1, unit);
        escaped += "\\0";
    }
    return escaped.chopped(2);
}

// The bytes in which a text could lie in a file.
QList<QByteArray> Disguises(const QByteArray& text)
{
    const QString wide = QString::fromUtf8(text);
    const auto* units = reinterpret_cast<const char*>(wide.utf16());
    const QByteArray wideBytes(units, wide.size() * qsizetype(sizeof(char16_t)));
    QByteArray backwards = text;
    std::reverse(backwards.begin(), backwards.end());
    return {text,
            wideBytes,
            InSettings(text),
            text.toBase64().chopped(2),
            text.toHex(),
            text.toHex().toUpper(),
            backwards,
            text.toPercentEncoding()};
}

} // namespace

TEST_F(Privacy, SettingsKeysRecordsAndTracesAreTheUsersOwn)
{
    server.Start();
    AddDestination();
    const QString trace = program.Path(QStringLiteral("cache/trace.txt"));
    program.scratch.Write(QStringLiteral("config/NimbleXfer.ini"), "[Trace]\nFile=" + trace.toUtf8() + '\n');
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    ASSERT_EQ(RunOpenly({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))}).exitCode,
              0);
    RunOpenly({QStringLiteral("deploy"), project, QStringLiteral("--to"), QStringLiteral("home")});
    RunOpenly({QStringLiteral("ftp-ls"), GetAddress()});

    // What a test has written itself has the test's own rights.
    const QStringList ownFiles = {QStringLiteral("config/NimbleXfer.ini")};
    int files = 0;
    for (const char* folder : {"config", "share", "cache"}) {
        for (const Found& found : FindAll(QString::fromLatin1(folder))) {
            if (ownFiles.contains(found.path)) {
                continue;
            }
            // A folder that nobody else can enter protects what lies in it, whatever the rights of that are.
            const bool isInPrivateFolder = found.path.count(QLatin1Char('/')) > 1;
            EXPECT_EQ(found.mode & 077 & (isInPrivateFolder ? 0 : 077), 0u)
                << qPrintable(found.path) << std::oct << ' ' << found.mode;
            // The folders of a site have the rights of any site, in a folder that nobody else can enter.
            const bool isOfSite = found.path.contains(QStringLiteral("/sites/")) &&
                                  (found.path + QLatin1Char('/')).contains(QStringLiteral("/site/"));
            if (found.isDirectory && !isOfSite) {
                EXPECT_EQ(found.mode, 0700u) << qPrintable(found.path);
            } else if (!found.isDirectory) {
                ++files;
            }
        }
    }
    EXPECT_GE(files, 4) << "settings, key, record, trace";
    EXPECT_TRUE(FileExists(trace));
}

TEST_F(Privacy, ThePasswordLiesInNoFileAndNoOutput)
{
    server.Start();
    AddDestination();
    const QString trace = program.Path(QStringLiteral("cache/trace.txt"));
    program.scratch.Write(QStringLiteral("config/NimbleXfer.ini"), "[Trace]\nFile=" + trace.toUtf8() + '\n');
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
    RunOpenly({QStringLiteral("deploy"), project, QStringLiteral("--to"), QStringLiteral("home")});
    for (const char* command : {"ftp-test", "ftp-ls"}) {
        RunOpenly({QString::fromLatin1(command), GetAddress()});
    }
    RunOpenly({QStringLiteral("destination"), QStringLiteral("list")});
    // A refused login, and a server that speaks of something else.
    server.Reply("PASS", "530 no\r\n");
    RunOpenly({QStringLiteral("ftp-test"), GetAddress()});
    server.Reply("PASS", "999\r\n");
    RunOpenly({QStringLiteral("deploy"), project, QStringLiteral("--to"), QStringLiteral("home")});

    // It has been used, or this test looks for nothing.
    const auto commands = server.GetCommands();
    ASSERT_NE(std::find(commands.begin(), commands.end(), "PASS " + Password.toStdString()), commands.end());

    const QList<QByteArray> disguises = Disguises(Password);
    int files = 0;
    for (const QString& name : program.scratch.ListFiles()) {
        const QByteArray bytes = program.scratch.Read(name);
        for (const QByteArray& disguise : disguises) {
            EXPECT_FALSE(bytes.contains(disguise)) << qPrintable(name) << ' ' << disguise.constData();
        }
        ++files;
    }
    EXPECT_GE(files, 5);
    EXPECT_GT(ReadWholeFile(trace).size(), 100);
    EXPECT_GT(log.size(), 100);
    EXPECT_FALSE(log.contains(QString::fromUtf8(Password)));
}
