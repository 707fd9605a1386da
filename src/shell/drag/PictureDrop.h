#pragma once

#include <functional>

#include <QObject>
#include <QStringList>

class QMimeData;
class QWidget;

// Takes files and folders that are dropped on the window from another program. Watches the widgets that it is
// told of, the browser controls among them, which would swallow a drop. Owned by the frame. Screen's thread.
class CPictureDrop final : public QObject {
public:
    // dropped: called with full paths, once the drop is over.
    CPictureDrop(QObject* parent, std::function<void(const QStringList& paths)> dropped);

    // The widget and all that it holds, now and later.
    void Watch(QWidget& widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(const QStringList& paths)> dropped;
};

// The property of a widget that takes the files which are dropped on it by itself.
inline constexpr char TakesDropsProperty[] = "takesDrops";

// Local files and folders only.
QStringList DroppedPaths(const QMimeData& data);
