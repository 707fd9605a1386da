#pragma once

#include <vector>

#include <QString>

// A string literal of a source, one piece of those that stand side by side.
struct SourceLiteral {
    QString file; // relative to src/
    int line = 0;
    QString text;      // as written between the quotation marks, escapes included
    QString statement; // what stands before it since the last ";", "{" or "}"
};

// Those of one source. Comments, characters and paths of include lines are none.
std::vector<SourceLiteral> FindLiterals(const QString& file, const QString& source);

// Whether it looks like a text for people, that is, like one that belongs into the string table:
// - two words side by side, or a word and a placeholder, once tags and their attributes are taken away;
// - a label: a word with a mnemonic ("Fo&lder"), or one that ends in ":", "..." or ">";
// - a capitalised word, or one after a blank, that is handed to a widget;
// - any word that is handed to an exception or printed.
// Trace lines are none. A single word in small letters that goes another way can't be told from a keyword.
bool IsForPeople(const SourceLiteral& literal);
