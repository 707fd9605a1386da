#include "effects/EffectGeometry.h"

#include <limits>

namespace {

double RatioOf(QSize size)
{
    return size.height() == 0 ? 0 : static_cast<double>(size.width()) / size.height();
}

// Degenerate boxes give ratios that no integer holds: those become the nearest one, and no number becomes 0.
int Truncated(double value)
{
    constexpr double largest = std::numeric_limits<int>::max();
    constexpr double smallest = std::numeric_limits<int>::min();
    if (value != value) {
        return 0;
    }
    return value >= largest    ? std::numeric_limits<int>::max()
           : value <= smallest ? std::numeric_limits<int>::min()
                               : static_cast<int>(value);
}

QSize ByHeight(QSize box, double ratio)
{
    return {Truncated(box.height() * ratio), box.height()};
}

QSize ByWidth(QSize box, double ratio)
{
    return {box.width(), Truncated(box.width() / ratio)};
}

} // namespace

bool FitsInto(QSize picture, QSize box)
{
    return picture.width() <= box.width() && picture.height() <= box.height();
}

QSize FittedSize(QSize picture, QSize box)
{
    const double ratio = RatioOf(picture);
    return RatioOf(box) >= ratio ? ByHeight(box, ratio) : ByWidth(box, ratio);
}

QSize FilledSize(QSize picture, QSize box)
{
    const double ratio = RatioOf(picture);
    return RatioOf(box) >= ratio ? ByWidth(box, ratio) : ByHeight(box, ratio);
}
