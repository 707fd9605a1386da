#include <gtest/gtest.h>

#include "Program.h"
#include "Site.h"
#include "imaging/Image.h"

namespace {

// The sample project, deployed once for all tests of this file.
class SampleSite : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        program = new CProgram;
        result = program->Run({QStringLiteral("deploy"), QStringLiteral(DATA_FOLDER "/sample/sample.gallery"),
                               program->Path(QStringLiteral("site"))});
    }
    static void TearDownTestSuite()
    {
        delete program;
        program = nullptr;
    }

    static CSite Site() { return CSite(program->Path(QStringLiteral("site"))); }

    static CProgram* program;
    static ProgramResult result;
};

CProgram* SampleSite::program = nullptr;
ProgramResult SampleSite::result;

} // namespace

TEST_F(SampleSite, IsDeployedWithoutAComplaint)
{
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, QString());
    EXPECT_GT(Site().GetPages().size(), 24);
}

TEST_F(SampleSite, HasNoBrokenLinkAndNoMissingPicture)
{
    EXPECT_EQ(Site().FindBrokenLinks().join(QLatin1Char('\n')), QString());
}

TEST_F(SampleSite, LoadsNothingFromOtherSites)
{
    EXPECT_EQ(Site().FindForeignResources().join(QLatin1Char('\n')), QString());
}

TEST_F(SampleSite, EveryPageIsReachedFromTheFirst)
{
    EXPECT_EQ(Site().FindUnreachablePages().join(QLatin1Char('\n')), QString());
}

TEST_F(SampleSite, EveryPictureDecodes)
{
    int pictures = 0;
    for (const QString& file : Site().GetFiles()) {
        if (!file.contains(QStringLiteral("pictures/"))) {
            continue;
        }
        ++pictures;
        const CImage image = CImage::FromFile(program->Path(QStringLiteral("site/") + file));
        EXPECT_FALSE(image.GetRgba().isEmpty()) << qPrintable(file);
        EXPECT_EQ(image.GetCondition().state, ImageCondition::State::Whole) << qPrintable(file);
    }
    EXPECT_GT(pictures, 48);
}
