#include <QDir>

#include "SourceTree.h"
#include "support/ScratchFolder.h"

// The tests follow the paths of the sources, so that the test of a class is found by the class's path.

namespace {

const QString Sources = QStringLiteral(SOURCE_FOLDER "/src/");
const QString Tests = QStringLiteral(SOURCE_FOLDER "/tests/");

// "PictureList" gives "document/pictures"; several units may have one name.
std::multimap<QString, QString> FoldersOfUnits()
{
    std::multimap<QString, QString> folders;
    for (const QString& path : FilesBelow(Sources, {QStringLiteral("*.h")})) {
        folders.emplace(path.section(QLatin1Char('/'), -1).chopped(2), path.section(QLatin1Char('/'), 0, -2));
    }
    return folders;
}

} // namespace

TEST(TestPaths, TheTestOfAClassLiesAtThePathOfTheClass)
{
    const auto folders = FoldersOfUnits();
    int found = 0;
    for (const QString& path : FilesBelow(Tests, {QStringLiteral("*Test.cpp")})) {
        const QString folder = path.section(QLatin1Char('/'), 0, -2);
        const auto [first, last] = folders.equal_range(path.section(QLatin1Char('/'), -1).chopped(8));
        bool isThere = first == last; // named after no class: what it tests are several
        for (auto at = first; at != last; ++at) {
            isThere = isThere || at->second == folder;
            ++found;
        }
        EXPECT_TRUE(isThere) << qPrintable(path) << " has the name of a class in src/"
                             << qPrintable(first->second);
    }
    EXPECT_GT(found, 80);
}

TEST(TestPaths, AFolderOfTestsIsOneOfSources)
{
    // Whole programs, documents and the house itself have no folder in src/.
    static const std::set<QString> others = {
        QStringLiteral("browser"), QStringLiteral("desktop"), QStringLiteral("docs"),   QStringLiteral("e2e"),
        QStringLiteral("house"),   QStringLiteral("package"), QStringLiteral("support")};
    for (const QString& path : FilesBelow(Tests, {QStringLiteral("*Test.cpp")})) {
        const QString folder = path.section(QLatin1Char('/'), 0, -2);
        EXPECT_TRUE(others.contains(path.section(QLatin1Char('/'), 0, 0)) || QDir(Sources + folder).exists())
            << qPrintable(path) << ": there is no src/" << qPrintable(folder);
    }
}
