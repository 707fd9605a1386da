#pragma once

#include <map>

#include <QDialog>
#include <QString>

class QListWidget;

// Chooses which elements of a page are shown. Owned by its caller; the map is copied, and the edited one is
// read after Accepted.
class CDlgVisibility final : public QDialog {
    Q_OBJECT

public:
    using Elements = std::map<QString, bool>;

    CDlgVisibility(const Elements& elements, QWidget* parent);

    // The same names as before.
    Elements GetElements() const;

private:
    void Add(const QString& name, bool visible);
    void CheckAll();

    QListWidget* list;
};
