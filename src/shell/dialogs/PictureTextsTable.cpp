#include "shell/dialogs/PictureTextsTable.h"

#include <algorithm>
#include <map>
#include <set>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>

#include "common/TableText.h"
#include "resources/StringTable.h"
#include "shell/dialogs/PictureTextsModel.h"
#include "shell/look/Icons.h"

namespace {

using Column = CPictureTextsModel::Column;

constexpr int SpaceAround = 5; // of a thumbnail, in pixels

bool IsEditable(const QModelIndex& cell)
{
    return (cell.flags() & Qt::ItemIsEditable) != 0;
}

void PutCursorAtEnd(QWidget* editor)
{
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->end(false);
    } else if (auto* lines = qobject_cast<QPlainTextEdit*>(editor)) {
        lines->moveCursor(QTextCursor::End);
    }
}

} // namespace

CPictureTextsTable::CPictureTextsTable(CPictureTextsModel& model, QSize thumbnail, QWidget* parent)
    : QTableView(parent), model(model)
{
    setModel(&model);
    setItemDelegateForColumn(Column::Thumbnail, new CThumbnailDelegate(thumbnail, this));
    auto* texts = new CPictureTextDelegate(this);
    setItemDelegate(texts);
    connect(texts, &CPictureTextDelegate::cellLeft, this, &CPictureTextsTable::Leave);

    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(true);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(thumbnail.height() + 2 * SpaceAround);
    QHeaderView& columns = *horizontalHeader();
    columns.setHighlightSections(false);
    columns.setSectionResizeMode(Column::Thumbnail, QHeaderView::Fixed);
    columns.setSectionResizeMode(Column::Description, QHeaderView::Stretch);
    columns.resizeSection(Column::Thumbnail, thumbnail.width() + 2 * SpaceAround);
    columns.resizeSection(Column::Title, 240);
    columns.resizeSection(Column::FileName, 170);
    AddCommands();
    // Whatever key is held down at the moment.
    selectionModel()->setCurrentIndex(model.index(0, Column::Title), QItemSelectionModel::ClearAndSelect);
}

void CPictureTextsTable::AddCommands()
{
    const auto add = [this](StringId text, const char* icon, const QKeySequence& key,
                            void (CPictureTextsTable::*command)()) {
        auto* action = new QAction(LoadIcon(QString::fromLatin1(icon)), Text(text), this);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut); // an editor of a cell has keys of its own
        connect(action, &QAction::triggered, this, command);
        addAction(action);
    };
    add(StringId::CutCommand, "cut", QKeySequence::Cut, &CPictureTextsTable::Cut);
    add(StringId::CopyCommand, "copy", QKeySequence::Copy, &CPictureTextsTable::Copy);
    add(StringId::PasteCommand, "paste", QKeySequence::Paste, &CPictureTextsTable::Paste);
    add(StringId::ClearCommand, "remove", QKeySequence::Delete, &CPictureTextsTable::Empty);
    add(StringId::FillDownCommand, "move-down", QKeySequence(Qt::CTRL | Qt::Key_D),
        &CPictureTextsTable::FillDown);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CPictureTextsTable::CommitEditing()
{
    if (QWidget* const editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

// Typing takes the place of the text; all other ways go on with it.
bool CPictureTextsTable::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    const bool wasEditing = state() == EditingState;
    const bool isEditing = QTableView::edit(index, trigger, event);
    if (isEditing && !wasEditing && trigger != AnyKeyPressed) {
        PutCursorAtEnd(indexWidget(index));
    }
    return isEditing;
}

void CPictureTextsTable::LeaveTable(bool forward)
{
    setTabKeyNavigation(false); // by which the view would only go to another cell
    QTableView::focusNextPrevChild(forward);
    setTabKeyNavigation(true);
}

void CPictureTextsTable::keyPressEvent(QKeyEvent* event)
{
    const bool isControl = (event->modifiers() & Qt::ControlModifier) != 0;
    switch (event->key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (isControl) {
            LeaveTable(event->key() == Qt::Key_Tab);
        } else {
            QTableView::keyPressEvent(event);
        }
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isControl) {
            Q_EMIT finished();
        } else {
            Move((event->modifiers() & Qt::ShiftModifier) != 0 ? Qt::Key_Up : Qt::Key_Down);
        }
        return;
    case Qt::Key_Escape: // the dialog's; it would be a character that begins editing
        event->ignore();
        return;
    default:
        QTableView::keyPressEvent(event);
    }
}

// By Tab: from cell to cell that can be edited. At the end of them the focus goes on.
QModelIndex CPictureTextsTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action != MoveNext && action != MovePrevious) {
        return QTableView::moveCursor(action, modifiers);
    }
    QModelIndex cell = currentIndex();
    do {
        const int place = cell.row() * Column::ColumnCount + cell.column() + (action == MoveNext ? 1 : -1);
        cell =
            place < 0 ? QModelIndex() : model.index(place / Column::ColumnCount, place % Column::ColumnCount);
    } while (cell.isValid() && !IsEditable(cell));
    return cell;
}

// As the table does by itself, so that a selection by Shift begins there afterwards. False if there is no
// cell to go to.
bool CPictureTextsTable::Move(Qt::Key key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QTableView::keyPressEvent(&event);
    return event.isAccepted();
}

// A thumbnail stands for its row.
void CPictureTextsTable::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid() || cell.column() != Column::Thumbnail) {
        return QTableView::mousePressEvent(event);
    }
    const QPoint title = visualRect(cell.siblingAtColumn(Column::Title)).center();
    QMouseEvent moved(event->type(), title, viewport()->mapToGlobal(title), event->button(), event->buttons(),
                      event->modifiers());
    QTableView::mousePressEvent(&moved);
}

void CPictureTextsTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    ShowThumbnails();
}

void CPictureTextsTable::verticalScrollbarValueChanged(int value)
{
    QTableView::verticalScrollbarValueChanged(value);
    ShowThumbnails();
}

void CPictureTextsTable::ShowThumbnails()
{
    const int last = rowAt(viewport()->height() - 1);
    model.ShowRows(std::max(0, rowAt(0)), last < 0 ? model.rowCount() - 1 : last);
}

QModelIndexList CPictureTextsTable::GetCells() const
{
    QModelIndexList cells = selectedIndexes();
    if (cells.isEmpty() && currentIndex().isValid()) {
        cells += currentIndex();
    }
    std::sort(cells.begin(), cells.end());
    return cells;
}

void CPictureTextsTable::Cut()
{
    Copy();
    Empty();
}

// The smallest rectangle that holds the cells; those in it that are not selected are empty.
void CPictureTextsTable::Copy()
{
    std::set<int> columns;
    std::map<int, std::map<int, QString>> texts; // by row and column
    for (const QModelIndex& cell : GetCells()) {
        columns.insert(cell.column());
        texts[cell.row()][cell.column()] = cell.data(Qt::EditRole).toString();
    }
    if (texts.empty()) {
        return;
    }
    QList<QStringList> rows;
    for (int row = texts.begin()->first; row <= texts.rbegin()->first; ++row) {
        QStringList line;
        for (int column = *columns.begin(); column <= *columns.rbegin(); ++column) {
            line += texts[row][column];
        }
        rows += line;
    }
    QGuiApplication::clipboard()->setText(WriteTable(rows));
}

void CPictureTextsTable::Empty()
{
    for (const QModelIndex& cell : GetCells()) {
        model.setData(cell, QString(), Qt::EditRole);
    }
}

// One text goes into all selected cells; a table into those from the current one on.
void CPictureTextsTable::Paste()
{
    const QList<QStringList> texts = ReadTable(QGuiApplication::clipboard()->text());
    const QModelIndex first = currentIndex();
    if (texts.isEmpty() || !first.isValid()) {
        return;
    }
    int beyond = 0;
    if (texts.size() == 1 && texts[0].size() == 1) {
        for (const QModelIndex& cell : GetCells()) {
            model.setData(cell, texts[0][0], Qt::EditRole);
        }
    } else if (IsEditable(first)) {
        beyond = model.SetTexts(first, texts);
        const qsizetype width =
            std::max_element(texts.begin(), texts.end(), [](const QStringList& a, const QStringList& b) {
                return a.size() < b.size();
            })->size();
        const int right = std::min<int>(first.column() + static_cast<int>(width) - 1, Column::Description);
        const int bottom = first.row() + static_cast<int>(texts.size()) - beyond - 1;
        selectionModel()->select(QItemSelection(first, model.index(bottom, right)),
                                 QItemSelectionModel::ClearAndSelect);
    }
    Q_EMIT pasted(beyond);
}

void CPictureTextsTable::FillDown()
{
    std::map<int, QVariant> firsts; // by column
    for (const QModelIndex& cell : GetCells()) {
        const auto [first, isFirst] = firsts.try_emplace(cell.column(), cell.data(Qt::EditRole));
        if (!isFirst) {
            model.setData(cell, first->second, Qt::EditRole);
        }
    }
}

void CPictureTextsTable::Leave(CPictureTextDelegate::Leaving leaving)
{
    using Leaving = CPictureTextDelegate::Leaving;
    switch (leaving) {
    case Leaving::ToNext:
    case Leaving::ToPrevious:
        if (const bool next = leaving == Leaving::ToNext; !Move(next ? Qt::Key_Tab : Qt::Key_Backtab)) {
            LeaveTable(next);
        }
        return;
    case Leaving::Down:
        Move(Qt::Key_Down);
        return;
    case Leaving::WithAll:
        Q_EMIT finished();
    }
}
