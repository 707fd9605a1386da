#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// Tables as programs hand them to each other through the clipboard (text/plain): a line for each row, a tab
// between two cells. A cell that holds a tab, a line end or a quotation mark stands in quotation marks, with
// those in it doubled.

// Lines end with "\n", "\r\n" or "\r"; that of the last line makes no row. Line ends within a cell become
// "\n". Quotation marks that don't open a cell are characters like all others, and so is one that is never
// closed: text that no table program has written loses nothing.
QList<QStringList> ReadTable(const QString& text);

// Without a line end after the last row.
QString WriteTable(const QList<QStringList>& rows);
