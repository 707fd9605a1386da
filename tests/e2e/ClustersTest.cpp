#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

// A tree of pictures of known dates: four in the root, two in its child "Winter".
class Clusters : public testing::Test {
protected:
    Clusters()
    {
        program.WriteLayout("page");
        const struct {
            const char* name;
            QDate day;
        } pictures[] = {
            {"a.jpg", QDate(2005, 3, 1)},        {"b.jpg", QDate(2005, 3, 2)},
            {"c.jpg", QDate(2005, 3, 2)},        {"d.jpg", QDate(2007, 8, 9)},
            {"Winter/w.jpg", QDate(2007, 8, 9)}, {"Winter/x.jpg", QDate(2008, 1, 1)},
        };
        for (const auto& picture : pictures) {
            QFile file(program.scratch.Write(QStringLiteral("tree/") + QLatin1String(picture.name), "x"));
            EXPECT_TRUE(file.open(QIODevice::ReadWrite));
            EXPECT_TRUE(
                file.setFileTime(QDateTime(picture.day, QTime(12, 0)), QFileDevice::FileModificationTime));
        }
        project = program.Path(QStringLiteral("trip.gallery"));
        const ProgramResult made = program.Run(
            {QStringLiteral("new"), project, QStringLiteral("--tree"), program.Path(QStringLiteral("tree"))});
        EXPECT_EQ(made.exitCode, 0) << qPrintable(made.errors);
    }

    ProgramResult Info(const QStringList& options) const
    {
        return program.Run(QStringList{QStringLiteral("info"), project} + options);
    }

    CProgram program;
    QString project;
};

// "label(pictures)[children]" for each cluster.
QString Summary(const QJsonArray& clusters)
{
    QStringList texts;
    for (const QJsonValue& value : clusters) {
        const QJsonObject cluster = value.toObject();
        QStringList pictures;
        for (const QJsonValue& path : cluster[QStringLiteral("pictures")].toArray()) {
            pictures += path.toString().section(QLatin1Char('/'), -1);
        }
        QStringList children;
        for (const QJsonValue& child : cluster[QStringLiteral("children")].toArray()) {
            children += QString::number(child.toInt());
        }
        texts += QStringLiteral("%1(%2)[%3]")
                     .arg(cluster[QStringLiteral("label")].toString(), pictures.join(QLatin1Char(',')),
                          children.join(QLatin1Char(',')));
    }
    return texts.join(QStringLiteral(" | "));
}

} // namespace

TEST_F(Clusters, AreListedBelowTheirGallery)
{
    const ProgramResult info = Info({QStringLiteral("--clusters"), QStringLiteral("2")});
    EXPECT_EQ(info.exitCode, 0) << qPrintable(info.errors);
    EXPECT_EQ(info.output, QStringLiteral("trip\n"
                                          "0: trip, layout Own, style Plain, 4 pictures\n"
                                          "    March 2005: 3 pictures\n"
                                          "    Thursday, 9 August 2007: 2 pictures\n"
                                          "  1: Winter, layout Own, style Plain, 2 pictures\n"
                                          "      2007 - 2008: 2 pictures\n"));
    const ProgramResult days = Info({QStringLiteral("--clusters=1")});
    EXPECT_TRUE(days.output.contains(QStringLiteral("\n    Tuesday, 1 March 2005: 1 pictures\n")))
        << qPrintable(days.output);
}

TEST_F(Clusters, StandInTheJsonOfTheirGallery)
{
    const ProgramResult info =
        Info({QStringLiteral("--json"), QStringLiteral("--clusters"), QStringLiteral("2")});
    const QJsonArray galleries =
        QJsonDocument::fromJson(info.output.toUtf8()).object()[QStringLiteral("galleries")].toArray();
    ASSERT_EQ(galleries.size(), 2);
    EXPECT_EQ(Summary(galleries[0].toObject()[QStringLiteral("clusters")].toArray()),
              QStringLiteral("March 2005(a.jpg,b.jpg,c.jpg)[] | Thursday, 9 August 2007(d.jpg)[1]"));
    EXPECT_EQ(Summary(galleries[1].toObject()[QStringLiteral("clusters")].toArray()),
              QStringLiteral("2007 - 2008(w.jpg,x.jpg)[]"));
    EXPECT_FALSE(Info({QStringLiteral("--json")}).output.contains(QStringLiteral("clusters")));
}

TEST_F(Clusters, SpeakTheUsersLanguage)
{
    const struct {
        const char* locale;
        const char* month;
    } rows[] = {{"de_DE.UTF-8", "M\u00e4rz 2005"},
                {"fr_FR.UTF-8", "mars 2005"},
                {"ru_RU.UTF-8", "\u043c\u0430\u0440\u0442 2005"},
                {"hu_HU.UTF-8", "2005 m\u00e1rcius"}};
    for (const auto& row : rows) {
        const ProgramResult info = program.RunInShell(
            QStringLiteral("LC_ALL=%1 \"$program\" info \"$1\" --clusters 2").arg(QLatin1String(row.locale)),
            {project});
        const QString expected = QStringLiteral("    %1: 3 pictures\n").arg(QString::fromUtf8(row.month));
        EXPECT_TRUE(info.output.contains(expected)) << qPrintable(info.output);
    }
}

TEST_F(Clusters, ASizeThatIsNoPositiveNumberIsWrongUse)
{
    for (const char* size : {"0", "-1", "", "two", "2.5", "1e3", "2147483648", "0x10", "2 3"}) {
        const QString text = QLatin1String(size);
        const ProgramResult info = Info({QStringLiteral("--clusters"), text});
        EXPECT_EQ(info.exitCode, 2) << size;
        EXPECT_EQ(info.output, QString());
        EXPECT_TRUE(info.errors.startsWith(
            QStringLiteral("The option '--clusters' needs a number from 1 on, not '%1'.\nUsage:\n")
                .arg(text)))
            << qPrintable(info.errors);
    }
    const ProgramResult bare = Info({QStringLiteral("--clusters")});
    EXPECT_EQ(bare.exitCode, 2);
    EXPECT_TRUE(bare.errors.startsWith(QStringLiteral("The option '--clusters' needs a value.\n")));
}
