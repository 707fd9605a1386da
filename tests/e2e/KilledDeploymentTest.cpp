#include <functional>
#include <random>

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

#include "ServerSites.h"
#include "Site.h"

// A deployment whose program or server is killed at some moment: visitors find whole pages with all their
// pictures, and the next run goes on; while the program lives, it goes on by itself when the server is there
// again. VISTORAMA_KILLS in the environment says how many moments are tried.

namespace {

using Kind = CProtectedServer::Kind;

int CountKills()
{
    constexpr int usual = 4;
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("VISTORAMA_KILLS", &isNumber);
    return isNumber ? wanted : usual;
}

QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("\xff");
}

bool IsTemporary(const QString& name)
{
    return name.endsWith(QStringLiteral(".part"));
}

class KilledDeployments : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            GTEST_SKIP() << qPrintable(server.GetProblem());
        }
        program.SetVariable(QStringLiteral("VISTORAMA_FTP_PASSWORD"), server.GetPassword());
        program.SetVariable(QStringLiteral("HOME"), program.Path(QStringLiteral("home")));
        program.SetVariable(QStringLiteral("SSH_AUTH_SOCK"), QString());
        project = WriteTree(program);
    }

    QStringList Arguments(const QStringList& options = {}) const
    {
        return QStringList{QStringLiteral("deploy"),
                           project,
                           server.GetAddress(QStringLiteral("web")),
                           QStringLiteral("--quiet"),
                           QStringLiteral("--fingerprint"),
                           server.GetFingerprint()} +
               server.GetLoginOptions() + options;
    }
    QString GetSite() const { return server.GetRoot() + QStringLiteral("web"); }

    // Each odd version has other pictures than the even ones, so that most of the site changes.
    void ChangeTo(int version) const
    {
        const QSize size = version % 2 == 0 ? QSize(64, 48) : QSize(80, 60);
        for (const QString& name :
             {QStringLiteral("a.jpg"), QStringLiteral("two words.jpg"), QStringLiteral("sea/it's #1.jpg")}) {
            program.WritePicture(name, size);
        }
    }
    QString WriteFolder(int version) const
    {
        const QString folder = program.Path(QStringLiteral("version%1").arg(version));
        EXPECT_EQ(program.Run({QStringLiteral("deploy"), project, folder}).exitCode, 0);
        return folder;
    }

    void KillAfter(std::chrono::milliseconds time) const
    {
        QProcess process;
        program.Start(process, Arguments());
        // Any moment will do: also one after its end.
        process.waitForFinished(static_cast<int>(time.count()));
        process.kill();
        process.waitForFinished();
    }
    // look: what is there before the server is started again.
    void KillServerAfter(std::chrono::milliseconds time, const std::function<void()>& look)
    {
        QProcess process;
        program.Start(process, Arguments());
        process.waitForFinished(static_cast<int>(time.count()));
        server.Kill();
        look();
        ASSERT_TRUE(server.Restart()) << qPrintable(server.GetProblem());
        const ProgramResult result = CProgram::Finish(process);
        // Nothing is tried again before the first login.
        EXPECT_TRUE(result.exitCode == 0 || (result.exitCode == 1 && result.GetFailure().size() == 3))
            << qPrintable(result.errors);
    }

    // Each file is the old or the new one, and no link of a page leads nowhere.
    void LookAsAVisitor(const QString& oldFolder, const QString& newFolder) const
    {
        QStringList broken = CSite(GetSite()).FindBrokenLinks();
        if (!QFile::exists(GetSite() + QStringLiteral("/index.html"))) {
            // Nobody is led to the pages of a new site before its first one is there.
            broken.removeIf([](const QString& link) { return link.endsWith(QStringLiteral(".html")); });
        }
        EXPECT_EQ(broken, QStringList());
        for (const QString& file : PublishedIn(GetSite())) {
            if (!IsTemporary(file)) {
                const QByteArray bytes = BytesOf(GetSite() + QLatin1Char('/') + file);
                EXPECT_TRUE(bytes == BytesOf(newFolder + QLatin1Char('/') + file) ||
                            bytes == BytesOf(oldFolder + QLatin1Char('/') + file))
                    << qPrintable(file);
            }
        }
    }

    // Of the new site, as far as they have got their names on the server.
    int64_t CountBytesThatAreThere(const QString& newFolder) const
    {
        int64_t bytes = 0;
        for (const QString& file : PublishedIn(newFolder)) {
            const QByteArray there = BytesOf(GetSite() + QLatin1Char('/') + file);
            if (there == BytesOf(newFolder + QLatin1Char('/') + file)) {
                bytes += there.size();
            }
        }
        return bytes;
    }
    int64_t CountBytes(const QString& folder) const
    {
        int64_t bytes = 0;
        for (const QString& file : PublishedIn(folder)) {
            bytes += BytesOf(folder + QLatin1Char('/') + file).size();
        }
        return bytes;
    }
    // That the next run would send.
    int64_t AskForBytes() const
    {
        const ProgramResult dry = program.Run(Arguments({QStringLiteral("--dry-run")}));
        EXPECT_EQ(dry.exitCode, 0) << qPrintable(dry.errors);
        return dry.output.section(QLatin1Char('\n'), 3, 3).section(QLatin1Char(' '), 0, 0).toLongLong();
    }

    CProtectedServer server{GetParam()};
    CProgram program;
    QString project;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(At, KilledDeployments,
                         testing::Values(Kind::Vsftpd, Kind::ProFtpd, Kind::PureFtpd, Kind::Sshd),
                         [](const auto& kind) { return std::string(NameOf(kind.param)); });

TEST_P(KilledDeployments, LeaveAWholeSiteAndAreGoneOnWith)
{
    QElapsedTimer timer;
    timer.start();
    const ProgramResult whole = program.Run(Arguments());
    ASSERT_EQ(whole.exitCode, 0) << qPrintable(whole.errors);
    const qint64 duration = timer.elapsed();
    QString oldFolder = WriteFolder(0);
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int version = 1; version <= CountKills(); ++version) {
        ChangeTo(version);
        const QString newFolder = WriteFolder(version);
        const auto moment =
            std::chrono::milliseconds(std::uniform_int_distribution<qint64>(0, duration)(random));
        const bool isServer = version % 2 == 0;
        SCOPED_TRACE(testing::Message() << (isServer ? "server" : "program") << " killed after "
                                        << moment.count() << " ms, in version " << version);
        if (isServer) {
            KillServerAfter(moment, [&] { LookAsAVisitor(oldFolder, newFolder); });
        } else {
            KillAfter(moment);
        }
        LookAsAVisitor(oldFolder, newFolder);
        const int64_t missing = CountBytes(newFolder) - CountBytesThatAreThere(newFolder);
        EXPECT_LE(AskForBytes(), missing);
        const ProgramResult next = program.Run(Arguments());
        EXPECT_EQ(next.exitCode, 0) << qPrintable(next.errors);
        ExpectSameTree(GetSite(), newFolder);
        oldFolder = newFolder;
    }
}

TEST_P(KilledDeployments, OfANewSiteShowNoPageBeforeItsPictures)
{
    QElapsedTimer timer;
    timer.start();
    const QString folder = WriteFolder(0);
    ASSERT_EQ(program.Run(Arguments({QStringLiteral("--dry-run")})).exitCode, 0);
    const qint64 duration = timer.elapsed();
    std::mt19937 random(std::random_device{}());
    for (int kill = 0; kill < CountKills(); ++kill) {
        const auto moment =
            std::chrono::milliseconds(std::uniform_int_distribution<qint64>(0, duration)(random));
        SCOPED_TRACE(testing::Message() << "killed after " << moment.count() << " ms");
        KillAfter(moment);
        LookAsAVisitor(folder, folder);
        const int64_t missing = CountBytes(folder) - CountBytesThatAreThere(folder);
        EXPECT_LE(AskForBytes(), missing);
    }
    const ProgramResult last = program.Run(Arguments());
    EXPECT_EQ(last.exitCode, 0) << qPrintable(last.errors);
    ExpectSameTree(GetSite(), folder);
}
