#include <atomic>
#include <thread>
#include <vector>

#include "SampleFiles.h"
#include "imaging/Canvas.h"

namespace {

CImage Signed(const CImage& picture, const QString& family)
{
    return Painted(picture, [family](CCanvas& canvas, const CImage& source) {
        canvas.DrawImage(source, QPoint(0, 0), 1);
        const CanvasText text{
            .text = QStringLiteral("© Anna 2026 \u6771\u4eac"), .family = family, .points = 20};
        const QSize size = canvas.MeasureText(text);
        canvas.DrawText(text, QRect(QPoint(5, 5), size + QSize(1, 1)), {255, 0, 0, 255});
    });
}

} // namespace

TEST(CanvasThreads, SeveralThreadsWriteTextsAtTheSameTime)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 6;
    const QSize size(300, 120);
    const CImage picture = CImage::FromRgba(size, Paint(size, Waves));
    const QString families[] = {QStringLiteral("sans-serif"), QStringLiteral("serif"),
                                QStringLiteral("monospace"), QStringLiteral("No Such Font")};
    std::vector<QByteArray> results(threadCount * rounds);
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < rounds; ++round) {
                results[static_cast<size_t>(number * rounds + round)] =
                    Signed(picture, families[(number + round) % 4]).GetRgba();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int number = 0; number < threadCount; ++number) {
        for (int round = 0; round < rounds; ++round) {
            EXPECT_EQ(results[static_cast<size_t>(number * rounds + round)],
                      Signed(picture, families[(number + round) % 4]).GetRgba());
        }
    }
    EXPECT_NE(results[0], picture.GetRgba());
}

TEST(CanvasThreads, OnePaintedImageServesSeveralThreads)
{
    const CScratchFolder folder;
    const CImage painted = Signed(Opened(folder, JpegOf({200, 100}, Waves)), QStringLiteral("serif"));
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    const QByteArray expected = painted.GetRgba();
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] { wrong += painted.GetRgba() == expected ? 0 : 1; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}
