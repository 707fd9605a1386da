#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

#include "Tool.h"
#include "common/FileSystem.h"
#include "support/GoldenFile.h"
#include "support/ScratchFolder.h"

namespace {

const char* const Programs[] = {"vistorama", "vistorama-cli"};

// A user of no settings, without a display and with nothing that points at the source tree.
QMap<QString, QString> PlainUser(const CScratchFolder& scratch)
{
    return {{QStringLiteral("VISTORAMA_DATA"), QString()},
            {QStringLiteral("DISPLAY"), QString()},
            {QStringLiteral("WAYLAND_DISPLAY"), QString()},
            {QStringLiteral("QT_QPA_PLATFORM"), QString()},
            {QStringLiteral("XDG_CONFIG_HOME"), scratch.Path(QStringLiteral("config"))},
            {QStringLiteral("XDG_DATA_HOME"), scratch.Path(QStringLiteral("share"))},
            {QStringLiteral("XDG_CACHE_HOME"), scratch.Path(QStringLiteral("cache"))}};
}

// One a line, without what is a copy of a folder of the source tree.
QByteArray WithoutData(const QStringList& files)
{
    QByteArray lines;
    for (const QString& file : files) {
        if (!file.startsWith(QStringLiteral("share/vistorama/")) &&
            !file.startsWith(QStringLiteral("share/doc/vistorama/images/"))) {
            lines += file.toUtf8() + '\n';
        }
    }
    return lines;
}

} // namespace

TEST(InstalledProgram, ItsFilesAreThoseOfTheGoldenListAndOfData)
{
    const QString list = QStringLiteral("tests/package/installed-files.txt");
    const QStringList installed = FilesBelow(Installed(QString()));
    if (RenewsGoldenFiles()) {
        RenewGoldenFile(QStringLiteral(SOURCE_FOLDER "/") + list, WithoutData(installed));
        GTEST_SKIP() << GoldenFilesAreRenewed;
    }
    QStringList expected = ReadText(list).split('\n', Qt::SkipEmptyParts);
    for (const char* folder : {"Templates", "Styles", "sample"}) {
        const QString name = QString::fromLatin1(folder);
        for (const QString& file : FilesBelow(QStringLiteral(SOURCE_FOLDER "/data/") + name)) {
            expected += QStringLiteral("share/vistorama/%1/%2").arg(name, file);
        }
    }
    for (const QString& file : FilesBelow(QStringLiteral(SOURCE_FOLDER "/docs/images"))) {
        expected += QStringLiteral("share/doc/vistorama/images/") + file;
    }
    expected.sort();
    EXPECT_EQ(installed, expected);
}

TEST(InstalledProgram, BothProgramsSayTheProjectsVersionWithoutADisplay)
{
    const CScratchFolder scratch;
    ASSERT_FALSE(VersionOfProject().isEmpty());
    for (const char* program : Programs) {
        const ToolResult result = RunTool(Installed(QStringLiteral("bin/") + QString::fromLatin1(program)),
                                          {QStringLiteral("--version")}, PlainUser(scratch));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output,
                  QStringLiteral("%1 %2\n").arg(QString::fromLatin1(program), VersionOfProject()));
        EXPECT_EQ(result.errors, QString());
    }
    EXPECT_TRUE(scratch.ListFiles().isEmpty());
}

TEST(InstalledProgram, BothProgramsSayTheirUsageWithoutADisplay)
{
    const CScratchFolder scratch;
    for (const char* program : Programs) {
        const ToolResult result = RunTool(Installed(QStringLiteral("bin/") + QString::fromLatin1(program)),
                                          {QStringLiteral("--help")}, PlainUser(scratch));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_TRUE(result.output.startsWith(QStringLiteral("Usage:\n  %1 ").arg(QLatin1String(program))));
    }
    EXPECT_TRUE(scratch.ListFiles().isEmpty());
}

TEST(InstalledProgram, AnOptionThatIsNoneIsTold)
{
    const CScratchFolder scratch;
    const ToolResult result =
        RunTool(Installed(QStringLiteral("bin/vistorama")), {QStringLiteral("--Help")}, PlainUser(scratch));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.startsWith(QStringLiteral("There is no option '--Help'.\nUsage:")))
        << qPrintable(result.errors);
    EXPECT_TRUE(scratch.ListFiles().isEmpty());
}

// Words are pieces of a path.
TEST(InstalledProgram, ADesktopProgramWithAnythingElseWantsADisplay)
{
    const CScratchFolder scratch;
    for (const QStringList& arguments :
         {QStringList(), QStringList{QStringLiteral("my"), QStringLiteral("trip")},
          QStringList{QStringLiteral("")}}) {
        const ToolResult result =
            RunTool(Installed(QStringLiteral("bin/vistorama")), arguments, PlainUser(scratch));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, QString());
        EXPECT_TRUE(result.errors.startsWith(QStringLiteral("There is no display")))
            << qPrintable(result.errors);
    }
}

TEST(InstalledProgram, FindsItsLayoutsAndStylesBesideItself)
{
    const CScratchFolder scratch;
    const QString program = Installed(QStringLiteral("bin/vistorama-cli"));
    const QString project = scratch.Path(QStringLiteral("trip.gallery"));
    const QString site = scratch.Path(QStringLiteral("site"));
    const QString picture = Installed(QStringLiteral("share/vistorama/sample/October.jpg"));
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("new"), project, QStringLiteral("--layout=journal"),
                      QStringLiteral("--style=ink"), picture},
          QStringList{QStringLiteral("deploy"), project, site}}) {
        const ToolResult result = RunTool(program, arguments, PlainUser(scratch));
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    }
    EXPECT_TRUE(FileExists(site + QStringLiteral("/index.html")));
    EXPECT_TRUE(FileExists(site + QStringLiteral("/Ink/style.css")));
}

TEST(InstalledProgram, ReadsItsSampleFromWhereverItIsInstalled)
{
    const CScratchFolder scratch;
    const ToolResult result =
        RunTool(Installed(QStringLiteral("bin/vistorama-cli")),
                {QStringLiteral("info"), Installed(QStringLiteral("share/vistorama/sample/sample.gallery"))},
                PlainUser(scratch));
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_TRUE(result.output.contains(QStringLiteral("layout Portfolio"))) << qPrintable(result.output);
}

TEST(InstalledProgram, NothingPointsBackAtTheSourceTree)
{
    for (const QString& name : FilesBelow(Installed(QString()))) {
        EXPECT_FALSE(QFileInfo(Installed(name)).isSymLink()) << qPrintable(name);
    }
    for (const char* program : Programs) {
        const ToolResult sections =
            RunTool(QStringLiteral("readelf"), {QStringLiteral("--dynamic"),
                                                Installed(QStringLiteral("bin/") + QLatin1String(program))});
        EXPECT_EQ(sections.exitCode, 0);
        EXPECT_FALSE(sections.output.contains(QStringLiteral("RUNPATH"))) << qPrintable(sections.output);
        EXPECT_FALSE(sections.output.contains(QStringLiteral("RPATH"))) << qPrintable(sections.output);
    }
}
