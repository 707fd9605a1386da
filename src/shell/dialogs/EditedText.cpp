#include "shell/dialogs/EditedText.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTextDocument>

namespace {

// Not the "<br/>" of HTML. Projects hold it so, and browsers take it for a line break all the same.
const QString StoredBreak = QStringLiteral("</br>");
const QString ShownBreak = QStringLiteral("\n");

} // namespace

QString ShowLineBreaks(const QString& stored)
{
    return QString(stored).replace(StoredBreak, ShownBreak);
}

QString StoreLineBreaks(const QString& shown)
{
    QString text = shown;
    text.replace(QStringLiteral("\r\n"), ShownBreak);
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.replace(ShownBreak, StoredBreak);
}

qsizetype LengthWithLineEnds(const QString& shown)
{
    return shown.size() + shown.count(QLatin1Char('\n'));
}

QString CutToLength(const QString& shown, qsizetype length)
{
    qsizetype taken = 0;
    qsizetype end = 0;
    while (end < shown.size()) {
        taken += shown.at(end) == QLatin1Char('\n') ? 2 : 1;
        if (taken > length) {
            break;
        }
        ++end;
    }
    if (end > 0 && end < shown.size() && shown.at(end).isLowSurrogate()) {
        --end;
    }
    return shown.left(end);
}

QString OnOneLine(const QString& text)
{
    static const QRegularExpression lineEnds(QStringLiteral("[\\r\\n]+"));
    return QString(text).replace(lineEnds, QStringLiteral(" "));
}

QString TextOf(const QPlainTextEdit& edit)
{
    QString text = edit.document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text.replace(QChar::LineSeparator, QLatin1Char('\n'));
}

CLimitedTextEdit::CLimitedTextEdit(qsizetype limit, QWidget* parent) : QPlainTextEdit(parent), limit(limit)
{
    setTabChangesFocus(true);
}

void CLimitedTextEdit::SetText(const QString& text)
{
    setPlainText(CutToLength(text, limit));
}

void CLimitedTextEdit::InsertLineBreak()
{
    insertPlainText(CutToLength(ShownBreak, GetRoom()));
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
