#include "shell/ftpdialogs/FolderBrowsing.h"

#include <QLineEdit>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int MaxDots = 30;

} // namespace

QString EnteredPath(const QString& directory, const QString& name)
{
    return directory.isEmpty() ? name : directory + QLatin1Char('/') + name;
}

QString NormalisedPath(const QString& path)
{
    const QString wayUp = QStringLiteral("/..");
    if (path.size() <= wayUp.size() || !path.endsWith(wayUp)) {
        return path;
    }
    const QString below = path.chopped(wayUp.size());
    return below.left(qMax(below.lastIndexOf(QLatin1Char('/')), qsizetype(0)));
}

QString WithOneMoreDot(const QString& text)
{
    const qsizetype firstDot = text.indexOf(QLatin1Char('.'));
    const bool isFull = firstDot >= 0 && text.size() - firstDot == MaxDots;
    return isFull ? Text(StringId::GettingFolders) : text + QLatin1Char('.');
}

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
    NameControl(*editor, "label", QStringLiteral("Name of the folder"));
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
