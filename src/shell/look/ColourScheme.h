#pragma once

#include <QProxyStyle>
#include <QString>

// Gives the program a light or a dark palette. scheme: "light" or "dark"; anything else is what the desktop
// asks for. A desktop that styles its programs by itself is left alone. To be called once, on the screen's
// thread, after the application object has been made.
void ApplyColourScheme(const QString& scheme);

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
