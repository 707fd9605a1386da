#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Tool.h"
#include "support/ScratchFolder.h"

namespace {

QString PackageFile()
{
    const QDir folder(QStringLiteral(PACKAGE_FOLDER));
    const QStringList names = folder.entryList({QStringLiteral("vistorama_*.deb")});
    EXPECT_EQ(names.size(), 1);
    return folder.filePath(names.value(0));
}

QString Field(const QString& name)
{
    return RunTool(QStringLiteral("dpkg-deb"), {QStringLiteral("--field"), PackageFile(), name})
        .output.trimmed();
}

// The packages of the libraries that a program is linked with, by the package database of this machine.
QStringList PackagesOfLibraries(const QString& program)
{
    static const QRegularExpression library(QStringLiteral("=> (/\\S+)"));
    const QString linked = RunTool(QStringLiteral("ldd"), {program}).output;
    const QString needed = RunTool(QStringLiteral("readelf"), {QStringLiteral("--dynamic"), program}).output;
    QStringList paths;
    auto matches = library.globalMatch(linked);
    while (matches.hasNext()) {
        const QString path = matches.next().captured(1);
        // Not a library of a library.
        if (needed.contains('[' + path.section('/', -1) + ']')) {
            // The database has some paths from before /lib became a link to /usr/lib.
            paths += {path, QStringLiteral("/usr") + path};
        }
    }
    QStringList packages;
    const QString owners =
        RunTool(QStringLiteral("dpkg-query"), QStringList{QStringLiteral("--search")} + paths).output;
    for (const QString& owner : owners.split('\n', Qt::SkipEmptyParts)) {
        packages += owner.section(':', 0, 0);
    }
    packages.removeDuplicates();
    return packages;
}

} // namespace

TEST(Package, NamesItselfAndThisVersion)
{
    EXPECT_EQ(Field(QStringLiteral("Package")), QStringLiteral("vistorama"));
    EXPECT_EQ(Field(QStringLiteral("Version")), VersionOfProject());
    EXPECT_EQ(Field(QStringLiteral("Section")), QStringLiteral("graphics"));
    EXPECT_FALSE(Field(QStringLiteral("Maintainer")).isEmpty());
}

TEST(Package, DependsOnThePackageOfEachLibraryThatAProgramIsLinkedWith)
{
    const QString depends = Field(QStringLiteral("Depends"));
    for (const char* program : {"bin/vistorama", "bin/vistorama-cli"}) {
        const QStringList packages = PackagesOfLibraries(Installed(QString::fromLatin1(program)));
        EXPECT_GT(packages.size(), 8) << program;
        for (const QString& package : packages) {
            EXPECT_TRUE(QRegularExpression(
                            QStringLiteral("(^|, )%1( \\(|,|$)").arg(QRegularExpression::escape(package)))
                            .match(depends)
                            .hasMatch())
                << qPrintable(package + QStringLiteral(" in ") + depends);
        }
    }
    // No executable is linked with these.
    for (const char* needed : {"fonts-dejavu-core", "hicolor-icon-theme", "libqt6webenginecore6-bin"}) {
        EXPECT_TRUE(depends.contains(QString::fromLatin1(needed))) << needed;
    }
}

TEST(Package, HoldsTheInstalledFilesWithTheRightsOfAPackage)
{
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("content"));
    ASSERT_EQ(
        RunTool(QStringLiteral("dpkg-deb"), {QStringLiteral("--extract"), PackageFile(), folder}).exitCode,
        0);
    EXPECT_EQ(FilesBelow(folder + QStringLiteral("/usr")), FilesBelow(Installed(QString())));
    const QString list =
        RunTool(QStringLiteral("dpkg-deb"), {QStringLiteral("--contents"), PackageFile()}).output;
    static const QRegularExpression line(QStringLiteral("^(\\S+) (\\S+) .* \\./(.*)$"));
    for (const QString& entry : list.split('\n', Qt::SkipEmptyParts)) {
        const auto match = line.match(entry);
        const QString name = match.captured(3);
        const bool runs = name.startsWith(QStringLiteral("usr/bin/")) || name.endsWith('/') || name.isEmpty();
        EXPECT_EQ(match.captured(1).mid(1), runs ? QStringLiteral("rwxr-xr-x") : QStringLiteral("rw-r--r--"))
            << qPrintable(entry);
        EXPECT_EQ(match.captured(2), QStringLiteral("root/root")) << qPrintable(entry);
    }
}

TEST(Package, HoldsNoDebuggingInformation)
{
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("content"));
    RunTool(QStringLiteral("dpkg-deb"), {QStringLiteral("--extract"), PackageFile(), folder});
    for (const char* program : {"/usr/bin/vistorama", "/usr/bin/vistorama-cli"}) {
        const ToolResult sections =
            RunTool(QStringLiteral("readelf"), {QStringLiteral("--section-headers"), QStringLiteral("--wide"),
                                                folder + QString::fromLatin1(program)});
        EXPECT_EQ(sections.exitCode, 0);
        EXPECT_TRUE(sections.output.contains(QStringLiteral(".text")));
        EXPECT_FALSE(sections.output.contains(QStringLiteral(".debug_"))) << program;
        EXPECT_FALSE(sections.output.contains(QStringLiteral(".symtab"))) << program;
    }
}

TEST(Package, ItsChangelogIsThatOfTheProject)
{
    const ToolResult parsed =
        RunTool(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("zcat \"$1\" | dpkg-parsechangelog -l- --all"),
                 QStringLiteral("sh"), Installed(QStringLiteral("share/doc/vistorama/changelog.gz"))});
    EXPECT_EQ(parsed.exitCode, 0);
    EXPECT_EQ(parsed.errors, QString());
    EXPECT_TRUE(parsed.output.contains(QStringLiteral("\nVersion: %1\n").arg(VersionOfProject())));
    EXPECT_TRUE(
        parsed.output.contains(QStringLiteral("\nMaintainer: ") + Field(QStringLiteral("Maintainer"))));
    const auto items =
        ReadText(QStringLiteral("CHANGELOG.md")).count(QRegularExpression(QStringLiteral("\n- ")));
    EXPECT_EQ(parsed.output.count(QRegularExpression(QStringLiteral("\n   \\* "))), items);
}
