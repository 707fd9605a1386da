#include "shell/dialogs/LimitedTextEdit.h"

#include <QTextCursor>
#include <QTextDocument>

#include "shell/dialogs/LineBreaks.h"

CLimitedTextEdit::CLimitedTextEdit(qsizetype limit, QWidget* parent) : QPlainTextEdit(parent), limit(limit)
{
    setTabChangesFocus(true);
    connect(document(), &QTextDocument::contentsChange, this, [this](int position, int, int added) {
        insertedEnd = position + added;
        insertedLength = added;
    });
    connect(this, &QPlainTextEdit::textChanged, this, &CLimitedTextEdit::CutInserted);
}

void CLimitedTextEdit::CutInserted()
{
    if (cutting) {
        return;
    }
    cutting = true;
    QTextCursor cursor(document());
    const int begin = insertedEnd - insertedLength;
    int end = qMin(insertedEnd, document()->characterCount() - 1);
    while (end > begin && LengthWithLineEnds(toPlainText()) > limit) {
        const auto excess = static_cast<int>(LengthWithLineEnds(toPlainText()) - limit);
        // At least half of it, since a line end counts twice.
        int cut = qMax(begin, end - (excess + 1) / 2);
        if (cut > begin && document()->characterAt(cut).isLowSurrogate()) {
            --cut;
        }
        cursor.setPosition(cut);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        cursor.joinPreviousEditBlock();
        cursor.removeSelectedText();
        cursor.endEditBlock();
        end = cut;
    }
    cutting = false;
}
