#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QSortFilterProxyModel;
class QTreeView;

// A gallery of the tree as CDlgChooseGallery shows it.
struct ListedGallery {
    int32_t index = 0;
    int32_t parent = -1; // its index; -1 for one at the top
    QString title;
    int pictures = 0;
};

// Asks for a gallery of the tree: by mouse, by arrow keys, or by typing a part of its title. Owned by its
// caller; the list is copied, and the choice is read after Accepted.
class CDlgChooseGallery final : public QDialog {
    Q_OBJECT

public:
    struct Options {
        QString title;       // of the window
        QString buttonText;  // of the button that takes the choice
        int32_t current = 0; // shown, and not to be chosen: the gallery that the pictures are in
    };
    // galleries: siblings in their order.
    CDlgChooseGallery(const std::vector<ListedGallery>& galleries, const Options& options, QWidget* parent);

    // By its index. Nothing before one is chosen.
    std::optional<int32_t> GetChosen() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MakeControls(const Options& options);
    void OnFilterChanged(const QString& text);
    void OnChosen(const QModelIndex& row);
    // The first one whose own title has the text, and which can be chosen.
    QModelIndex FindFirstMatch() const;

    QSortFilterProxyModel* shown;
    QLineEdit* filter;
    QTreeView* tree;
    QLabel* message;
    QPushButton* ok = nullptr;
};
