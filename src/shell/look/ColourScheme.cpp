#include "shell/look/ColourScheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace {

QPalette DarkPalette()
{
    const QColor window(0x2b, 0x2d, 0x31);
    const QColor text(0xe6, 0xe8, 0xeb);
    QPalette palette(text, window, QColor(0x50, 0x53, 0x5a), QColor(0x1a, 0x1b, 0x1e),
                     QColor(0x3a, 0x3d, 0x42), text, QColor(0x1f, 0x21, 0x24));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3d, 0x42));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3d, 0x42));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0x93, 0x97, 0x9e));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xd6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x7f, 0xb3, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xb9, 0x9c, 0xe8));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0x7c, 0x80, 0x87));
    }
    return palette;
}

// The freedesktop.org settings portal, org.freedesktop.appearance: 0 no preference, 1 dark, 2 light. Only a
// portal that runs is asked, so that a session without one starts without delay.
bool DesktopPrefersDark()
{
    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(service)) {
        return false;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    constexpr int Patience = 200; // milliseconds
    QVariant answer = bus.call(question, QDBus::Block, Patience).arguments().value(0);
    while (answer.canConvert<QDBusVariant>()) {
        answer = answer.value<QDBusVariant>().variant();
    }
    return answer.toUInt() == 1;
}

bool IsDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

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

void ApplyColourScheme(const QString& scheme)
{
    const bool isDark = IsDark(QApplication::palette());
    const bool wantsDark = scheme == QStringLiteral("dark") ||
                           (scheme != QStringLiteral("light") && (isDark || DesktopPrefersDark()));
    if (wantsDark == isDark) {
        return;
    }
    QApplication::setStyle(wantsDark ? static_cast<QStyle*>(new CDarkFusionStyle)
                                     : QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(wantsDark ? DarkPalette() : QApplication::style()->standardPalette());
}

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
