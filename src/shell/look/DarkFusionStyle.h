#pragma once

#include <QProxyStyle>

// Qt's Fusion style for a dark palette. Fusion draws the edges of check boxes, radio buttons and progress
// bars darker than the window, which nobody sees where the ground is nearly black already: here they are
// lighter than the ground, with a contrast of at least 3 to 1 (WCAG 2.1, 1.4.11). Owned by the application.
class CDarkFusionStyle final : public QProxyStyle {
public:
    CDarkFusionStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};
