#include "shell/look/ColourScheme.h"

#include <cmath>

#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <gtest/gtest.h>

namespace {

// Relative luminance, WCAG 2.1.
double Luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b)
{
    const double one = Luminance(a) + 0.05;
    const double other = Luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QPalette Dark()
{
    QPalette palette(QColor(0x2b, 0x2d, 0x31));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    palette.setColor(QPalette::Text, QColor(0xe6, 0xe8, 0xeb));
    return palette;
}

// The highest contrast to the ground along the left edge, at half height, of what is drawn.
template <class Draw>
double EdgeContrast(Draw draw)
{
    const QPalette palette = Dark();
    const QColor ground = palette.color(QPalette::Base);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(ground);
    QStyleOption option;
    option.rect = QRect(3, 3, 14, 14);
    option.palette = palette;
    option.state = QStyle::State_Enabled | QStyle::State_Off;
    {
        QPainter painter(&image);
        draw(option, painter);
    }
    double best = 1;
    for (int x = 2; x <= 5; ++x) {
        best = std::max(best, Contrast(image.pixelColor(x, 10), ground));
    }
    return best;
}

} // namespace

// WCAG 2.1, 1.4.11: what is needed to know a control has a contrast of 3 to 1.
TEST(DarkFusionStyle, TheEdgesOfControlsAreSeenOnADarkGround)
{
    const CDarkFusionStyle style;
    for (const auto element : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorItemViewItemCheck,
                               QStyle::PE_IndicatorRadioButton}) {
        EXPECT_GE(EdgeContrast([&](const QStyleOption& option, QPainter& painter) {
                      style.drawPrimitive(element, &option, &painter, nullptr);
                  }),
                  3)
            << element;
    }
    EXPECT_GE(EdgeContrast([&](const QStyleOption& option, QPainter& painter) {
                  QStyleOptionProgressBar groove;
                  groove.rect = option.rect;
                  groove.palette = option.palette;
                  groove.state = option.state;
                  style.drawControl(QStyle::CE_ProgressBarGroove, &groove, &painter, nullptr);
              }),
              3);
}
