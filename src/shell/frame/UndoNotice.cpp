#include "shell/frame/UndoNotice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s;

} // namespace

CUndoNotice::CUndoNotice(QWidget& over, const std::function<void()>& undo)
    : CFloatingBar(over), text(new QLabel(this))
{
    setObjectName(QStringLiteral("UndoNotice"));
    text->setForegroundRole(QPalette::Text);
    text->setTextFormat(Qt::PlainText);
    QPushButton* const button = MakeButton(Text(StringId::UndoButton), "undoNotice", this);
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QPushButton::clicked, this, [this, undo] {
        hide();
        undo();
    });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(14, 8, 8, 8);
    line->setSpacing(16);
    line->addWidget(text, 1);
    line->addWidget(button);
    timer.setSingleShot(true);
    timer.setInterval(patience);
    connect(&timer, &QTimer::timeout, this, &QWidget::hide);
}

void CUndoNotice::Tell(const QString& newText)
{
    text->setText(newText);
    show();
    Fit();
    timer.start();
}
