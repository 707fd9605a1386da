#pragma once

#include <QToolButton>

// A tool button with a menu whose arrow stands behind the text, at its height. The style's own arrow sits in
// the lower corner. Owned by its toolbar.
class CDropDownButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
