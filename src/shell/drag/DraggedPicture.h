#pragma once

#include <optional>

#include <QString>

class QMimeData;
class QWidget;

// A picture that is dragged inside the program. Others see a file.
struct DraggedPicture {
    enum class Origin { Folder, Page };

    Origin origin = Origin::Folder;
    int position = 0; // in the folder or in the gallery, from 0
    QString path;     // of the picture
    QString look;     // a small picture file that goes with the mouse; may be empty
};

// To be called from the event loop, with the mouse button still down; otherwise nothing happens. Returns when
// the picture was dropped somewhere. source: the widget from which it is dragged.
void DragPicture(const DraggedPicture& picture, QWidget& source);

// Nothing for what is no picture of this program. The look does not come along.
std::optional<DraggedPicture> ReadDraggedPicture(const QMimeData& data);
