#pragma once

#include <cstdint>
#include <optional>

#include <QString>

class QMimeData;
class QWidget;

// A gallery that is dragged inside the program. Others see nothing that they could take.
struct DraggedGallery {
    int32_t index = 0;
    QString look = {}; // its cover as a file, which goes with the mouse; may be empty
};

// To be called from the event loop, with the mouse button still down; otherwise nothing happens. Returns when
// the gallery was dropped somewhere. source: the widget from which it is dragged.
void DragGallery(const DraggedGallery& gallery, QWidget& source);

// Its index; nothing for what is no gallery of this program. Another instance of it has indexes of its own.
std::optional<int32_t> ReadDraggedGallery(const QMimeData& data);
