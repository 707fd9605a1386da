#pragma once

#include <chrono>
#include <functional>

#include <QDeadlineTimer>
#include <QObject>

class QWidget;

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
    // Uses the last press up. False if there is none, or it was too long ago.
    bool Take();
    // What was pressed was pressed on another page.
    void Forget() { isPressed = false; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Press();
    void Renew();

    const std::function<void(int press)> pressed;
    const std::chrono::milliseconds life;
    int lastPress = 0;
    bool isPressed = false;  // and not used up
    bool isUnderway = false; // the page may not have got it yet
    QDeadlineTimer deadline;
};
