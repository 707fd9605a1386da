#pragma once

#include <cstddef>
#include <vector>

#include <QDialog>
#include <QString>

class QPushButton;
class QTreeWidget;

// Shows which files were found for pictures that are not there, and lets a person choose. Owned by its
// caller; the list is copied, and the choice is read after Accepted.
class CDlgFoundPictures final : public QDialog {
    Q_OBJECT

public:
    struct Match {
        QString oldPath;
        QString newPath;
        bool hasExactSize = false; // as the picture had it when the project was saved
    };

    // matches: not empty. missing: how many were looked for.
    // folder: that was looked through; places are shown from there on.
    CDlgFoundPictures(const std::vector<Match>& matches, int missing, const QString& folder, QWidget* parent);

    // Places in the list.
    std::vector<size_t> GetChosen() const;

private:
    QTreeWidget* list;
};
