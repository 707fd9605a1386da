#pragma once

#include <functional>

#include <QStyledItemDelegate>

// What the browser of a server's folders has of its own: the path of a person who walks through them, and the
// edit of their names.

// The directory that activating a row of that name asks for: "" and "a" give "a", "a" and ".." give "a/..".
QString EnteredPath(const QString& directory, const QString& name);

// "a/b/.." gives "a", and "a/.." the empty path: the way up is a name like any other until the server has
// gone it.
QString NormalisedPath(const QString& path);

// The text of the row that waits for a listing, a second later: up to 30 dots, then without any again.
QString WithOneMoreDot(const QString& text);

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
