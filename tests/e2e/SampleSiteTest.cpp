#include <gtest/gtest.h>

#include "Site.h"
#include "imaging/Image.h"
#include "support/QtPrinters.h"

// The site of the sample project, which another test has deployed.

namespace {

CSite Site()
{
    return CSite(QStringLiteral(SITE_FOLDER));
}

} // namespace

TEST(SampleSite, HasAPageForEachPicture)
{
    EXPECT_GT(Site().GetPages().filter(QStringLiteral("picture")).size(), 24);
}

TEST(SampleSite, HasNoBrokenLinkAndNoMissingPicture)
{
    EXPECT_EQ(Site().FindBrokenLinks().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, LoadsNothingFromOtherSites)
{
    EXPECT_EQ(Site().FindForeignResources().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, EveryPageIsReachedFromTheFirst)
{
    EXPECT_EQ(Site().FindUnreachablePages().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, EveryPictureDecodes)
{
    const QStringList files = Site().GetFiles().filter(QStringLiteral("pictures/"));
    EXPECT_GT(files.size(), 48);
    for (const QString& file : files) {
        const CImage image = CImage::FromFile(QStringLiteral(SITE_FOLDER "/") + file);
        EXPECT_FALSE(image.GetRgba().isEmpty()) << qPrintable(file);
        EXPECT_EQ(image.GetCondition().state, ImageCondition::State::Whole) << qPrintable(file);
    }
}
