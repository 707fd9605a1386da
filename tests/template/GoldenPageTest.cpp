#include <QDir>
#include <QFile>

#include "PageRun.h"
#include "support/GoldenFile.h"
#include "support/ScratchFolder.h"
#include "template/TemplateLanguage.h"
#include "template/parser/PageStream.h"

// Whole layouts: each folder of golden/ holds page.html, the files that it includes, and expected.html with
// all pages of a gallery of five pictures as a recording generator writes them. The pages that came out are
// kept in the build folder, to be compared with the expected ones after a failure.

namespace {

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

QString KeepActual(const QString& name, const QByteArray& bytes)
{
    const QString folder = QStringLiteral(ACTUAL_FOLDER);
    EXPECT_TRUE(QDir().mkpath(folder));
    QFile file(folder + QLatin1Char('/') + name + QStringLiteral(".html"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
}

// The loop over the pages as a deployment runs it: one tree for all of them, and one page at least.
std::string GenerateAllPages(const QString& folder)
{
    CTestIterator iterator(5);
    iterator.gallery.Set(QStringLiteral("template_directory"), folder);
    iterator.gallery.Set(QStringLiteral("name"), QStringLiteral("Summer in M\u00fcnchen"));
    iterator.gallery.Set(QStringLiteral("path"), QStringLiteral("C:\\Photos\\Summer"));
    iterator.hiddenElements.insert(QStringLiteral("sidebar"));
    std::ifstream stream = OpenPageFile(folder + QStringLiteral("/page.html"));
    EXPECT_TRUE(stream.good());
    CCompoundTemplateSection root;
    std::string result;
    try {
        ParsePage(stream, root);
        for (int32_t page = 0; page == 0 || page < iterator.GetPageCount(); ++page) {
            result += "=== page " + std::to_string(page) + "\n" + GeneratePage(root, iterator, page);
        }
    } catch (const CTemplateParsingException& error) {
        result += "=== error " + std::to_string(error.errorStart) + " to " + std::to_string(error.errorEnd) +
                  ": " + Narrow(error.GetDescription()) + "\n";
    }
    return result;
}

} // namespace

TEST(GoldenPage, EveryLayoutGivesItsExpectedPages)
{
    const QDir golden(QStringLiteral(GOLDEN_FOLDER));
    const QStringList cases = golden.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    EXPECT_GE(cases.size(), 8);
    for (const QString& name : cases) {
        const QString folder = golden.filePath(name);
        const QByteArray actual = QByteArray::fromStdString(GenerateAllPages(folder));
        const QString expected = folder + QStringLiteral("/expected.html");
        if (RenewsGoldenFiles()) {
            RenewGoldenFile(expected, actual);
            continue;
        }
        const QString kept = KeepActual(name, actual);
        EXPECT_EQ(actual.toStdString(), ReadFile(expected).toStdString()) << qPrintable(kept);
    }
    if (RenewsGoldenFiles()) {
        GTEST_SKIP() << GoldenFilesAreRenewed;
    }
}
