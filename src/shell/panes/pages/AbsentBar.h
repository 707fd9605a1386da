#pragma once

#include <functional>

#include <QFrame>

class QLabel;

// A line above the page that says how many pictures of the project are not there, and leads to them. Not
// shown while there are none. Owned by its panel; screen's thread.
class CAbsentBar final : public QFrame {
public:
    // show: asks for the first of them.
    explicit CAbsentBar(const std::function<void()>& show, QWidget* parent = nullptr);

    void SetCount(int count);

private:
    QLabel* const text;
};
