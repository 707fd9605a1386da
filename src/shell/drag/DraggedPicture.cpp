#include "shell/drag/DraggedPicture.h"

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

// "folder 12"
const QString& PictureType()
{
    static const QString type = QStringLiteral("application/x-vistorama-picture");
    return type;
}

const QString folderWord = QStringLiteral("folder");
const QString pageWord = QStringLiteral("page");

QPixmap LoadLook(const QString& path, qreal density)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty()) {
        return QPixmap();
    }
    reader.setScaledSize(
        size.scaled(QSize(lookWidth, lookWidth) * density, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    const QImage image = reader.read();
    QPixmap look(image.size());
    look.fill(Qt::transparent);
    QPainter painter(&look);
    painter.setOpacity(lookOpacity);
    painter.drawImage(0, 0, image);
    painter.end();
    look.setDevicePixelRatio(density);
    return look;
}

} // namespace

void DragPicture(const DraggedPicture& picture, QWidget& source)
{
    // A quick hand has let go already.
    if ((QGuiApplication::mouseButtons() & Qt::LeftButton) == 0) {
        return;
    }
    auto* const data = new QMimeData;
    const QString origin = picture.origin == DraggedPicture::Origin::Folder ? folderWord : pageWord;
    data->setData(PictureType(), QStringLiteral("%1 %2").arg(origin).arg(picture.position).toUtf8());
    data->setUrls({QUrl::fromLocalFile(picture.path)});
    auto* const drag = new QDrag(&source); // deletes itself
    drag->setMimeData(data);
    const QPixmap look = LoadLook(picture.look, source.devicePixelRatioF());
    if (!look.isNull()) {
        drag->setPixmap(look);
        drag->setHotSpot(QPoint(look.width(), look.height()) / (2 * look.devicePixelRatio()));
    }
    drag->exec(Qt::CopyAction);
}

std::optional<DraggedPicture> ReadDraggedPicture(const QMimeData& data)
{
    const QString text = QString::fromUtf8(data.data(PictureType()));
    const QString origin = text.section(QLatin1Char(' '), 0, 0);
    bool isNumber = false;
    const int position = text.section(QLatin1Char(' '), 1).toInt(&isNumber);
    if (!isNumber || position < 0 || (origin != folderWord && origin != pageWord)) {
        return std::nullopt;
    }
    return DraggedPicture{.origin = origin == folderWord ? DraggedPicture::Origin::Folder
                                                         : DraggedPicture::Origin::Page,
                          .position = position,
                          .path = data.urls().value(0).toLocalFile(),
                          .look = QString()};
}
