#pragma once

#include <QTableView>

#include "shell/dialogs/PictureTextsDelegates.h"

class CPictureTextsModel;

// The table of CDlgPictureTexts, with the keys and the clipboard of a table program. Owned by the dialog.
class CPictureTextsTable final : public QTableView {
    Q_OBJECT

public:
    // The model is borrowed. thumbnail: in logical pixels.
    CPictureTextsTable(CPictureTextsModel& model, QSize thumbnail, QWidget* parent);

    // Takes what is being typed into a cell.
    void CommitEditing();

Q_SIGNALS:
    // Something has been pasted. beyond: how many of the lines didn't fit.
    void pasted(int beyond);
    // The person has pressed Ctrl+Enter.
    void finished();

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void verticalScrollbarValueChanged(int value) override;

private:
    void AddCommands();
    void Cut();
    void Copy();
    void Paste();
    void FillDown();
    void Empty();

    void Leave(CPictureTextDelegate::Leaving leaving);
    // Gives the keyboard to the control after the table, or before it.
    void LeaveTable(bool forward);
    bool Move(Qt::Key key);
    // The selected cells, or the current one if none is.
    QModelIndexList GetCells() const;
    void ShowThumbnails();

    CPictureTextsModel& model;
};
