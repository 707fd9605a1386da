#include "content/ContentGeneratorFolder.h"

#include <sstream>

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/ImageProduction.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "effects/FileNames.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"

namespace {

class CNoListener final : public CImageProduction::Listener {
public:
    void OnPageDone() override {}
};

class ContentGeneratorFolder : public testing::Test {
protected:
    ContentGeneratorFolder()
        : production(listener, stop),
          generator({.targetFolder = fixture.scratch.Path(QStringLiteral("site")),
                     .bannerServer = QStringLiteral("http://banner.example/?a=1")},
                    production)
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
        iterator.Init(fixture.GetRoot());
        iterator.Reset();
    }

    CProjectFixture fixture;
    CNoListener listener;
    CStopSignal stop;
    CImageProduction production;
    ::CContentGeneratorFolder generator;
    CGalleryIterator iterator;
};

} // namespace

TEST_F(ContentGeneratorFolder, MakesThePictureFolderOfEachGallery)
{
    EXPECT_TRUE(FolderExists(fixture.scratch.Path(QStringLiteral("site/pictures"))));
    generator.SetOutputFolder(fixture.scratch.Path(QStringLiteral("site/12/3")));
    EXPECT_TRUE(FolderExists(fixture.scratch.Path(QStringLiteral("site/12/3/pictures"))));
}

TEST_F(ContentGeneratorFolder, WritesABannerWithTheSizesOfTheLayout)
{
    std::ostringstream out;
    generator.GenerateBanner("468", "sixty", out);
    EXPECT_EQ(
        out.str(),
        "<iframe border=\"0\" width=\"468\" height=\"sixty\" src=\"http://banner.example/?a=1\"></iframe>");
}

TEST_F(ContentGeneratorFolder, WritesNoBlockForAnAdvertisementWithoutText)
{
    CGallery& root = fixture.GetRoot();
    root.GetTexts().advertisements[root.GetLayout().GetTemplatePage()][QStringLiteral("none")] = QString();
    std::ostringstream out;
    generator.GenerateAdvertisement(iterator, "none", out);
    EXPECT_EQ(out.str(), "");
}

TEST_F(ContentGeneratorFolder, WritesAnAdvertisementUnescapedAlsoWhenItIsEmpty)
{
    std::ostringstream empty;
    generator.GenerateAdvertisement(iterator, "top", empty);
    EXPECT_EQ(empty.str(), "<div>\n\n</div>");
}

TEST_F(ContentGeneratorFolder, ThePageKnowsItsAddressFromTheBrowser)
{
    std::ostringstream out;
    generator.GeneratePageHeader(iterator, out);
    EXPECT_NE(out.str().find("\t\treturn  new String( document.location );\n"), std::string::npos)
        << out.str();
}

TEST_F(ContentGeneratorFolder, ImagesGoToThePictureFolderAndAreAlwaysMadeAnew)
{
    const QString source = fixture.WritePicture(QStringLiteral("a b.jpg"));
    const QString old = fixture.scratch.Write(QStringLiteral("site/pictures/a10b.jpg"), "old");
    EXPECT_EQ(generator.GetImageName(source, std::make_shared<CImageEffectRename>()),
              QStringLiteral("pictures/a10b.jpg"));
    production.Finish();
    EXPECT_EQ(CImage::FromFile(old).GetSize(), QSize(40, 30));
}
