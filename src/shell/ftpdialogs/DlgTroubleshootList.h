#pragma once

#include <QDialog>
#include <QString>

// Shows what a server really sent for a listing. Owned by its caller.
class CDlgTroubleshootList final : public QDialog {
    Q_OBJECT

public:
    CDlgTroubleshootList(const QString& listing, QWidget* parent);
};
