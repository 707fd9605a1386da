#pragma once

#include <functional>

#include <QFrame>

class QLabel;

// A line above the page that says how many pictures of the project are not there, leads to them, and has them
// looked for. Not shown while there are none. Owned by its panel; screen's thread.
class CAbsentBar final : public QFrame {
public:
    struct Actions {
        std::function<void()> find; // asks for a folder with them
        std::function<void()> show; // asks for the first of them
    };
    explicit CAbsentBar(const Actions& actions, QWidget* parent = nullptr);

    void SetCount(int count);

private:
    QLabel* const text;
};
