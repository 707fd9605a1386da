#include "shell/look/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// A static library's resources are registered by hand; the macro may not stand inside a namespace.
static void RegisterArtwork()
{
    Q_INIT_RESOURCE(shell);
}

namespace {

QByteArray ReadArtwork(const QString& name)
{
    static const bool registered = (RegisterArtwork(), true);
    Q_UNUSED(registered);
    QFile file(QStringLiteral(":/vistorama/artwork/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap Render(const QByteArray& drawing, const QSize& size)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(drawing).render(&painter);
    return pixmap;
}

QColor ColourOf(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
        break;
    }
    return palette.color(QPalette::WindowText);
}

// Draws a line drawing in the colour of the moment, so that an icon follows a change of the palette.
class CLineIconEngine final : public QIconEngine {
public:
    CLineIconEngine(const QString& name, const QByteArray& drawing) : name(name), drawing(drawing) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal density = painter->device()->devicePixelRatioF();
        painter->drawPixmap(area, pixmap(area.size() * density, mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        const QColor colour = ColourOf(mode);
        const QString key = QStringLiteral("line-icon %1 %2 %3 %4")
                                .arg(name, colour.name(QColor::HexArgb))
                                .arg(size.width())
                                .arg(size.height());
        QPixmap found;
        if (!QPixmapCache::find(key, &found)) {
            found = Render(Coloured(colour), size);
            QPixmapCache::insert(key, found);
        }
        return found;
    }

    QIconEngine* clone() const override { return new CLineIconEngine(*this); }
    QString iconName() override { return name; }

private:
    // All drawings have black lines.
    QByteArray Coloured(const QColor& colour) const
    {
        QByteArray coloured = drawing;
        return coloured.replace("stroke=\"#000\"", "stroke=\"" + colour.name().toLatin1() +
                                                       "\" stroke-opacity=\"" +
                                                       QByteArray::number(colour.alphaF(), 'f', 3) + '"');
    }

    const QString name;
    const QByteArray drawing;
};

} // namespace

QIcon LoadIcon(const QString& name)
{
    const QByteArray drawing = ReadArtwork(name);
    return drawing.isEmpty() ? QIcon() : QIcon(new CLineIconEngine(name, drawing));
}

QIcon LoadProgramIcon()
{
    const QByteArray drawing = ReadArtwork(QStringLiteral("vistorama"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
        icon.addPixmap(Render(drawing, QSize(size, size)));
    }
    return icon;
}

QPixmap LoadPicture(const QString& name, qreal density)
{
    const QByteArray drawing = ReadArtwork(name);
    QPixmap picture = Render(drawing, QSvgRenderer(drawing).defaultSize() * density);
    picture.setDevicePixelRatio(density);
    return picture;
}
