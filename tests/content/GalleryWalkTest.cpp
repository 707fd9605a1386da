#include "content/GalleryWalk.h"

#include <gtest/gtest.h>

#include "PlainGenerator.h"
#include "common/StopSignal.h"
#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"

namespace {

class CCountingProcessor final : public CGalleryTemplatesProcessor {
public:
    bool ProcessPage(CCompoundTemplateSection&, CImageIterator&, bool) override
    {
        ++pageCount;
        return true;
    }
    void ProcessGallery(const QString& folder, const CGallery&) override { lastFolder = folder; }

    int pageCount = 0;
    QString lastFolder;
};

} // namespace

TEST(GalleryWalk, ALineOfGalleriesLongerThanTheStackIsDeepIsWalkedToItsEnd)
{
    constexpr int depth = 40'000;
    CProjectFixture fixture;
    fixture.WriteLayout(QStringLiteral("One"), "<page file=\"index.html\"/>");
    fixture.WritePage(QStringLiteral("One"), QStringLiteral("index.html"), "page");
    QByteArray xml = "<project version=\"2.0\">";
    for (int index = 0; index < depth; ++index) {
        const QByteArray child = QByteArray::number(index + 1);
        xml += "<gallery index=\"" + QByteArray::number(index) +
               "\"><style template_page=\"\"/><picture_list><picture index=\"" + child +
               "\"/></picture_list></gallery>";
    }
    CGalleryProject& project =
        fixture.OpenProject(fixture.scratch.Write(QStringLiteral("deep.gallery"), xml + "</project>"));
    CPlainGenerator generator;
    CStopSignal stop;
    CCountingProcessor processor;
    EXPECT_TRUE(CGalleryWalk(project, generator, stop).Run(processor));
    EXPECT_EQ(processor.pageCount, depth);
    EXPECT_EQ(processor.lastFolder, QStringLiteral("/%1").arg(depth - 1));
    stop.Set();
    EXPECT_FALSE(CGalleryWalk(project, generator, stop).Run(processor));
}
