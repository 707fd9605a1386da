#include <csignal>
#include <map>
#include <set>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Program.h"
#include "Site.h"
#include "imaging/Image.h"

namespace {

const QString ClosingLine = QStringLiteral("^\\d+ pages, \\d+ images, \\d+\\.\\d\\d seconds$");

bool IsClosingLine(const QString& line)
{
    return QRegularExpression(ClosingLine).match(line).hasMatch();
}

// A photograph and what it should be on its page, in the order of the names.
QStringList WriteManyPictures(const CProgram& program, int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths += program.WritePicture(QStringLiteral("p%1.jpg").arg(i, 4, 10, QLatin1Char('0')));
    }
    return paths;
}

} // namespace

TEST(Deploy, WritesASiteWhoseLinksAllLead)
{
    const CProgram program;
    QStringList pictures = WriteManyPictures(program, 30);
    const QString project = program.WriteProject(pictures);
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(result.errors, QString());
    const CSite site(program.Path(QStringLiteral("site")));
    EXPECT_EQ(site.FindBrokenLinks().join(QLatin1Char('\n')), QString());
    EXPECT_EQ(site.FindUnreachablePages().join(QLatin1Char('\n')), QString());
}

TEST(Deploy, WithoutATerminalProgressIsPlainLinesAndTheLastLineSumsUp)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 25));
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    QStringList lines = result.output.split(QLatin1Char('\n'));
    EXPECT_EQ(lines.takeLast(), QString());
    EXPECT_TRUE(IsClosingLine(lines.takeLast())) << qPrintable(result.output);
    ASSERT_FALSE(lines.isEmpty());
    for (const QString& line : lines) {
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d+ of \\d+ pages$")).match(line).hasMatch())
            << qPrintable(line);
    }
    EXPECT_LE(lines.size(), 10);
}

TEST(Deploy, QuietLeavesTheLastLineAlone)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 3));
    const ProgramResult result = program.Run(
        {QStringLiteral("deploy"), QStringLiteral("--quiet"), project, program.Path(QStringLiteral("site"))});
    EXPECT_TRUE(IsClosingLine(result.output.trimmed())) << qPrintable(result.output);
}

TEST(Deploy, OnATerminalABarIsDrawnOverItself)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 3));
    const ProgramResult result =
        program.RunInShell(QStringLiteral("script -qec \"'$program' deploy '$1' '$2'\" /dev/null"),
                           {project, program.Path(QStringLiteral("site"))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.contains(QStringLiteral("\r[####################")))
        << qPrintable(result.output);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("\\[#{40}\\] (\\d+) of \\1 pages\r\n\\d+ pages, "))
                    .match(result.output)
                    .hasMatch())
        << qPrintable(result.output);
}

TEST(Deploy, AnInterruptCancelsKeepsWhatIsWrittenAndAnswers130)
{
    const CProgram program;
    QStringList pictures{program.WritePicture(QStringLiteral("0.jpg"), QSize(1200, 900))};
    for (int i = 1; i < 60; ++i) {
        pictures += program.scratch.Write(QStringLiteral("photos/%1.jpg").arg(i),
                                          program.scratch.Read(QStringLiteral("photos/0.jpg")));
    }
    const QString project = program.WriteProject(pictures);
    QProcess process;
    program.Start(process, {QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    ASSERT_TRUE(process.waitForReadyRead(30'000));
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    const ProgramResult result = CProgram::Finish(process);
    EXPECT_EQ(result.exitCode, 130) << qPrintable(result.output);
    EXPECT_EQ(result.errors, QStringLiteral("Cancelled. The files written so far stay.\n"));
    EXPECT_FALSE(result.output.contains(QStringLiteral("seconds")));
    const CSite site(program.Path(QStringLiteral("site")));
    EXPECT_FALSE(site.GetPages().isEmpty());
    // Neither half files nor temporary ones are left.
    for (const QString& file : site.GetFiles()) {
        EXPECT_FALSE(file.contains(QStringLiteral(".tmp"))) << qPrintable(file);
        if (file.endsWith(QStringLiteral(".jpg"))) {
            const CImage image = CImage::FromFile(program.Path(QStringLiteral("site/") + file));
            image.GetRgba();
            EXPECT_EQ(image.GetCondition().state, ImageCondition::State::Whole) << qPrintable(file);
        }
    }
}

TEST(Deploy, ASecondDeploymentGivesTheSameFiles)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 5));
    const auto deploy = [&](const char* folder) {
        EXPECT_EQ(program.Run({QStringLiteral("deploy"), project, program.Path(QString::fromLatin1(folder))})
                      .exitCode,
                  0);
    };
    deploy("one");
    deploy("two");
    deploy("two");
    const QStringList files = CSite(program.Path(QStringLiteral("one"))).GetFiles();
    EXPECT_EQ(files, CSite(program.Path(QStringLiteral("two"))).GetFiles());
    for (const QString& file : files) {
        EXPECT_EQ(program.scratch.Read(QStringLiteral("one/") + file),
                  program.scratch.Read(QStringLiteral("two/") + file))
            << qPrintable(file);
    }
}

TEST(Deploy, TheProjectFileStaysAsItWas)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 2));
    const QByteArray before = program.scratch.Read(QStringLiteral("trip.gallery"));
    program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    EXPECT_EQ(program.scratch.Read(QStringLiteral("trip.gallery")), before);
}

TEST(Deploy, NoTemporaryFilesAreLeft)
{
    const CProgram program;
    const QString project = program.WriteProject(WriteManyPictures(program, 2));
    program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    EXPECT_TRUE(program.scratch.ListFiles().filter(QStringLiteral("cache/vistorama/tmp/")).isEmpty());
}

TEST(Deploy, PicturesWithOddNamesArePublished)
{
    const CProgram program;
    QStringList pictures;
    for (const QString& name :
         {QStringLiteral("100%.jpg"), QStringLiteral("say \"hi\".jpg"), QStringLiteral("it's.jpg"),
          QStringLiteral("a  b.jpg"), QStringLiteral("Gr\u00fc\u00dfe aus K\u00f6ln.jpg"),
          QStringLiteral("a[page=1].jpg"), QStringLiteral("#1?&x=y.jpg"), QStringLiteral("\u96ea.jpg"),
          QStringLiteral("-rf.jpg"), QString(251, QLatin1Char('n')) + QStringLiteral(".jpg")}) {
        pictures += program.WritePicture(name);
    }
    const QString project = program.WriteProject(pictures);
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    const CSite site(program.Path(QStringLiteral("site")));
    EXPECT_EQ(site.FindBrokenLinks().join(QLatin1Char('\n')), QString());
    // The same files for each picture, none of which replaces another's.
    const qsizetype files = site.GetFiles().filter(QStringLiteral("pictures/")).size();
    EXPECT_GE(files, 2 * pictures.size());
    EXPECT_EQ(files % pictures.size(), 0);
}

// Cameras begin to count anew, and servers may not tell capitals apart.
TEST(Deploy, PicturesOfOneNameAreFilesOfTheirOwn)
{
    const CProgram program;
    const QStringList folders{QStringLiteral("a"), QStringLiteral("b")};
    QStringList pictures;
    int width = 40;
    for (const QString& folder : folders) {
        ASSERT_TRUE(QDir().mkpath(program.Path(QStringLiteral("photos/") + folder)));
        for (const char* name :
             {"IMG_0001.jpg", "img_0001.JPG", "Tor.jpg", "Tor_r1.jpg", "a b.jpg", "a10b.jpg"}) {
            pictures += program.WritePicture(folder + QLatin1Char('/') + QString::fromLatin1(name),
                                             QSize(++width, 30));
        }
    }
    const QString project = program.WriteProject(pictures);
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    const CSite site(program.Path(QStringLiteral("site")));
    EXPECT_EQ(site.FindBrokenLinks().join(QLatin1Char('\n')), QString());
    std::map<QString, QByteArray> files; // by name without capitals
    std::set<QByteArray> contents;
    for (const QString& file : site.GetFiles().filter(QStringLiteral("pictures/"))) {
        const QByteArray bytes = program.scratch.Read(QStringLiteral("site/") + file);
        EXPECT_TRUE(files.emplace(file.toLower(), bytes).second) << qPrintable(file);
        contents.insert(bytes);
    }
    EXPECT_GE(files.size(), static_cast<size_t>(pictures.size()));
    // The pictures differ in their widths, so that each has a file of its own.
    EXPECT_GE(contents.size(), static_cast<size_t>(pictures.size()));
}

TEST(Deploy, DatesAndNumbersStandInTheFormOfTheUsersLocale)
{
    const struct {
        const char* locale;
        const char* expected;
    } rows[] = {
        {"de_DE.UTF-8", "29.02.24|1234567,5|-2"},
        {"en_US.UTF-8", "2/29/24|1234567.5|-2"},
        {"sv_SE.UTF-8", "2024-02-29|1234567,5|-2"}, // whose own minus sign is another character
    };
    for (const auto& row : rows) {
        CProgram program;
        program.SetVariable(QStringLiteral("LC_ALL"), QString::fromLatin1(row.locale));
        program.WriteLayout("<%=gallery.day%>|<%=gallery.share%>|<%=gallery.step%>");
        const QString project = program.WriteProject({program.WritePicture(QStringLiteral("a.jpg"))});
        QByteArray xml = program.scratch.Read(QStringLiteral("trip.gallery"));
        xml.replace("</gallery>", "<project_variable doubleVal=\"45351.75\" name=\"day\" vt=\"7\"/>"
                                  "<project_variable doubleVal=\"1234567.5\" name=\"share\" vt=\"5\"/>"
                                  "<project_variable doubleVal=\"-2\" name=\"step\" vt=\"5\"/></gallery>");
        program.scratch.Write(QStringLiteral("trip.gallery"), xml);
        const ProgramResult result =
            program.Run({QStringLiteral("deploy"), project, program.Path(QStringLiteral("site"))});
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
        EXPECT_EQ(program.scratch.Read(QStringLiteral("site/index.html")).toStdString(), row.expected)
            << row.locale;
    }
}
