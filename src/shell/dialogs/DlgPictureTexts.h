#pragma once

#include <vector>

#include <QDialog>

#include "shell/dialogs/PictureTextsModel.h"

class CPictureTextsTable;
class QLabel;

// Edits the titles and descriptions of many pictures in a table, by keyboard as in a table program. Comes up
// at once however many there are: thumbnails are made meanwhile. Owned by its caller; the texts are copied,
// and what was changed is read after Accepted.
class CDlgPictureTexts final : public QDialog {
    Q_OBJECT

public:
    // pictures: not empty.
    CDlgPictureTexts(std::vector<PictureTexts> pictures, QWidget* parent);

    std::vector<PictureTextsChange> GetChanges() const { return model.GetChanges(); }

    void accept() override;
    // Asks first if something was changed.
    void reject() override;

private:
    void TellBeyond(int lines);

    CPictureTextsModel model;
    CPictureTextsTable* table;
    QLabel* hint;
    QLabel* message;
};
