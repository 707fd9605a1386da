#pragma once

#include <QString>

class QPlainTextEdit;

// The rule between a text as pages hold it, with "</br>" for each line end, and as a person edits it.

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
