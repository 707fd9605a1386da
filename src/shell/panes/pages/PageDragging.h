#pragma once

#include <functional>
#include <vector>

#include <QObject>
#include <QString>
#include <QStringList>

class CHTMLView;
struct DraggedPictures;
struct PictureDrop;

// Dragging in the pages view: pictures of the page are moved among each other, and those of the folder view
// are added between them. The page shows where. Owned by the pages view; screen's thread.
class CPageDragging final : public QObject {
public:
    struct Services {
        // The position in the gallery of an element of the page, or -1.
        std::function<int32_t(const QString& id)> findPicture;
        std::function<QString(int32_t position)> getPath;
        // What is dragged with the picture at that position: itself and, if it is selected, the others.
        std::function<std::vector<int32_t>(int32_t position)> getCompany;
        // The pictures go before the one at that position, which may be the count of pictures.
        std::function<void(const std::vector<int32_t>& from, int32_t before)> move;
        // Files of the folder view come before the picture of that position; -1 where the page has none.
        std::function<void(const QStringList& paths, int32_t before)> add;
    };
    CPageDragging(CHTMLView& page, Services services);

    // A picture of the page is being dragged. look: the address of what the page shows of it.
    void Start(const QString& id, const QString& look);

private:
    void Hover(const PictureDrop& drop);
    void Drop(const PictureDrop& drop);
    void Place(const DraggedPictures& pictures, const QString& gap);

    CHTMLView& page;
    const Services services;
};
