#include "shell/dialogs/PictureTextsDelegates.h"

#include <optional>

#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "shell/dialogs/EditedText.h"
#include "shell/dialogs/PictureTextsModel.h"
#include "shell/look/Icons.h"

namespace {

constexpr int LinesOfEditor = 5; // of a description, where the cell is lower

void DrawCard(QPainter& painter, const QRect& card, const QPalette& palette)
{
    QColor edge = palette.color(QPalette::Text);
    edge.setAlphaF(0.25f);
    QColor ground = palette.color(QPalette::Text);
    ground.setAlphaF(0.06f);
    constexpr qreal radius = 3;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(card).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void DrawOnCard(QPainter& painter, const QRect& card, const QString& icon)
{
    constexpr int size = 24;
    QRect place(0, 0, size, size);
    place.moveCenter(card.center());
    painter.setOpacity(0.6); // less than the texts beside it
    LoadIcon(icon).paint(&painter, place);
}

void DrawImage(QPainter& painter, const QRect& area, QImage image)
{
    image.setDevicePixelRatio(painter.device()->devicePixelRatioF());
    QRectF place(QPointF(), image.deviceIndependentSize());
    place.moveCenter(QRectF(area).center());
    painter.drawImage(place.topLeft().toPoint(), image);
}

std::optional<CPictureTextDelegate::Leaving> LeavingBy(const QKeyEvent& key, bool hasLines)
{
    using Leaving = CPictureTextDelegate::Leaving;
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (isEnter && modifiers == Qt::ControlModifier) {
        return Leaving::WithAll;
    }
    if (isEnter && (modifiers == Qt::NoModifier || !hasLines)) {
        return Leaving::Down;
    }
    if (key.key() == Qt::Key_Backtab) {
        return Leaving::ToPrevious;
    }
    return key.key() == Qt::Key_Tab ? std::optional(Leaving::ToNext) : std::nullopt;
}

} // namespace

void CThumbnailDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const
{
    const QVariant decoration = index.data(Qt::DecorationRole);
    painter->save();
    if (const QImage image = decoration.value<QImage>(); !image.isNull()) {
        DrawImage(*painter, option.rect, image);
    } else {
        QRect card(QPoint(), box);
        card.moveCenter(option.rect.center());
        DrawCard(*painter, card, option.palette);
        if (index.data(CPictureTextsModel::IsNoFileRole).toBool()) {
            DrawOnCard(*painter, card, QStringLiteral("gallery"));
        } else if (decoration.isValid()) { // else it is still being made
            DrawOnCard(*painter, card, QStringLiteral("no-picture"));
        }
    }
    painter->restore();
}

QWidget* CPictureTextDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                            const QModelIndex& index) const
{
    if (index.column() == CPictureTextsModel::Title) {
        auto* line = new QLineEdit(parent);
        line->setMaxLength(CPictureTextsModel::TitleLimit);
        return line;
    }
    auto* lines = new CLimitedTextEdit(CPictureTextsModel::DescriptionLimit, parent);
    // It may cover other cells: its edge has to be seen on them.
    lines->setFrameStyle(QFrame::Box | QFrame::Plain);
    QPalette palette = lines->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Highlight));
    lines->setPalette(palette);
    return lines;
}

void CPictureTextDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QString text = index.data(Qt::EditRole).toString();
    const QString column =
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString();
    editor->setAccessibleName(column);
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(text);
        line->selectAll();
    } else if (auto* lines = qobject_cast<CLimitedTextEdit*>(editor)) {
        lines->SetText(text);
        lines->document()->setModified(false);
        lines->selectAll();
    }
}

void CPictureTextDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const
{
    const auto* line = qobject_cast<const QLineEdit*>(editor);
    const auto* lines = qobject_cast<const CLimitedTextEdit*>(editor);
    if (line && line->isModified()) {
        model->setData(index, line->text(), Qt::EditRole);
    } else if (lines && lines->document()->isModified()) {
        model->setData(index, TextOf(*lines), Qt::EditRole);
    }
}

// An editor of several lines may cover the next rows, or, at the end of the table, those before.
void CPictureTextDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                const QModelIndex&) const
{
    QRect place = option.rect;
    if (qobject_cast<const QLineEdit*>(editor)) {
        const int height = editor->sizeHint().height();
        place.setTop(option.rect.center().y() - height / 2);
        place.setHeight(height);
    } else {
        constexpr int margins = 10; // of frame and document, above and below
        const int wanted = LinesOfEditor * editor->fontMetrics().lineSpacing() + margins;
        place.setHeight(std::max(place.height(), wanted));
        const int below = place.bottom() - editor->parentWidget()->rect().bottom();
        place.translate(0, -std::max(0, below));
    }
    editor->setGeometry(place);
}

bool CPictureTextDelegate::eventFilter(QObject* editor, QEvent* event)
{
    auto* const widget = qobject_cast<QWidget*>(editor);
    if (widget && event->type() == QEvent::KeyPress && FilterKey(*widget, *static_cast<QKeyEvent*>(event))) {
        return true;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

bool CPictureTextDelegate::FilterKey(QWidget& editor, const QKeyEvent& key)
{
    auto* const lines = qobject_cast<CLimitedTextEdit*>(&editor);
    if (const std::optional<Leaving> leaving = LeavingBy(key, lines != nullptr)) {
        Q_EMIT commitData(&editor);
        Q_EMIT closeEditor(&editor, NoHint);
        Q_EMIT cellLeft(*leaving);
        return true;
    }
    if (lines && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)) {
        lines->InsertLineBreak();
        return true;
    }
    return false;
}
