#pragma once

#include <QDialog>

// Says what the program is, which version, and what it is made of. Owned by its caller. Screen's thread.
class CDlgAbout final : public QDialog {
public:
    explicit CDlgAbout(QWidget* parent);
};
