#include <gtest/gtest.h>

#include "Program.h"
#include "imaging/Image.h"

namespace {

QStringList NewWith(const CProgram& program, const QStringList& options)
{
    return QStringList{QStringLiteral("new"), program.Path(QStringLiteral("p.gallery"))} + options;
}

// The stamp elements of all galleries with a file or a text.
QStringList StampsOf(const CProgram& program)
{
    QStringList stamps;
    const QString xml = QString::fromUtf8(program.scratch.Read(QStringLiteral("p.gallery")));
    for (const QString& element : xml.split(QLatin1Char('<'))) {
        const bool isStamp = element.startsWith(QStringLiteral("image_stamp")) ||
                             element.startsWith(QStringLiteral("text_stamp"));
        if (isStamp && !element.contains(QStringLiteral("file=\"\"")) &&
            !element.contains(QStringLiteral("text=\"\""))) {
            stamps += element;
        }
    }
    return stamps;
}

} // namespace

TEST(StampOptions, GoToAllGalleriesOfTheProject)
{
    const CProgram program;
    program.scratch.Write(QStringLiteral("tree/a/x.jpg"), "x");
    const ProgramResult result =
        program.Run(NewWith(program, {QStringLiteral("--signature"), QStringLiteral("\u00a9 Anna"),
                                      QStringLiteral("--tree"), program.Path(QStringLiteral("tree"))}));
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(StampsOf(program).size(), 6); // two galleries, three classes each
    EXPECT_TRUE(StampsOf(program)[5].startsWith(QStringLiteral(
        "text_stamp index=\"2\" position=\"10\" margin=\"10\" font=\"MS Sans Serif\" text=\"\u00a9 Anna\"")))
        << qPrintable(StampsOf(program)[5]);
}

TEST(StampOptions, ChooseClassPositionAndMargin)
{
    const struct {
        const char* sizeClass;
        const char* position;
        const char* expected;
        int count;
    } rows[] = {
        {"small", "top-left", "index=\"0\" position=\"5\" margin=\"3\"", 2},
        {"middle", "top", "index=\"1\" position=\"4\" margin=\"3\"", 2},
        {"large", "top-right", "index=\"2\" position=\"6\" margin=\"3\"", 2},
        {"all", "left", "index=\"0\" position=\"1\" margin=\"3\"", 6},
        {"large", "centre", "index=\"2\" position=\"0\" margin=\"3\"", 2},
        {"large", "right", "index=\"2\" position=\"2\" margin=\"3\"", 2},
        {"large", "bottom-left", "index=\"2\" position=\"9\" margin=\"3\"", 2},
        {"large", "bottom", "index=\"2\" position=\"8\" margin=\"3\"", 2},
        {"large", "bottom-right", "index=\"2\" position=\"10\" margin=\"3\"", 2},
        {"large", "0", "index=\"2\" position=\"0\" margin=\"3\"", 2},
        {"large", "15", "index=\"2\" position=\"15\" margin=\"3\"", 2},
    };
    for (const auto& row : rows) {
        const CProgram program;
        const QString watermark = program.WritePicture(QStringLiteral("w.png"));
        const ProgramResult result = program.Run(
            NewWith(program, {QStringLiteral("--watermark"), watermark, QStringLiteral("--signature=x"),
                              QStringLiteral("--margin=3"), QStringLiteral("--position"),
                              QString::fromLatin1(row.position), QStringLiteral("--size-class"),
                              QString::fromLatin1(row.sizeClass)}));
        ASSERT_EQ(result.exitCode, 0) << qPrintable(result.errors);
        const QStringList stamps = StampsOf(program);
        ASSERT_EQ(stamps.size(), row.count) << row.sizeClass;
        EXPECT_TRUE(stamps[0].startsWith(QStringLiteral("image_stamp ") + QString::fromLatin1(row.expected)))
            << qPrintable(stamps[0]);
        EXPECT_TRUE(stamps[0].contains(QStringLiteral("file=\"%1\"").arg(watermark)));
        EXPECT_TRUE(stamps[row.count / 2].startsWith(QStringLiteral("text_stamp ") +
                                                     QString::fromLatin1(row.expected)))
            << qPrintable(stamps[row.count / 2]);
    }
}

TEST(StampOptions, WrongValuesAreWrongUse)
{
    const CProgram program;
    const struct {
        QStringList options;
        const char* reason;
    } rows[] = {
        {{QStringLiteral("--position=left")}, "'--position' needs '--watermark' or '--signature'."},
        {{QStringLiteral("--margin=3")}, "'--margin' needs '--watermark' or '--signature'."},
        {{QStringLiteral("--size-class=all")}, "'--size-class' needs '--watermark' or '--signature'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--position=16")},
         "'16' is no value for the option '--position'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--position=-1")},
         "'-1' is no value for the option '--position'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--position=middle")},
         "'middle' is no value for the option '--position'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--position=")},
         "'' is no value for the option '--position'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--margin=-1")},
         "'-1' is no value for the option '--margin'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--margin=1e3")},
         "'1e3' is no value for the option '--margin'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--margin=99999999999")},
         "'99999999999' is no value for the option '--margin'."},
        {{QStringLiteral("--signature=x"), QStringLiteral("--size-class=huge")},
         "'huge' is no value for the option '--size-class'."},
        {{QStringLiteral("--signature=")}, "'' is no value for the option '--signature'."},
        {{QStringLiteral("--watermark")}, "The option '--watermark' needs a value."},
    };
    for (const auto& row : rows) {
        const ProgramResult result = program.Run(NewWith(program, row.options));
        EXPECT_EQ(result.exitCode, 2) << row.reason;
        EXPECT_TRUE(result.errors.startsWith(QString::fromLatin1(row.reason) + QStringLiteral("\nUsage:\n")))
            << qPrintable(result.errors);
    }
    EXPECT_TRUE(program.scratch.ListFiles().isEmpty());
}

TEST(StampOptions, AWatermarkThatCannotBeUsedIsNamedAndNothingIsWritten)
{
    const CProgram program;
    const QString missing = program.Path(QStringLiteral("missing.png"));
    const QString text = program.scratch.Write(QStringLiteral("text.png"), "text");
    const struct {
        QString file;
        QString caption;
        QString description;
    } rows[] = {
        {missing, QStringLiteral("Could not open file %1.").arg(missing),
         QStringLiteral("Probably the file does not exist.")},
        {text, QStringLiteral("The watermark %1 can't be used.").arg(text),
         QStringLiteral("It is not a picture of a known format.")},
    };
    for (const auto& row : rows) {
        const ProgramResult result = program.Run(NewWith(program, {QStringLiteral("--watermark"), row.file}));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.GetFailure()[QStringLiteral("caption")], row.caption);
        EXPECT_EQ(result.GetFailure()[QStringLiteral("description")], row.description);
        EXPECT_FALSE(result.GetFailure()[QStringLiteral("advice")].isEmpty());
    }
    EXPECT_EQ(program.scratch.ListFiles(), QStringList{QStringLiteral("text.png")});
}

TEST(StampOptions, AreSeenOnThePublishedPictures)
{
    CProgram program;
    program.UseOwnData();
    program.WriteLayout("<%picture id=\"a\" width=\"640\" height=\"480\" href=\"\"%>"
                        "<%picture id=\"a\" width=\"150\" height=\"150\" href=\"\"%>");
    const QString photo = program.WritePicture(QStringLiteral("photo.jpg"), QSize(640, 480));
    const QString watermark = program.WritePicture(QStringLiteral("w.png"), QSize(40, 30));
    const ProgramResult made =
        program.Run(NewWith(program, {QStringLiteral("--watermark"), watermark, QStringLiteral("--signature"),
                                      QStringLiteral("Anna"), QStringLiteral("--size-class=large"),
                                      QStringLiteral("--position=top-left"), photo}));
    ASSERT_EQ(made.exitCode, 0) << qPrintable(made.errors);
    const ProgramResult result =
        program.Run({QStringLiteral("deploy"), program.Path(QStringLiteral("p.gallery")),
                     program.Path(QStringLiteral("site"))});
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    EXPECT_EQ(result.errors, QString()); // no font library has said anything
    QStringList pictures;
    for (const QString& file : program.scratch.ListFiles()) {
        if (file.startsWith(QStringLiteral("site/pictures/"))) {
            pictures += file.section(QLatin1Char('/'), -1);
        }
    }
    ASSERT_EQ(pictures.size(), 2);
    EXPECT_EQ(pictures[0], QStringLiteral("photo150150.jpg"));
    EXPECT_TRUE(pictures[1].startsWith(QStringLiteral("photo640480g"))) << qPrintable(pictures[1]);
    EXPECT_TRUE(pictures[1].endsWith(QStringLiteral("5as0t3825a525422.jpg"))) << qPrintable(pictures[1]);
    EXPECT_NE(CImage::FromFile(program.Path(QStringLiteral("site/pictures/") + pictures[1])).GetRgba(),
              CImage::FromFile(photo).GetRgba());
}
