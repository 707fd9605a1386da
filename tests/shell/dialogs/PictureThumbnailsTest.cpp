#include "shell/dialogs/PictureThumbnails.h"

#include <cstdlib>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

#include "imaging/Image.h"
#include "support/ScratchFolder.h"

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;

class PictureThumbnails : public testing::Test {
protected:
    // The left half is red, the right one blue.
    QString WriteHalves(const QString& name, QSize size) const
    {
        QByteArray bytes;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                bytes += x < size.width() / 2 ? QByteArray("\xFF\x00\x00\xFF", 4)
                                              : QByteArray("\x00\x00\xFF\xFF", 4);
            }
        }
        const QString path = scratch.Path(name);
        CImage::FromRgba(size, bytes).Save(path, {ImageEncoding::Format::Png, 0});
        return path;
    }

    void Make(const std::vector<CPictureThumbnails::Source>& sources)
    {
        thumbnails = std::make_unique<CPictureThumbnails>(sources, QSize(40, 30), [this](int row) {
            made.push_back(row);
            loop.quit();
        });
    }

    void WaitForThumbnails(size_t count)
    {
        QTimer::singleShot(60'000, &loop, [this] {
            ADD_FAILURE() << "no thumbnail comes";
            loop.exit();
        });
        while (made.size() < count && !HasFailure()) {
            loop.exec();
        }
    }

    const CScratchFolder scratch;
    std::vector<int> made;
    QEventLoop loop;
    std::unique_ptr<CPictureThumbnails> thumbnails;
};

} // namespace

TEST_F(PictureThumbnails, FitTheBoxAndAreTurned)
{
    const QString wide = WriteHalves(QStringLiteral("wide.png"), QSize(400, 200));
    const QString small = WriteHalves(QStringLiteral("small.png"), QSize(8, 4));
    Make({{wide, 0}, {wide, 1}, {wide, 2}, {wide, 3}, {small, 0}});
    thumbnails->Show(0, 4);
    WaitForThumbnails(5);
    const struct {
        QSize size;
        QRgb topLeft;
        QRgb bottomRight;
    } rows[] = {
        {QSize(40, 20), Red, Blue}, {QSize(15, 30), Red, Blue}, {QSize(40, 20), Blue, Red},
        {QSize(15, 30), Blue, Red}, {QSize(8, 4), Red, Blue},
    };
    for (int row = 0; row < 5; ++row) {
        const QImage* const image = thumbnails->Find(row);
        ASSERT_NE(image, nullptr) << row;
        ASSERT_EQ(image->size(), rows[row].size) << row;
        EXPECT_EQ(image->pixel(0, 0), rows[row].topLeft) << row;
        EXPECT_EQ(image->pixel(image->width() - 1, image->height() - 1), rows[row].bottomRight) << row;
    }
}

TEST_F(PictureThumbnails, OneThatCannotBeShownHasNoPixels)
{
    Make({{scratch.Path(QStringLiteral("gone.jpg"))},
          {scratch.Write(QStringLiteral("broken.jpg"), "no picture")},
          {QString()}});
    thumbnails->Show(0, 2);
    WaitForThumbnails(2);
    ASSERT_NE(thumbnails->Find(0), nullptr);
    EXPECT_TRUE(thumbnails->Find(0)->isNull());
    ASSERT_NE(thumbnails->Find(1), nullptr);
    EXPECT_TRUE(thumbnails->Find(1)->isNull());
    EXPECT_EQ(thumbnails->Find(2), nullptr);
}

TEST_F(PictureThumbnails, ThoseOnTheScreenComeFirst)
{
    const QString picture = WriteHalves(QStringLiteral("a.png"), QSize(40, 30));
    Make(std::vector<CPictureThumbnails::Source>(1000, {picture, 0}));
    constexpr int first = 500;
    constexpr int last = 505;
    thumbnails->Show(first, last);
    constexpr size_t count = 20;
    WaitForThumbnails(count);
    // As many more may have been begun as there are threads.
    const int farthest = static_cast<int>(count + CWorkerPool::GetUsualSize());
    for (size_t i = 0; i < count; ++i) {
        EXPECT_GT(made[i], first - farthest);
        EXPECT_LT(made[i], last + farthest);
    }
    for (int row = first; row <= last; ++row) {
        EXPECT_NE(std::find(made.begin(), made.end(), row), made.end()) << row;
    }
}

TEST_F(PictureThumbnails, ThoseFarAwayAreForgottenAndMadeAnew)
{
    const QString picture = WriteHalves(QStringLiteral("a.png"), QSize(40, 30));
    Make(std::vector<CPictureThumbnails::Source>(2000, {picture, 0}));
    thumbnails->Show(0, 0);
    WaitForThumbnails(101);
    EXPECT_NE(thumbnails->Find(100), nullptr);
    EXPECT_EQ(thumbnails->Find(101), nullptr);
    thumbnails->Show(1000, 1000);
    EXPECT_EQ(thumbnails->Find(0), nullptr);
    WaitForThumbnails(101 + 201);
    EXPECT_NE(thumbnails->Find(900), nullptr);
    EXPECT_EQ(thumbnails->Find(1101), nullptr);
    thumbnails->Show(0, 0);
    WaitForThumbnails(101 + 201 + 101);
    EXPECT_NE(thumbnails->Find(0), nullptr);
    EXPECT_EQ(thumbnails->Find(1000), nullptr);
}

TEST_F(PictureThumbnails, NobodyHearsOfThemAfterTheEnd)
{
    const QString picture = WriteHalves(QStringLiteral("a.png"), QSize(2000, 1500));
    Make(std::vector<CPictureThumbnails::Source>(100, {picture, 0}));
    thumbnails->Show(0, 99);
    WaitForThumbnails(1);
    thumbnails.reset();
    const size_t count = made.size();
    QCoreApplication::processEvents();
    EXPECT_EQ(made.size(), count);
    EXPECT_LT(count, 100u);
}
