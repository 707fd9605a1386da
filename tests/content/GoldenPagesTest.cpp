#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "effects/ImageEffectStamp.h"
#include "support/GoldenFile.h"
#include "support/ProjectFixture.h"
#include "support/ScratchFolder.h"

// Whole published pages. A case is a folder of golden/: a project with a layout and a style of its own, and
// the pages that must come of it in "expected". Its pictures are made by the test; the project finds them by
// name. "@e.png@" in an expected page is the sum of the characters of that picture's path, which is another
// one in each run.

namespace {

QStringList PagesIn(const QString& folder)
{
    return FilesBelow(folder, {QStringLiteral("*.html")});
}

class CNoProgress final : public CGenerationProgress {
public:
    void OnPageDone(int32_t, int32_t) override {}
};

class GoldenPages : public testing::TestWithParam<const char*> {
protected:
    QString Golden() const
    {
        return QStringLiteral(GOLDEN_FOLDER "/%1").arg(QString::fromLatin1(GetParam()));
    }

    QString PreparedProject() const
    {
        const QString folder = fixture.scratch.Path(QStringLiteral("case"));
        CopyDirectoryTree(Golden(), folder);
        for (const char* name : {"a", "b", "c d", "e", "f", "g", "h"}) {
            const QString file = QString::fromLatin1(name) + QStringLiteral(".png");
            WriteFileAtomically(JoinPath(folder, file), ReadWholeFile(fixture.WritePicture(file)));
        }
        return JoinPath(folder, QStringLiteral("project.gallery"));
    }

    // As it stands in the names of covers, after a "g".
    QByteArray SumOfPicture() const
    {
        const QString picture =
            JoinPath(fixture.scratch.Path(QStringLiteral("case")), QStringLiteral("e.png"));
        return 'g' + QByteArray::number(CharSum(picture));
    }

    QByteArray ExpectedPage(const QString& path) const
    {
        return ReadWholeFile(path).replace("g@e.png@", SumOfPicture());
    }

    void Renew(const QString& expected, const QString& site) const
    {
        for (const QString& page : PagesIn(expected)) {
            QFile::remove(JoinPath(expected, page));
        }
        for (const QString& page : PagesIn(site)) {
            RenewGoldenFile(JoinPath(expected, page),
                            ReadWholeFile(JoinPath(site, page)).replace(SumOfPicture(), "g@e.png@"));
        }
    }

    CProjectFixture fixture;
};

} // namespace

TEST_P(GoldenPages, ComeOutByteForByte)
{
    CGalleryProject& project = fixture.OpenProject(PreparedProject());
    project.SetPreviewMode(false);
    const QString site = fixture.scratch.Path(QStringLiteral("site"));
    CNoProgress progress;
    GeneratePages(project, {site}, CStopSignal(), progress);

    const QString expected = Golden() + QStringLiteral("/expected");
    if (RenewsGoldenFiles()) {
        Renew(expected, site);
        GTEST_SKIP() << GoldenFilesAreRenewed;
    }
    EXPECT_EQ(PagesIn(site), PagesIn(expected));
    for (const QString& page : PagesIn(expected)) {
        EXPECT_EQ(ReadWholeFile(JoinPath(site, page)), ExpectedPage(JoinPath(expected, page)))
            << qPrintable(page);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenPages, testing::Values("blog", "furniture", "navigation", "tree"));
