#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Tool.h"
#include "common/FileSystem.h"
#include "common/ProgramIdentity.h"
#include "imaging/Image.h"
#include "support/ScratchFolder.h"

namespace {

QString Captured(const QString& text, const char* pattern)
{
    return QRegularExpression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption)
        .match(text)
        .captured(1);
}

QString DesktopEntry()
{
    return Installed(QStringLiteral("share/applications/%1.desktop").arg(GetApplicationId()));
}

QString Metadata()
{
    return Installed(QStringLiteral("share/metainfo/%1.metainfo.xml").arg(GetApplicationId()));
}

void ExpectSquareIcon(const QString& path, int size)
{
    const CImage icon = CImage::FromFile(path);
    EXPECT_EQ(icon.GetSize(), QSize(size, size)) << qPrintable(path);
    const QByteArray pixels = icon.GetRgba();
    ASSERT_EQ(pixels.size(), size * size * 4) << qPrintable(path);
    // Transparent corners, and a drawing in the middle.
    EXPECT_EQ(pixels[3], '\0') << qPrintable(path);
    EXPECT_EQ(pixels[(size / 2 * size + size / 2) * 4 + 3], '\xff') << qPrintable(path);
}

} // namespace

TEST(DesktopFiles, TheDesktopEntryIsValidAndStartsTheProgram)
{
    const ToolResult result = RunTool(QStringLiteral("desktop-file-validate"), {DesktopEntry()});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.output);
    EXPECT_EQ(result.output, QString());
    const QString entry = ReadText(DesktopEntry());
    EXPECT_EQ(Captured(entry, "^Exec=(.*)$"), QStringLiteral("vistorama %f"));
    EXPECT_TRUE(FileExists(Installed(QStringLiteral("bin/vistorama"))));
}

TEST(DesktopFiles, TheMetadataIsValidAndNamesThisVersion)
{
    const ToolResult result =
        RunTool(QStringLiteral("appstreamcli"), {QStringLiteral("validate"), QStringLiteral("--no-net"),
                                                 QStringLiteral("--no-color"), Metadata()});
    // The program has no home page, which newer versions of the tool miss.
    const QStringList findings = result.output.split(QLatin1Char('\n'))
                                     .filter(QRegularExpression(QStringLiteral("^[EW]: (?!.*url-homepage)")));
    EXPECT_EQ(findings, QStringList()) << qPrintable(result.output);
    EXPECT_TRUE(result.output.contains(QStringLiteral("Validation"))) << qPrintable(result.output);
    const QString metadata = ReadText(Metadata());
    EXPECT_EQ(Captured(metadata, "<release version=\"([^\"]*)\""), VersionOfProject());
    EXPECT_EQ(Captured(metadata, "<release [^>]*date=\"([^\"]*)\""),
              Captured(ReadText(QStringLiteral("CHANGELOG.md")), "^## \\[[0-9.]+\\] - (.*)$"));
}

TEST(DesktopFiles, OneIdGoesThroughAllOfThem)
{
    const QString id = GetApplicationId();
    const QString entry = ReadText(DesktopEntry());
    const QString metadata = ReadText(Metadata());
    EXPECT_EQ(Captured(entry, "^Icon=(.*)$"), id);
    EXPECT_EQ(Captured(metadata, "<id>(.*)</id>"), id);
    EXPECT_EQ(Captured(metadata, "<launchable type=\"desktop-id\">(.*)</launchable>"),
              id + QStringLiteral(".desktop"));
    EXPECT_EQ(Captured(metadata, "<icon type=\"stock\">(.*)</icon>"), id);
    const QString type = QStringLiteral("application/x-vistorama-gallery");
    EXPECT_EQ(Captured(entry, "^MimeType=(.*);$"), type);
    EXPECT_EQ(Captured(metadata, "<mediatype>(.*)</mediatype>"), type);
    EXPECT_EQ(Captured(ReadText(Installed(QStringLiteral("share/mime/packages/%1.xml").arg(id))),
                       "<mime-type type=\"(.*)\">"),
              type);
}

TEST(DesktopFiles, IconsOfAllSizesAreDrawn)
{
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QString folder = Installed(QStringLiteral("share/icons/hicolor/%1x%1/").arg(size));
        ExpectSquareIcon(folder + QStringLiteral("apps/%1.png").arg(GetApplicationId()), size);
        ExpectSquareIcon(folder + QStringLiteral("mimetypes/application-x-vistorama-gallery.png"), size);
    }
    const QString drawing =
        Installed(QStringLiteral("share/icons/hicolor/scalable/apps/%1.svg").arg(GetApplicationId()));
    EXPECT_EQ(ReadText(drawing), ReadText(QStringLiteral("src/shell/look/artwork/vistorama.svg")));
}

// What the desktop's own database makes of files.
TEST(DesktopFiles, ProjectsAreKnownByNameAndByContent)
{
    const CScratchFolder scratch;
    const QString packages = scratch.Path(QStringLiteral("share/mime/packages"));
    MakeDirectoryPath(packages);
    CopyDirectoryTree(Installed(QStringLiteral("share/mime/packages")), packages);
    for (const QString& file :
         QDir(QStringLiteral("/usr/share/mime/packages")).entryList({QStringLiteral("freedesktop*")})) {
        QFile::copy(QStringLiteral("/usr/share/mime/packages/") + file, packages + '/' + file);
    }
    const ToolResult update =
        RunTool(QStringLiteral("update-mime-database"), {scratch.Path(QStringLiteral("share/mime"))});
    ASSERT_EQ(update.exitCode, 0) << qPrintable(update.errors);
    // The database is read when it is first asked, once in a process; each test has one of its own.
    qputenv("XDG_DATA_DIRS", scratch.Path(QStringLiteral("share")).toUtf8());
    qputenv("XDG_DATA_HOME", scratch.Path(QStringLiteral("home")).toUtf8());
    const QMimeDatabase database;

    const QByteArray project = ReadText(QStringLiteral("data/sample/sample.gallery")).toUtf8().left(2000);
    const QString type = QStringLiteral("application/x-vistorama-gallery");
    const struct {
        const char* name;
        QByteArray bytes;
        QString type;
    } rows[] = {
        {"trip.gallery", project, type},
        {"TRIP.GALLERY", "", type},
        {"trip", project, type},
        {"trip.gallery", "no project", type},
        {"a.xml", "<?xml version=\"1.0\"?><project version=\"4\"/>", QStringLiteral("application/xml")},
        {"a", "<project version=\"4\"><component name=\"x\"/></project>", QStringLiteral("text/plain")},
    };
    for (const auto& row : rows) {
        const QMimeType found = database.mimeTypeForFileNameAndData(QString::fromLatin1(row.name), row.bytes);
        EXPECT_EQ(found.name(), row.type) << row.name;
    }
    const QMimeType projectType = database.mimeTypeForName(type);
    EXPECT_TRUE(projectType.inherits(QStringLiteral("application/xml")));
    EXPECT_EQ(projectType.iconName(), QStringLiteral("application-x-vistorama-gallery"));
    EXPECT_EQ(projectType.comment(), QStringLiteral("Vistorama project"));
}
