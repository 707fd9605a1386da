#include "shell/ftpdialogs/FolderLabelDelegate.h"

#include <QLineEdit>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

CFolderLabelDelegate::CFolderLabelDelegate(Listener listener, QObject* parent)
    : QStyledItemDelegate(parent), listener(std::move(listener))
{
    connect(this, &QAbstractItemDelegate::closeEditor, this, &CFolderLabelDelegate::OnEditorClosed);
}

QWidget* CFolderLabelDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const
{
    edited = index;
    editedText.clear();
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    NameControl(*editor, "label", Text(StringId::FolderNameEditor));
    return editor;
}

void CFolderLabelDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex&) const
{
    editedText = qobject_cast<QLineEdit*>(editor)->text();
}

void CFolderLabelDelegate::OnEditorClosed(QWidget*, EndEditHint hint)
{
    const QString text = hint == RevertModelCache ? QString() : editedText;
    QMetaObject::invokeMethod(
        this, [this, row = edited, text] { listener(row, text); }, Qt::QueuedConnection);
}
