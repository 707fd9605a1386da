#include "document/project/ProjectFilePath.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "support/ScratchFolder.h"

namespace {

// The reason why the path is refused; empty if it isn't.
QString RefusalOf(const QString& path)
{
    try {
        RequireProjectFile(path);
    } catch (const CGenericException& failure) {
        EXPECT_EQ(failure.GetCaption(), QStringLiteral("The file %1 is not a gallery project.").arg(path));
        return failure.GetDescription();
    }
    return QString();
}

} // namespace

TEST(ProjectFilePath, TheEndingMayBeMissing)
{
    const CScratchFolder scratch;
    QDir().mkpath(scratch.Path(QStringLiteral("Folder")));
    QDir().mkpath(scratch.Path(QStringLiteral("Both")));
    scratch.Write(QStringLiteral("Both.gallery"), "");
    scratch.Write(QStringLiteral("notes"), "");
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"Trip", "Trip.gallery"},
        {"Trip.2024", "Trip.2024.gallery"},
        {"Trip.gallery", "Trip.gallery"},
        {"Trip.GALLERY", "Trip.GALLERY"},
        {"Both", "Both.gallery"},
        {"Folder", "Folder"}, // it is there, and is what the person has named
        {"notes", "notes"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WithProjectEnding(scratch.Path(QString::fromLatin1(row.name))),
                  scratch.Path(QString::fromLatin1(row.expected)));
    }
    EXPECT_EQ(WithProjectEnding(QString()), QString());
}

// Any XML can be read as a project; a drawing that is opened by mistake must not become one.
TEST(ProjectFilePath, AFileOfAnotherKindIsNoProject)
{
    const CScratchFolder scratch;
    EXPECT_EQ(RefusalOf(scratch.Write(QStringLiteral("drawing.svg"), "<svg/>")),
              QStringLiteral("The name of a project ends in \".gallery\"."));
    EXPECT_EQ(RefusalOf(scratch.Write(QStringLiteral("a.GALLERY"), "")), QString());
    EXPECT_EQ(RefusalOf(scratch.Path(QStringLiteral("new one"))), QString());
}

TEST(ProjectFilePath, WhatIsNoFileIsNoProject)
{
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("folder.gallery"));
    QDir().mkpath(folder);
    EXPECT_EQ(RefusalOf(folder), QStringLiteral("It is a folder."));

    const QString noFile = QStringLiteral(
        "It can't be read as a file: it is a pipe, a socket or a device, or a link that leads in a circle.");
    const QString pipe = scratch.Path(QStringLiteral("pipe.gallery"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(RefusalOf(pipe), noFile);
    EXPECT_EQ(RefusalOf(QStringLiteral("/dev/zero")), noFile);
    const QString device = scratch.Path(QStringLiteral("device.gallery"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), device));
    EXPECT_EQ(RefusalOf(device), noFile);

    const QString circle = scratch.Path(QStringLiteral("circle.gallery"));
    ASSERT_TRUE(QFile::link(circle, circle));
    EXPECT_EQ(RefusalOf(circle), noFile);
    const QString dangling = scratch.Path(QStringLiteral("dangling.gallery"));
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("not there.gallery")), dangling));
    EXPECT_EQ(RefusalOf(dangling), QString());
}
