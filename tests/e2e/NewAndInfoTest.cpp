#include <sys/stat.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include "Program.h"
#include "common/FileSystem.h"

namespace {

QJsonObject InfoOf(const CProgram& program, const QString& project)
{
    const ProgramResult info = program.Run({QStringLiteral("info"), project, QStringLiteral("--json")});
    EXPECT_EQ(info.exitCode, 0) << qPrintable(info.errors);
    return QJsonDocument::fromJson(info.output.toUtf8()).object();
}

// "NAME[children](picture names)" for each gallery.
QString Summary(const QJsonObject& info)
{
    QStringList galleries;
    for (const QJsonValue& value : info[QStringLiteral("galleries")].toArray()) {
        const QJsonObject gallery = value.toObject();
        QStringList children;
        for (const QJsonValue& child : gallery[QStringLiteral("children")].toArray()) {
            children += QString::number(child.toInt());
        }
        QStringList pictures;
        for (const QJsonValue& picture : gallery[QStringLiteral("pictures")].toArray()) {
            pictures += picture.toObject()[QStringLiteral("path")].toString().section(QLatin1Char('/'), -1);
        }
        galleries += QStringLiteral("%1 %2[%3](%4)")
                         .arg(gallery[QStringLiteral("index")].toInt())
                         .arg(gallery[QStringLiteral("name")].toString(), children.join(QLatin1Char(',')),
                              pictures.join(QLatin1Char(',')));
    }
    return galleries.join(QLatin1Char(' '));
}

} // namespace

TEST(New, PicturesAndThePicturesOfFoldersGoIntoTheRootGallery)
{
    const CProgram program;
    const QString single = program.WritePicture(QStringLiteral("single.jpeg"));
    for (const char* name :
         {"set/b.JPG", "set/a.png", "set/c.jpeg", "set/notes.txt", "set/.hidden.jpg", "set/deep/d.jpg"}) {
        program.scratch.Write(QString::fromLatin1(name), "x");
    }
    const QString project = program.Path(QStringLiteral("My trip.gallery"));
    const ProgramResult result =
        program.Run({QStringLiteral("new"), project, single, program.Path(QStringLiteral("set"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(Summary(InfoOf(program, project)), QStringLiteral("0 My trip[](single.jpeg,a.png,b.JPG)"));
}

TEST(New, ATreeMakesAChildForEachSubfolder)
{
    const CProgram program;
    for (const char* name : {"tree/root.jpg", "tree/Winter/w.jpg", "tree/Winter/Alps/a b.jpg",
                             "tree/Summer/s.jpg", "tree/.cache/x.jpg", "tree/Empty/notes.txt"}) {
        program.scratch.Write(QString::fromLatin1(name), "x");
    }
    const QString project = program.Path(QStringLiteral("trip.gallery"));
    const ProgramResult result = program.Run(
        {QStringLiteral("new"), project, QStringLiteral("--tree"), program.Path(QStringLiteral("tree"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(
        Summary(InfoOf(program, project)),
        QStringLiteral(
            "0 trip[1,2,3](root.jpg) 1 Empty[]() 2 Summer[](s.jpg) 3 Winter[4](w.jpg) 4 Alps[](a b.jpg)"));
}

TEST(New, TheLayoutAndTheStyleAreChosenByNameForAllGalleries)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("tree/a/x.jpg"), "x");
    const QString project = program.Path(QStringLiteral("trip.gallery"));
    const ProgramResult result = program.Run(
        {QStringLiteral("new"), project, QStringLiteral("--layout=mosaic"), QStringLiteral("--style"),
         QStringLiteral("INK"), QStringLiteral("--tree"), program.Path(QStringLiteral("tree"))});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    for (const QJsonValue& gallery : InfoOf(program, project)[QStringLiteral("galleries")].toArray()) {
        EXPECT_EQ(gallery.toObject()[QStringLiteral("layout")].toString(), QStringLiteral("Mosaic"));
        EXPECT_EQ(gallery.toObject()[QStringLiteral("style")].toString(), QStringLiteral("Ink"));
    }
}

TEST(New, WhatDoesNotExistIsNamedAndNothingIsWritten)
{
    const CProgram program;
    const QString project = program.Path(QStringLiteral("trip.gallery"));
    const QString missing = program.Path(QStringLiteral("missing.jpg"));
    const struct {
        QStringList arguments;
        QString named;
    } rows[] = {
        {{missing}, missing},
        {{QStringLiteral("--tree"), missing}, missing},
        {{QStringLiteral("--layout"), QStringLiteral("Baroque")}, QStringLiteral("Baroque")},
        {{QStringLiteral("--style"), QStringLiteral("Gold")}, QStringLiteral("Gold")},
    };
    for (const auto& row : rows) {
        const ProgramResult result = program.Run(QStringList{QStringLiteral("new"), project} + row.arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.GetFailure()[QStringLiteral("caption")].contains(row.named))
            << qPrintable(result.errors);
        EXPECT_FALSE(program.scratch.ListFiles().contains(QStringLiteral("trip.gallery")));
    }
}

TEST(New, TheEndingOfAProjectIsAddedAndMayBeLeftOut)
{
    const CProgram program;
    const QString picture = program.WritePicture(QStringLiteral("a.jpg"));
    const QString named = program.Path(QStringLiteral("Trip"));
    // A folder of that name, of the pictures perhaps, is no obstacle.
    MakeDirectoryPath(named);
    EXPECT_EQ(program.Run({QStringLiteral("new"), named, picture}).exitCode, 0);
    EXPECT_TRUE(FileExists(named + QStringLiteral(".gallery")));
    const ProgramResult info = program.Run({QStringLiteral("info"), named});
    EXPECT_EQ(info.exitCode, 0) << qPrintable(info.errors);
    EXPECT_TRUE(info.output.contains(QStringLiteral("1 pictures"))) << qPrintable(info.output);
}

TEST(Info, WhatIsNoFileIsRefusedAtOnce)
{
    const CProgram program;
    const QString folder = program.Path(QStringLiteral("folder.gallery"));
    MakeDirectoryPath(folder);
    const QString pipe = program.Path(QStringLiteral("pipe.gallery"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& path : {folder, pipe, QStringLiteral("/dev/zero")}) {
        for (const char* command : {"info", "deploy"}) {
            QStringList arguments = {QString::fromLatin1(command), path};
            if (arguments[0] == QStringLiteral("deploy")) {
                arguments += program.Path(QStringLiteral("site"));
            }
            const ProgramResult result = program.Run(arguments);
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_TRUE(
                result.errors.contains(QStringLiteral("The file %1 is not a gallery project.").arg(path)))
                << qPrintable(result.errors);
        }
    }
}

TEST(New, NeverOverwritesAProject)
{
    const CProgram program;
    const QString project = program.scratch.Write(QStringLiteral("trip.gallery"), "precious");
    const ProgramResult result = program.Run({QStringLiteral("new"), project});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.GetFailure()[QStringLiteral("caption")],
              QStringLiteral("The project %1 exists already.").arg(project));
    EXPECT_EQ(program.scratch.Read(QStringLiteral("trip.gallery")), "precious");
}

TEST(New, TheFolderOfTheProjectIsMade)
{
    const CProgram program;
    const QString project = program.Path(QStringLiteral("a/b c/\u00fcber.gallery"));
    EXPECT_EQ(program.Run({QStringLiteral("new"), project}).exitCode, 0);
    EXPECT_EQ(Summary(InfoOf(program, project)), QStringLiteral("0 \u00fcber[]()"));
}

TEST(Info, ShowsTheTreeAsText)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("tree/Winter/w.jpg"), "x");
    const QString project = program.Path(QStringLiteral("trip.gallery"));
    program.Run(
        {QStringLiteral("new"), project, QStringLiteral("--tree"), program.Path(QStringLiteral("tree"))});
    const ProgramResult info = program.Run({QStringLiteral("info"), project});
    EXPECT_EQ(info.output, QStringLiteral("trip\n"
                                          "0: trip, layout Cards, style Paper, 0 pictures\n"
                                          "  1: Winter, layout Cards, style Paper, 1 pictures\n"));
    EXPECT_EQ(info.errors, QString());
}

TEST(New, FindsLayoutsAndStylesBesideTheProject)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("trip/Templates/own.xml"),
                          "<template name=\"Own\" folder=\"Own\"><page file=\"index.html\"/></template>");
    program.scratch.Write(QStringLiteral("trip/Templates/Own/index.html"), "own page");
    program.scratch.Write(QStringLiteral("trip/Styles/plain.xml"),
                          "<style name=\"Plain\" folder=\"Plain\"/>");
    const QString project = program.Path(QStringLiteral("trip/trip.gallery"));
    const ProgramResult result = program.Run(
        {QStringLiteral("new"), project, QStringLiteral("--layout=own"), QStringLiteral("--style=plain")});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(program.Run({QStringLiteral("info"), project}).output,
              QStringLiteral("trip\n0: trip, layout Own, style Plain, 0 pictures\n"));
}

TEST(New, WithoutANameEveryGalleryTakesALayoutOfTheProgram)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("trip/Templates/own.xml"),
                          "<template name=\"Own\" folder=\"Own\"><page file=\"index.html\"/></template>");
    program.scratch.Write(QStringLiteral("photos/Winter/w.jpg"), "x");
    const QString project = program.Path(QStringLiteral("trip/trip.gallery"));
    ASSERT_EQ(program
                  .Run({QStringLiteral("new"), project, QStringLiteral("--tree"),
                        program.Path(QStringLiteral("photos"))})
                  .exitCode,
              0);
    EXPECT_EQ(program.Run({QStringLiteral("info"), project}).output,
              QStringLiteral("trip\n"
                             "0: trip, layout Cards, style Paper, 0 pictures\n"
                             "  1: Winter, layout Cards, style Paper, 1 pictures\n"));
}
