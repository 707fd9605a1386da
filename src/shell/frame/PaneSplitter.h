#pragma once

#include <QSplitter>

class QResizeEvent;

// Two panes with a bar between them that has a place of its own until a person moves it. Owned by its parent.
// Screen's thread.
class CPaneSplitter : public QSplitter {
public:
    // Position of the bar in pixels from the left or the top.
    int GetBarPosition() const;
    bool WasMovedByHand() const { return movedByHand; }

    QSize minimumSizeHint() const override;

protected:
    CPaneSplitter(Qt::Orientation orientation, QWidget* parent);

    // Where the bar belongs in a splitter of this length, in pixels.
    virtual int PlaceBar(int length) const = 0;
    virtual void OnMovedByHand() = 0;
    void SetMovedByHand() { movedByHand = true; }
    void ApplyPlace();

    void resizeEvent(QResizeEvent* event) override;

    int GetLength() const { return orientation() == Qt::Horizontal ? width() : height(); }

private:
    bool movedByHand = false;
};

// The main bar: at three quarters of the width. Moved by hand, it keeps its share when the window is resized.
class CMainSplitter final : public CPaneSplitter {
public:
    explicit CMainSplitter(QWidget* parent = nullptr);

    double GetShare() const { return share; }
    // Of a bar that was moved by hand in a former run; a share that leaves no room for a pane is ignored.
    void RestoreShare(double formerShare);

protected:
    int PlaceBar(int length) const override;
    void OnMovedByHand() override;

private:
    double share = 0; // of the length; valid once moved by hand
};

// The secondary bar: the pane below it is as high as the right side of the frame is wide. Moved by hand, it
// keeps its distance from the top.
class CSideSplitter final : public CPaneSplitter {
public:
    explicit CSideSplitter(QWidget* parent = nullptr);

    int GetPosition() const { return position; }
    void RestorePosition(int formerPosition);

protected:
    int PlaceBar(int length) const override;
    void OnMovedByHand() override;

private:
    int position = 0; // pixels from the top; valid once moved by hand
};
