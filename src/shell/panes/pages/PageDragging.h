#pragma once

#include <functional>

#include <QObject>
#include <QPoint>
#include <QString>

class CHTMLView;
struct DraggedPicture;

// Dragging in the pages view: pictures of the page are moved among each other, and thumbnails of the folder
// view are added. The page shows where. Owned by the pages view; screen's thread.
class CPageDragging final : public QObject {
public:
    struct Services {
        // The position in the gallery of an element of the page, or -1.
        std::function<int32_t(const QString& id)> findPicture;
        std::function<QString(int32_t position)> getPath;
        // The picture goes before the one at that position, which may be the count of pictures.
        std::function<void(int32_t from, int32_t before)> move;
        // By its place in the folder view when the drag began, and its path.
        std::function<void(int32_t index, const QString& path)> addFromFolder;
    };
    CPageDragging(CHTMLView& page, Services services);

    // A picture of the page is being dragged. look: the address of what the page shows of it.
    void Start(const QString& id, const QString& look);

private:
    void Hover(const DraggedPicture& picture, QPoint place);
    void Drop(const DraggedPicture& picture, QPoint place);
    void MoveTo(int32_t from, const QString& gap);

    CHTMLView& page;
    const Services services;
};
