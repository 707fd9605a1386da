#pragma once

#include <QToolBar>

// A toolbar of a panel: what all of them look like, and buttons by description. Owned by its panel; screen's
// thread.
class CToolBarDescriptor : public QToolBar {
public:
    struct Button {
        QString objectName; // by which tests and screen readers find it
        QString icon;       // name of the artwork
        QString text;
        QString tip;
    };

    explicit CToolBarDescriptor(QWidget* parent = nullptr);

protected:
    // The button's action; its trigger is the caller's to connect.
    QAction* AddButton(const Button& button);
};
