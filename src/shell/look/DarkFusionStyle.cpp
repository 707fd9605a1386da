#include "shell/look/DarkFusionStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace {

// Between the text and the ground that it stands on.
QColor EdgeColour(const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor ground = palette.color(QPalette::Base);
    constexpr int share = 50; // of the text, in percent
    const auto mixed = [](int a, int b) {
        return (a * share + b * (100 - share)) / 100;
    };
    return QColor(mixed(text.red(), ground.red()), mixed(text.green(), ground.green()),
                  mixed(text.blue(), ground.blue()));
}

void DrawEdge(const QStyleOption& option, QPainter& painter, qreal radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(EdgeColour(option.palette));
    painter.setBrush(Qt::NoBrush);
    // Through the middles of the outermost pixels.
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

} // namespace

CDarkFusionStyle::CDarkFusionStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void CDarkFusionStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    constexpr qreal boxRadius = 2;
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck) {
        DrawEdge(*option, *painter, boxRadius);
    } else if (element == PE_IndicatorRadioButton) {
        DrawEdge(*option, *painter, option->rect.width() / 2.0);
    }
}

void CDarkFusionStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    constexpr qreal grooveRadius = 2;
    if (element == CE_ProgressBarGroove) {
        DrawEdge(*option, *painter, grooveRadius);
    }
}
