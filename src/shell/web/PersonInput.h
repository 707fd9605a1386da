#pragma once

#include <chrono>
#include <deque>
#include <functional>

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

class QInputEvent;

// What a person does on a view by mouse, keyboard or finger. Each press is good for one request of the page
// that it was made on, and not for long: so a page can ask for something in answer to a person, and never by
// itself. Owned by the view's host; screen's thread.
class CPersonInput final : public QObject {
public:
    // pressed: called at each press, with its number, from inside the event. Whoever learns that the page has
    // got the press by then says so with Arrived. life: how long a press is good for after that.
    explicit CPersonInput(std::function<void(int press)> pressed,
                          std::chrono::milliseconds life = std::chrono::seconds(1))
        : pressed(std::move(pressed)), life(life)
    {}

    // The widget with all that is inside of it, and that will be.
    void Watch(QWidget& widget);

    // The life of the press begins anew: a page that is busy hears of it late.
    void Arrived(int press);
    // Uses the oldest press up that is still good. False if there is none.
    bool Take();
    // What was pressed was pressed on another page.
    void Forget() { presses.clear(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Press(QWidget& target, const QInputEvent& event);
    void Renew();

    const std::function<void(int press)> pressed;
    const std::chrono::milliseconds life;
    int lastPress = 0;
    QPointer<QWidget> lastTarget;       // of its event
    quint64 lastTime = 0;               // likewise, in milliseconds
    bool isUnderway = false;            // the page may not have got the last one yet
    std::deque<QDeadlineTimer> presses; // that are not used up: how long each is good
};
