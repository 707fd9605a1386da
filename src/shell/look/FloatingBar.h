#pragma once

#include <QFrame>

// A bar that lies over the lower edge of a widget, in the middle, while it is shown. Several over one widget
// stand one above the other, the one that was made first at the bottom. It takes no focus from what lies
// below it. Owned by the widget; screen's thread.
class CFloatingBar : public QFrame {
public:
    explicit CFloatingBar(QWidget& over);

protected:
    // To be called when what the bar holds has changed.
    void Fit();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    static void Arrange(const QWidget& over);

    QWidget& over;
};
