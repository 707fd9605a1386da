#pragma once

#include <functional>

#include <QStyledItemDelegate>

// Lets a person edit the label of a row without changing the row: what the edit brought is told from the
// event loop, when the editor has closed, and it is the listener's to accept. Owned by its list.
class CFolderLabelDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    // An edit that was cancelled brings an empty text.
    using Listener = std::function<void(const QPersistentModelIndex& row, const QString& text)>;

    CFolderLabelDelegate(Listener listener, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

private:
    void OnEditorClosed(QWidget* editor, EndEditHint hint);

    const Listener listener;
    mutable QPersistentModelIndex edited;
    mutable QString editedText; // empty until it is committed
};
