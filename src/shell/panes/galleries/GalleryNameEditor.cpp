#include "shell/panes/galleries/GalleryNameEditor.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

#include "resources/StringTable.h"
#include "shell/dialogs/DlgEditTextProperty.h"

namespace {

// In pixels. A cover in a narrow pane would leave room for a few letters only.
constexpr int leastWidth = 170;
constexpr int margin = 6; // to the edges of the view

} // namespace

CGalleryNameEditor::CGalleryNameEditor(QWidget& view, QWidget& page, Taker taker)
    : QLineEdit(&view), view(view), page(page), taker(std::move(taker))
{
    setObjectName(QStringLiteral("GalleryNameEditor"));
    setAccessibleName(Text(StringId::GalleryNameField));
    setToolTip(Text(StringId::GalleryNameField));
    setAlignment(Qt::AlignHCenter);
    setMaxLength(CDlgEditTextProperty::LineLimit);
    hide();
}

void CGalleryNameEditor::Open(int32_t newGallery, const QString& name)
{
    if (gallery == newGallery) {
        selectAll();
        return;
    }
    Take();
    gallery = newGallery;
    setText(name.trimmed());
    former = text();
}

void CGalleryNameEditor::Place(const CoverPlace& cover)
{
    const int room = view.width() - 2 * margin;
    const int width = std::min(std::max(cover.width, leastWidth), room);
    const int height = sizeHint().height();
    const int x = cover.left + (cover.width - width) / 2;
    const int y = cover.bottom - height;
    setGeometry(std::clamp(x, margin, margin + room - width),
                std::clamp(y, 0, std::max(0, view.height() - height)), width, height);
    if (isHidden()) {
        show();
        raise();
        setFocus();
        selectAll();
    }
}

void CGalleryNameEditor::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        page.setFocus();
        Take(); // if that has not done it
        break;
    case Qt::Key_Escape:
        GiveUp();
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void CGalleryNameEditor::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    // Its own menu belongs to it. While a dialog is open nothing can be changed: the person comes back.
    if (event->reason() != Qt::PopupFocusReason && QApplication::activeModalWidget() == nullptr) {
        Take();
    }
}

void CGalleryNameEditor::Take()
{
    const std::optional<int32_t> renamed = gallery;
    const QString name = text().trimmed();
    const bool isNews = renamed && !name.isEmpty() && name != former;
    Close();
    if (isNews) {
        taker(*renamed, name);
    }
}

void CGalleryNameEditor::GiveUp()
{
    Close();
}

void CGalleryNameEditor::Close()
{
    gallery.reset();
    if (hasFocus()) {
        page.setFocus();
    }
    hide();
}
