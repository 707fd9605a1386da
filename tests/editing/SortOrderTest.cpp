#include "editing/SortOrder.h"

#include <gtest/gtest.h>

#include "../document/TestProject.h"

namespace {

class SortOrder : public testing::Test {
protected:
    CTestProject test;
    CGallery* gallery = nullptr;

    void SetUp() override
    {
        test.AddStandard();
        gallery = &test.NewGallery();
        const struct {
            const char* name;
            int day;
        } pictures[] = {{"IMG_10.jpg", 3}, {"img_2.jpg", 1}, {"IMG_1.jpg", 2}, {"a.png", 3}};
        for (const auto& picture : pictures) {
            gallery->AppendPicture(
                test.MakePicture(QString::fromLatin1(picture.name), QDate(2020, 1, picture.day)), 0);
        }
        test.project.AddChildGallery(0);
    }

    QString Sorted(SortKey key)
    {
        gallery->ReorderPictures(OrderBy(*gallery, key, [](const QString& path) {
            return path.endsWith(QStringLiteral("10.jpg")) ? QDateTime(QDate(2019, 1, 1), QTime(8, 0))
                                                           : QDateTime();
        }));
        return CTestProject::Entries(*gallery);
    }
};

} // namespace

TEST_F(SortOrder, NumbersInNamesCountByTheirValue)
{
    EXPECT_EQ(Sorted(SortKey::Name), QStringLiteral("<1> a.png IMG_1.jpg img_2.jpg IMG_10.jpg"));
}

TEST_F(SortOrder, EqualDatesKeepTheirOrder)
{
    EXPECT_EQ(Sorted(SortKey::FileDate), QStringLiteral("<1> img_2.jpg IMG_1.jpg IMG_10.jpg a.png"));
}

TEST_F(SortOrder, APictureWithoutACamerasDateGoesByItsFile)
{
    EXPECT_EQ(Sorted(SortKey::DateTaken), QStringLiteral("<1> IMG_10.jpg img_2.jpg IMG_1.jpg a.png"));
}

TEST_F(SortOrder, GalleriesStayInFrontWhenPicturesAreReversed)
{
    EXPECT_EQ(Sorted(SortKey::Reverse), QStringLiteral("<1> a.png IMG_1.jpg img_2.jpg IMG_10.jpg"));
}
