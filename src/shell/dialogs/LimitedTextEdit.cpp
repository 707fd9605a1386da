#include "shell/dialogs/LimitedTextEdit.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

#include "shell/dialogs/LineBreaks.h"

CLimitedTextEdit::CLimitedTextEdit(qsizetype limit, QWidget* parent) : QPlainTextEdit(parent), limit(limit)
{
    setTabChangesFocus(true);
}

void CLimitedTextEdit::SetText(const QString& text)
{
    setPlainText(CutToLength(text, limit));
}

qsizetype CLimitedTextEdit::GetRoom() const
{
    // A selection has U+2029 for its line ends.
    QString selected = textCursor().selectedText();
    selected.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return limit - LengthWithLineEnds(toPlainText()) + LengthWithLineEnds(selected);
}

void CLimitedTextEdit::insertFromMimeData(const QMimeData* source)
{
    QString text = source->text();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    insertPlainText(CutToLength(text, GetRoom()));
}

void CLimitedTextEdit::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QString typed = isReturn ? QStringLiteral("\n") : event->text();
    const bool isText = isReturn || (!typed.isEmpty() && typed.at(0).isPrint());
    if (isText && LengthWithLineEnds(typed) > GetRoom()) {
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void CLimitedTextEdit::inputMethodEvent(QInputMethodEvent* event)
{
    QInputMethodEvent fitting(event->preeditString(), event->attributes());
    fitting.setCommitString(CutToLength(event->commitString(), GetRoom()), event->replacementStart(),
                            event->replacementLength());
    QPlainTextEdit::inputMethodEvent(&fitting);
}
