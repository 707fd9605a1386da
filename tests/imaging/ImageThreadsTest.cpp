#include <atomic>
#include <thread>
#include <vector>

#include "SampleFiles.h"

namespace {

using State = ImageCondition::State;

constexpr int threadCount = 4;

void RunOnThreads(const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

TEST(ImageThreads, OneImageServesSeveralThreads)
{
    const CScratchFolder folder;
    const CImage source = Opened(folder, JpegOf({400, 300}, Detail));
    const QByteArray expected =
        CImage::FromFile(folder.Path(QStringLiteral("picture.jpg"))).Resampled({90, 70}).GetRgba();
    std::atomic<int> wrong = 0;
    RunOnThreads([&](int number) {
        for (int round = 0; round < 5; ++round) {
            const QString path = folder.Path(QStringLiteral("out%1.png").arg(number));
            const CImage result = source.Resampled({90 + number, 70});
            const bool saved = result.Save(path, {.format = ImageEncoding::Format::Png}).status ==
                               ImageSaveResult::Status::Saved;
            wrong += saved && CImage::FromFile(path).GetSize() == QSize(90 + number, 70) ? 0 : 1;
            wrong += source.GetCondition().state == State::Whole ? 0 : 1;
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(Psnr(CImage::FromFile(folder.Path(QStringLiteral("out0.png"))).GetRgba(), expected), 41);
}

TEST(ImageThreads, DamageIsToldOfItsOwnFileOnly)
{
    const CScratchFolder folder;
    const QByteArray jpeg = WithProfile(JpegOf({320, 240}, Detail), IccProfileOf(adobeRgb));
    const QString whole = folder.Write(QStringLiteral("whole.jpg"), jpeg);
    const QString half = folder.Write(QStringLiteral("half.jpg"), jpeg.left(jpeg.size() / 2));
    const QString none = folder.Write(QStringLiteral("none.jpg"), "none");
    std::atomic<int> wrong = 0;
    RunOnThreads([&](int number) {
        for (int round = 0; round < 8; ++round) {
            const bool isWhole = (number + round) % 2 == 0;
            const CImage image = CImage::FromFile(isWhole ? whole : half);
            image.Resampled({50, 50}).GetRgba();
            wrong += image.GetCondition().state == (isWhole ? State::Whole : State::InPart) ? 0 : 1;
            wrong += CImage::FromFile(none).GetCondition().state == State::NotDecodable ? 0 : 1;
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(ImageThreads, AllFormatsAreWrittenSideBySide)
{
    const CScratchFolder folder;
    const QSize size(120, 80);
    const CImage image = CImage::FromRgba(size, Paint(size, Waves));
    std::atomic<int> wrong = 0;
    RunOnThreads([&](int number) {
        for (int round = 0; round < 5; ++round) {
            const bool isJpeg = (number + round) % 2 == 0;
            const QString path = folder.Path(QStringLiteral("%1-%2").arg(number).arg(round));
            image.Save(path, {.format = isJpeg ? ImageEncoding::Format::Jpeg : ImageEncoding::Format::Png});
            wrong += MeanError(CImage::FromFile(path).GetRgba(), Paint(size, Waves)) < 1 ? 0 : 1;
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(folder.ListFiles().size(), threadCount * 5);
}
