#include "shell/drag/DraggedPictures.h"

#include <algorithm>

#include <QDrag>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QUrl>
#include <QWidget>

namespace {

constexpr int lookWidth = 120; // pixels
constexpr double lookOpacity = 0.85;
constexpr int badgeHeight = 26; // pixels

// "folder 12 13"
const QString& PicturesType()
{
    static const QString type = QStringLiteral("application/x-vistorama-pictures");
    return type;
}

const QString folderWord = QStringLiteral("folder");
const QString pageWord = QStringLiteral("page");

QByteArray Describe(const DraggedPictures& pictures)
{
    QStringList words = {pictures.origin == DraggedPictures::Origin::Folder ? folderWord : pageWord};
    for (const int position : pictures.positions) {
        words += QString::number(position);
    }
    return words.join(QLatin1Char(' ')).toUtf8();
}

QImage ReadLook(const QString& path, qreal density)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty()) {
        return QImage();
    }
    reader.setScaledSize(
        size.scaled(QSize(lookWidth, lookWidth) * density, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return reader.read();
}

// At the upper right corner.
void DrawBadge(QPainter& painter, qsizetype count, QSize size)
{
    const QPalette palette = QGuiApplication::palette();
    const QString text = QString::number(count);
    QFont font = QGuiApplication::font();
    font.setBold(true);
    const int width = std::max(badgeHeight, QFontMetrics(font).horizontalAdvance(text) + badgeHeight / 2);
    const QRectF place(size.width() - width - 1, 1, width, badgeHeight);
    painter.setOpacity(1);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::HighlightedText), 1.5));
    painter.setBrush(palette.color(QPalette::Highlight));
    painter.drawRoundedRect(place, badgeHeight / 2.0, badgeHeight / 2.0);
    painter.setFont(font);
    painter.drawText(place, Qt::AlignCenter, text);
}

} // namespace

QPixmap DrawDragged(const QString& look, qsizetype count, qreal density)
{
    const QImage image = ReadLook(look, density);
    if (image.isNull() && count < 2) {
        return QPixmap();
    }
    // Of pictures that have no look a badge is left.
    const QSize size = image.isNull() ? QSize(2 * badgeHeight, badgeHeight + 2) * density : image.size();
    QPixmap drawn(size.expandedTo(QSize(2 * badgeHeight, badgeHeight + 2) * density));
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setOpacity(lookOpacity);
    painter.drawImage(0, 0, image);
    if (count > 1) {
        painter.scale(density, density);
        DrawBadge(painter, count, drawn.size() / density);
    }
    painter.end();
    drawn.setDevicePixelRatio(density);
    return drawn;
}

void DragPictures(const DraggedPictures& pictures, QWidget& source)
{
    // A quick hand has let go already.
    if ((QGuiApplication::mouseButtons() & Qt::LeftButton) == 0) {
        return;
    }
    auto* const data = new QMimeData;
    data->setData(PicturesType(), Describe(pictures));
    QList<QUrl> addresses;
    for (const QString& path : pictures.paths) {
        addresses += QUrl::fromLocalFile(path);
    }
    data->setUrls(addresses);
    auto* const drag = new QDrag(&source); // deletes itself
    drag->setMimeData(data);
    const QPixmap look = DrawDragged(pictures.look, pictures.paths.size(), source.devicePixelRatioF());
    if (!look.isNull()) {
        drag->setPixmap(look);
        drag->setHotSpot(QPoint(look.width(), look.height()) / (2 * look.devicePixelRatio()));
    }
    // Never a move, which another program would make with the files.
    drag->exec(Qt::CopyAction);
}

std::optional<DraggedPictures> ReadDraggedPictures(const QMimeData& data)
{
    QStringList words = QString::fromUtf8(data.data(PicturesType())).split(QLatin1Char(' '));
    const QString origin = words.takeFirst();
    DraggedPictures pictures{.origin = origin == folderWord ? DraggedPictures::Origin::Folder
                                                            : DraggedPictures::Origin::Page,
                             .positions = {},
                             .paths = {},
                             .look = QString()};
    bool isGood = !words.isEmpty() && (origin == folderWord || origin == pageWord);
    for (const QString& word : words) {
        bool isNumber = false;
        pictures.positions.push_back(word.toInt(&isNumber));
        isGood = isGood && isNumber && pictures.positions.back() >= 0;
    }
    for (const QUrl& address : data.urls()) {
        pictures.paths += address.toLocalFile();
    }
    isGood = isGood && pictures.paths.size() == words.size();
    return isGood ? std::optional(pictures) : std::nullopt;
}
