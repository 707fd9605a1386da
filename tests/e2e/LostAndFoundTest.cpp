#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

ProgramResult Deploy(const CProgram& program, const QString& project, const QStringList& options = {})
{
    return program.Run(QStringList{QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))} +
                       options);
}

QJsonArray MissingIn(const CProgram& program, const QString& project)
{
    const ProgramResult result = program.Run({QStringLiteral("info"), project, QStringLiteral("--json")});
    return QJsonDocument::fromJson(result.output.toUtf8()).object()[QStringLiteral("missing")].toArray();
}

} // namespace

TEST(MissingPictures, StopADeploymentAndAreFoundAgain)
{
    const CProgram program;
    QDir().mkpath(program.Path(QStringLiteral("photos/trip")));
    const QString picture = program.WritePicture(QStringLiteral("trip/one.jpg"));
    const QString project = program.WriteProject({picture});
    ASSERT_EQ(Deploy(program, project).exitCode, 0);
    EXPECT_EQ(MissingIn(program, project), QJsonArray());

    // Beside the project it would be found without being asked.
    const CScratchFolder away;
    ASSERT_TRUE(QDir().rename(QFileInfo(picture).path(), away.Path(QStringLiteral("elsewhere"))));
    const ProgramResult stopped = Deploy(program, project);
    EXPECT_EQ(stopped.exitCode, 1);
    EXPECT_TRUE(stopped.GetFailure()[QStringLiteral("description")].contains(picture))
        << qPrintable(stopped.errors);
    EXPECT_EQ(MissingIn(program, project),
              QJsonArray({QJsonObject{{QStringLiteral("gallery"), 0}, {QStringLiteral("path"), picture}}}));
    EXPECT_TRUE(
        program.Run({QStringLiteral("info"), project})
            .output.contains(QStringLiteral("\nMissing in gallery 0: ") + picture + QLatin1Char('\n')));

    const ProgramResult without = Deploy(program, project, {QStringLiteral("--leave-out-missing")});
    EXPECT_EQ(without.exitCode, 0) << qPrintable(without.errors);
    EXPECT_TRUE(without.errors.contains(picture)) << qPrintable(without.errors);

    const QStringList relink{QStringLiteral("relink"), project, away.Path(QStringLiteral("elsewhere"))};
    EXPECT_EQ(program.Run(relink).output, QStringLiteral("Found: 1. Still missing: 0.\n"));
    EXPECT_EQ(program.Run(relink).output, QStringLiteral("Found: 0. Still missing: 0.\n"));
    EXPECT_EQ(MissingIn(program, project), QJsonArray());
    EXPECT_EQ(Deploy(program, project).exitCode, 0);
}

TEST(MissingPictures, RelinkSaysWhatIsStillMissing)
{
    const CProgram program;
    const QString picture = program.WritePicture(QStringLiteral("one.jpg"));
    const QString project = program.WriteProject({picture});
    QFile::remove(picture);
    QDir().mkpath(program.Path(QStringLiteral("empty")));
    const ProgramResult result =
        program.Run({QStringLiteral("relink"), project, program.Path(QStringLiteral("empty"))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, QStringLiteral("Found: 0. Still missing: 1.\n"));
    EXPECT_EQ(program.Run({QStringLiteral("relink"), project}).exitCode, 2);
    EXPECT_EQ(program.Run({QStringLiteral("relink"), project, program.Path(QStringLiteral("none"))}).exitCode,
              1);
}

TEST(StrangeFiles, AreOverwrittenOnlyWhenThePersonSaysSo)
{
    const CProgram program;
    const QString project = program.WriteProject({program.WritePicture(QStringLiteral("one.jpg"))});
    program.scratch.Write(QStringLiteral("site/index.html"), "mine");
    const ProgramResult stopped = Deploy(program, project);
    EXPECT_EQ(stopped.exitCode, 1);
    EXPECT_TRUE(stopped.GetFailure()[QStringLiteral("description")].contains(
        program.Path(QStringLiteral("site/index.html"))))
        << qPrintable(stopped.errors);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")), "mine");
    EXPECT_EQ(Deploy(program, project, {QStringLiteral("--overwrite")}).exitCode, 0);
    EXPECT_NE(program.scratch.Read(QStringLiteral("site/index.html")), "mine");
}

TEST(Cache, ShowsItsSizeAndIsEmptied)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("cache/vistorama/images/a.jpg"), "12345");
    program.scratch.Write(QStringLiteral("cache/vistorama/covers/b.cover"), "123");
    program.scratch.Write(QStringLiteral("cache/vistorama/tmp/Sea_imgs/c.jpg"), "1");
    program.scratch.Write(QStringLiteral("cache/vistorama/sites/one/site/index.html"), "1234567");
    program.scratch.Write(QStringLiteral("cache/vistorama/deployments/d"), "kept");
    QFile(program.Path(QStringLiteral("cache/vistorama/tmp")))
        .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const ProgramResult size = program.Run({QStringLiteral("cache"), QStringLiteral("--size")});
    EXPECT_EQ(size.output, QStringLiteral("15\n")) << qPrintable(size.errors);
    EXPECT_EQ(program.Run({QStringLiteral("cache"), QStringLiteral("--clear")}).exitCode, 0);
    EXPECT_EQ(program.Run({QStringLiteral("cache"), QStringLiteral("--size")}).output, QStringLiteral("0\n"));
    EXPECT_EQ(program.scratch.ListFiles().filter(QStringLiteral("cache/")),
              QStringList(QStringLiteral("cache/vistorama/deployments/d")));
    EXPECT_EQ(program.Run({QStringLiteral("cache")}).exitCode, 2);
}

TEST(CheckOfStyles, RefusesWhatLeadsOutAndWarnsOfCapitals)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("Styles/Blue/Main.css"), "");
    program.scratch.Write(QStringLiteral("outside/x.css"), "");
    const struct {
        const char* attributes;
        int exitCode;
        const char* text;
    } rows[] = {
        {R"(folder="Blue" css="Main.css")", 0, ""},
        {R"(folder="blue" css="Main.css")", 0, "warning: 'Blue' has a name that differs in capitals."},
        {R"(folder="Blue" css="main.css")", 0, "warning: 'Main.css' has a name"},
        {R"(folder="Red" css="Main.css")", 1, "There is no 'Red'."},
        {R"(folder="Blue" css="none.css")", 1, "There is no 'none.css'."},
        {R"(folder="../outside" css="x.css")", 1, "The name '../outside' leads out"},
        {R"(folder="..\outside" css="x.css")", 1, "leads out"},
        {R"(folder="Blue/.." css="x.css")", 1, "leads out"},
        {R"(folder="." css="x.css")", 1, "leads out"},
        {R"(folder="" css="x.css")", 1, "The style names no folder"},
        {R"(css="x.css")", 1, "The style names no folder"},
        {R"(folder="Blue")", 1, "The style names no style sheet"},
        {R"(folder="/etc" css="passwd")", 1, "leads out"},
    };
    for (const auto& row : rows) {
        const QString file = program.scratch.Write(QStringLiteral("Styles/s.xml"),
                                                   QByteArray("<style ") + row.attributes + "/>");
        const ProgramResult result = program.Run({QStringLiteral("check"), file});
        EXPECT_EQ(result.exitCode, row.exitCode) << row.attributes << qPrintable(result.errors);
        EXPECT_TRUE(result.output.contains(QString::fromUtf8(row.text)))
            << row.attributes << qPrintable(result.output);
        EXPECT_EQ(result.output.isEmpty(), row.text[0] == 0) << row.attributes;
    }
}
