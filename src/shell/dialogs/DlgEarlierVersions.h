#pragma once

#include <vector>

#include <QDateTime>
#include <QDialog>
#include <QString>

class QTreeWidget;

// Chooses one of the states that a project's file had before. Owned by its caller; the list is copied, and
// the choice is read after Accepted.
class CDlgEarlierVersions final : public QDialog {
    Q_OBJECT

public:
    struct Version {
        QDateTime changed;
        int galleries = 0;
        int pictures = 0;
    };

    // versions: the latest first; without any there is nothing to open, and the dialog says why.
    CDlgEarlierVersions(const QString& projectName, const std::vector<Version>& versions, QWidget* parent);

    // The place of the chosen version in the list.
    size_t GetChosen() const;

private:
    QTreeWidget* list;
};
