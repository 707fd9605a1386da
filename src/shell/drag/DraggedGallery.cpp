#include "shell/drag/DraggedGallery.h"

#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QPixmap>
#include <QWidget>

#include "shell/drag/DraggedPictures.h"

namespace {

// The index in decimal digits.
const QString& GalleryType()
{
    static const QString type = QStringLiteral("application/x-vistorama-gallery");
    return type;
}

constexpr int lookWidth = 80; // pixels
constexpr int lookGap = 14;   // below the mouse

// It hangs below the mouse: over covers that are hardly larger it would hide where the gallery falls.
void SetLook(QDrag& drag, const DraggedGallery& gallery, qreal density)
{
    const QPixmap drawn = DrawDragged(gallery.look, 1, density);
    if (drawn.isNull()) {
        return;
    }
    QPixmap look = drawn.scaledToWidth(qRound(lookWidth * density), Qt::SmoothTransformation);
    look.setDevicePixelRatio(density);
    drag.setPixmap(look);
    drag.setHotSpot(QPoint(lookWidth / 2, -lookGap));
}

} // namespace

void DragGallery(const DraggedGallery& gallery, QWidget& source)
{
    // A quick hand has let go already.
    if ((QGuiApplication::mouseButtons() & Qt::LeftButton) == 0) {
        return;
    }
    auto* const data = new QMimeData;
    data->setData(GalleryType(), QByteArray::number(gallery.index));
    auto* const drag = new QDrag(&source); // deletes itself
    drag->setMimeData(data);
    SetLook(*drag, gallery, source.devicePixelRatioF());
    drag->exec(Qt::MoveAction);
}

std::optional<int32_t> ReadDraggedGallery(const QMimeData& data)
{
    bool isNumber = false;
    const int32_t index = data.data(GalleryType()).toInt(&isNumber);
    return isNumber ? std::optional(index) : std::nullopt;
}
