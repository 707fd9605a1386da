#pragma once

#include <QStyledItemDelegate>

// How the cells of CPictureTextsTable look and are edited. Owned by the table.

// The thumbnail in the middle of its cell; a neutral card as long as there is none.
class CThumbnailDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    // box: in logical pixels, which all thumbnails fit.
    CThumbnailDelegate(QSize box, QObject* parent) : QStyledItemDelegate(parent), box(box) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    const QSize box;
};

// A title is edited on one line, a description on several: Shift+Enter or Alt+Enter goes to the next. What
// has not been changed is not written.
class CPictureTextDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    // How the person has left a cell, beside Escape.
    enum class Leaving { ToNext, ToPrevious, Down, WithAll };

    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    // With all of it selected, so that what is typed next takes its place.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

Q_SIGNALS:
    // The text has been taken, and the editor is closed.
    void cellLeft(Leaving leaving);

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;

private:
    bool FilterKey(QWidget& editor, const QKeyEvent& key);
};
