#pragma once

#include <QPlainTextEdit>
#include <QString>

// Texts of pages as a person edits them; a page holds "</br>" for each line end.

// "a</br>b" gives "a\nb".
QString ShowLineBreaks(const QString& stored);

// "a\nb" gives "a</br>b"; so do "\r\n" and "\r".
QString StoreLineBreaks(const QString& shown);

// How much of the limit a text takes: UTF-16 units, with two for each line end.
qsizetype LengthWithLineEnds(const QString& shown);

// The beginning of a text that takes no more than that, by LengthWithLineEnds; no character is cut in half.
QString CutToLength(const QString& shown, qsizetype length);

// For a text of one line: pasted line ends become blanks.
QString OnOneLine(const QString& text);

// What stands in an edit, with "\n" for each line end. In place of QPlainTextEdit::toPlainText, which makes
// blanks of no-break spaces.
QString TextOf(const QPlainTextEdit& edit);

// An edit of several lines that takes a limited number of characters: of a text typed or pasted it takes as
// much as has room, and what stood there before stays. Tab leaves the edit.
class CLimitedTextEdit final : public QPlainTextEdit {
    Q_OBJECT

public:
    // limit: as LengthWithLineEnds counts.
    explicit CLimitedTextEdit(qsizetype limit, QWidget* parent = nullptr);

    // In place of setPlainText, which knows no limit.
    void SetText(const QString& text);
    // At the cursor, as Enter does, if it has room.
    void InsertLineBreak();

protected:
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    // For a text that takes the place of the selected one.
    qsizetype GetRoom() const;

    const qsizetype limit;
};
