#include <cmath>

#include <QImage>
#include <QStyle>
#include <gtest/gtest.h>

#include "GalleriesWindow.h"

// The frames of the cells as they are on the screen, at the scaling that the environment asks for: the pieces
// of artwork meet the coloured cells without a gap.

namespace {

constexpr QRgb background = 0xffcbd5e4;
constexpr QRgb plain = 0xff9ab2d2;
constexpr QRgb selected = 0xff005afa;

class Joints : public testing::Test {
protected:
    // The pixels of the screen that lie in a rectangle of the page with the whole of themselves. An edge may
    // go through the middle of a pixel, which may have either colour then.
    QRect InPixels(QRectF rect) const
    {
        const double scale = image.devicePixelRatio();
        constexpr double rest = 1e-3;
        const QPoint topLeft(int(std::ceil(rect.left() * scale - rest)),
                             int(std::ceil(rect.top() * scale - rest)));
        const QPoint bottomRight(int(std::floor(rect.right() * scale + rest)),
                                 int(std::floor(rect.bottom() * scale + rest)));
        return QRect(topLeft, bottomRight - QPoint(1, 1));
    }

    // The first pixel of another colour; null if there is none.
    QPoint FindOther(QRect pixels, QRgb colour) const
    {
        for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
            for (int x = pixels.left(); x <= pixels.right(); ++x) {
                if (image.pixel(x, y) != colour) {
                    return QPoint(x, y);
                }
            }
        }
        return QPoint();
    }

    void ExpectOnly(QRectF rect, QRgb colour, const char* what) const
    {
        const QRect pixels = InPixels(rect);
        EXPECT_FALSE(pixels.isEmpty()) << what;
        const QPoint other = FindOther(pixels, colour);
        EXPECT_TRUE(other.isNull()) << what << ": " << std::hex << image.pixel(other) << std::dec << " at "
                                    << other.x() << ',' << other.y() << " in " << pixels.x() << ','
                                    << pixels.y() << ' ' << pixels.width() << 'x' << pixels.height();
    }

    // How much of the colour a pixel has, the rest being background: from 0 to 1.
    double Coverage(QPoint at, QRgb colour) const
    {
        const QRgb pixel = image.pixel(at);
        return double(qRed(background) - qRed(pixel)) / (qRed(background) - qRed(colour));
    }

    // Along one line of pixels out of a coloured cell, over a joint and through the piece of artwork: full at
    // first, then never more again. A gap would be a pixel with less colour than the one behind it.
    void ExpectFading(QPoint inside, QPoint step, int count, QRgb colour) const
    {
        double last = 1;
        for (int i = 0; i < count; ++i) {
            const double now = Coverage(inside + i * step, colour);
            EXPECT_GT(now, i < 2 ? 0.99 : -0.01) << "in the cell at " << inside.x() << ',' << inside.y();
            EXPECT_LE(now, last + 0.02) << "at " << inside.x() << ',' << inside.y() << " + " << i;
            last = now;
        }
    }

    // side: -1 for a piece with its joint on its left, 1 on its right.
    void ExpectJoinedBeside(QRectF piece, int side, QRgb colour) const
    {
        const QRect pixels = InPixels(piece);
        for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
            ExpectFading(QPoint(side < 0 ? pixels.left() - 3 : pixels.right() + 3, y), QPoint(-side, 0),
                         pixels.width() + 3, colour);
        }
    }

    // side: -1 for a piece with its joint on its top, 1 at its bottom.
    void ExpectJoinedAbove(QRectF piece, int side, QRgb colour) const
    {
        const QRect pixels = InPixels(piece);
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            ExpectFading(QPoint(x, side < 0 ? pixels.top() - 3 : pixels.bottom() + 3), QPoint(0, -side),
                         pixels.height() + 3, colour);
        }
    }

    // Between two cells of different colours.
    void ExpectNoBackground(QRectF rect, const char* what) const
    {
        const QRect pixels = InPixels(rect);
        for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
            for (int x = pixels.left(); x <= pixels.right(); ++x) {
                EXPECT_LE(qRed(image.pixel(x, y)), qRed(plain) + 2) << what << " at " << x << ',' << y;
            }
        }
    }

    // The corner of the cell that shows the gallery, and its colour.
    QPointF CellOf(int32_t gallery)
    {
        const QVariantList place =
            window
                ->Ask(QStringLiteral("(r => [r.left, r.top])(document.querySelector('img[id=\"gl_%1\"]')"
                                     ".closest('table').getBoundingClientRect())")
                          .arg(gallery))
                .toList();
        EXPECT_EQ(place.size(), 2) << gallery;
        return place.size() == 2 ? QPointF(place[0].toDouble(), place[1].toDouble()) : QPointF();
    }

    // The straight parts of a frame, and its joints.
    void CheckCell(int32_t gallery, int flags, QRgb colour)
    {
        SCOPED_TRACE(testing::Message()
                     << "gallery " << gallery << " at " << cell.width() << 'x' << cell.height());
        const QPointF at = CellOf(gallery);
        const double w = cell.width();
        const double h = cell.height();
        const auto in = [&](double x, double y, double width, double height) {
            return QRectF(at.x() + x, at.y() + y, width, height);
        };
        // The body, but for the picture in its middle, and its edges.
        ExpectOnly(in(9, 9, w - 18, 2), colour, "below the top");
        ExpectOnly(in(9, 9, 2, h - 18), colour, "left edge");
        ExpectOnly(in(w - 11, 9, 2, h - 18), colour, "right edge");
        ExpectOnly(in(9, h - 11, w - 18, 2), colour, "bottom edge");
        ExpectOnly(in(5, 10, 3, h - 19), background, "outside on the left");
        ExpectOnly(in(w - 8, 10, 3, h - 19), background, "outside on the right");
        if ((flags & 15) != 0) {
            ExpectOnly(in(18, 0, w - 36, 9), colour, "top");
        }
        if ((flags & 8) != 0) {
            ExpectOnly(in(0, 0, 18, 4), colour, "bar to the left");
            ExpectOnly(in(9, 0, 9, 9), colour, "body below the bar to the left");
            ExpectJoinedBeside(in(4, 4, 5, 5), 1, colour);
            ExpectJoinedAbove(in(4, 4, 5, 5), -1, colour);
            ExpectOnly(in(0, 5, 4, 4), background, "below the bar to the left");
        } else if ((flags & 2) != 0) {
            ExpectJoinedBeside(in(9, 0, 9, 9), 1, colour);
            ExpectJoinedAbove(in(9, 0, 9, 9), 1, colour);
        }
        if ((flags & 4) != 0) {
            ExpectOnly(in(w - 18, 0, 18, 4), colour, "bar to the right");
            ExpectOnly(in(w - 18, 0, 9, 9), colour, "body below the bar to the right");
            ExpectJoinedBeside(in(w - 9, 4, 5, 5), -1, colour);
            ExpectJoinedAbove(in(w - 9, 4, 5, 5), -1, colour);
            ExpectOnly(in(w - 4, 5, 4, 4), background, "below the bar to the right");
        } else if ((flags & 1) != 0) {
            ExpectJoinedBeside(in(w - 18, 0, 9, 9), -1, colour);
            ExpectJoinedAbove(in(w - 18, 0, 9, 9), 1, colour);
        }
        if ((flags & 16) != 0) {
            const int inner = cell.width() - 18;
            const int bar = inner % 2 == 0 ? 8 : 9;
            const double left = 9 + (inner - bar - 10) / 2 + 5;
            ExpectOnly(in(left, h - 10, bar, 10), colour, "tail");
            ExpectJoinedBeside(in(left - 5, h - 5, 5, 5), 1, colour);
            ExpectJoinedBeside(in(left + bar, h - 5, 5, 5), -1, colour);
            ExpectNoBackground(in(left, h - 9, bar, 12), "tail into the children");
            ExpectNoBackground(in(left - 1, h - 1, bar + 2, 4), "feet of the tail on the children");
            ExpectOnly(in(left - 5, h - 9, 4, 3), background, "beside the tail");
        }
    }

    void ShowAt(QSize size, int32_t current)
    {
        window->GetView().resize(size);
        window->GetProject().SetCurrentGallery(current);
        window->Show(ViewUpdate::Cause::GalleryChosen);
        cell = GetGalleryCellSize(size, window->GetView().style()->pixelMetric(QStyle::PM_ScrollBarExtent));
        // Pages come onto the screen a little later than they say: a mark tells that it is this one.
        const int mark = ++markCount;
        window->Ask(QStringLiteral("(d => { d.style.cssText = 'position:fixed;right:0;bottom:0;width:6px;"
                                   "height:6px;background:rgb(%1,0,99)'; document.body.append(d); })"
                                   "(document.createElement('div'))")
                        .arg(mark));
        EXPECT_TRUE(WaitUntil([&] {
            image = window->Capture();
            return image.pixel(image.width() - 2, image.height() - 2) == qRgb(mark, 0, 99);
        }));
        EXPECT_NEAR(image.devicePixelRatio(), window->GetView().devicePixelRatioF(), 0.001);
    }

    std::unique_ptr<CGalleriesWindow> window = std::make_unique<CGalleriesWindow>();
    QSize cell;
    QImage image;
    int markCount = 0;
};

} // namespace

TEST_F(Joints, HaveNoGapsAtAnySize)
{
    // 0(1 2(4 5 6) 3(7))
    for (const int parent : {0, 0, 0, 2, 2, 2, 3}) {
        window->AddChild(parent);
    }
    for (const QSize size : {QSize(256, 290), QSize(301, 303), QSize(322, 384), QSize(341, 386),
                             QSize(343, 391), QSize(358, 427), QSize(480, 340), QSize(479, 447)}) {
        ShowAt(size, 2);
        CheckCell(0, 16, plain);
        CheckCell(1, 2 + 4, plain);
        CheckCell(2, 8 + 4 + 16, selected);
        CheckCell(3, 8 + 1 + 16, plain);
        CheckCell(4, 2 + 4, plain);
        CheckCell(5, 8 + 4, plain);
        CheckCell(6, 8 + 1, plain);
        ShowAt(size, 7);
        CheckCell(3, 8 + 1 + 16, plain);
        CheckCell(7, 2 + 1, selected);
        ShowAt(size, 0);
        CheckCell(0, 16, selected);
    }
}

// The curves are drawn, and on the right side.
TEST_F(Joints, AreRounded)
{
    for (const int parent : {0, 0, 0, 2}) {
        window->AddChild(parent);
    }
    ShowAt(QSize(341, 386), 2);
    const double w = cell.width();
    const double h = cell.height();
    const struct {
        int32_t gallery;
        QPointF corner; // outside of the curve
        QRgb outside;
        QPointF inner; // inside of it
        QRgb inside;
    } rows[] = {
        {1, {9, 0}, background, {16, 7}, plain},
        {3, {w - 10, 0}, background, {w - 17, 7}, plain},
        {2, {4, 8}, background, {8, 4}, selected},
        {2, {w - 5, 8}, background, {w - 9, 4}, selected},
        {2, {w / 2 - 9, h - 5}, background, {w / 2 - 5, h - 1}, selected},
        {2, {w / 2 + 8, h - 5}, background, {w / 2 + 4, h - 1}, selected},
    };
    for (const auto& row : rows) {
        const QPointF at = CellOf(row.gallery);
        const auto colourAt = [&](QPointF place) {
            const QPointF middle = (at + place + QPointF(0.5, 0.5)) * image.devicePixelRatio();
            return image.pixel(int(middle.x()), int(middle.y()));
        };
        EXPECT_EQ(colourAt(row.corner), row.outside) << row.gallery << " at " << row.corner.x();
        EXPECT_EQ(colourAt(row.inner), row.inside) << row.gallery << " at " << row.inner.x();
    }
}

// A page that fills its view needs no scroll bars, which would make it smaller.
TEST_F(Joints, ThePageFitsIntoTheView)
{
    for (const int parent : {0, 0, 0}) {
        window->AddChild(parent);
    }
    for (const QSize size : {QSize(256, 290), QSize(341, 386), QSize(480, 447)}) {
        ShowAt(size, 0);
        EXPECT_TRUE(window
                        ->Ask(QStringLiteral("(e => e.scrollWidth <= innerWidth && e.scrollHeight <= "
                                             "innerHeight)(document.scrollingElement)"))
                        .toBool())
            << size.width();
    }
}
