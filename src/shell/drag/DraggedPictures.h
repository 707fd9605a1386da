#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

class QMimeData;
class QPixmap;
class QWidget;

// Pictures that are dragged together inside the program. Others see files.
struct DraggedPictures {
    enum class Origin { Folder, Page };

    Origin origin = Origin::Folder;
    std::vector<int> positions; // in the folder or in the current gallery, from 0, ascending
    QStringList paths;          // of the pictures, one for each position
    QString look;               // a small picture file that goes with the mouse; may be empty
};

// To be called from the event loop, with the mouse button still down; otherwise nothing happens. Returns when
// the pictures were dropped somewhere. source: the widget from which they are dragged.
void DragPictures(const DraggedPictures& pictures, QWidget& source);

// What goes with the mouse: the look, with the number of pictures on it if there are several. density: dots
// to the pixel. Null if there is nothing to show.
QPixmap DrawDragged(const QString& look, qsizetype count, qreal density);

// Nothing for what is no picture of this program. The look does not come along.
std::optional<DraggedPictures> ReadDraggedPictures(const QMimeData& data);
