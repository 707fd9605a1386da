#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include <QString>

// One argument of a format text, already as text. Implicit, so that texts, paths, bytes and numbers can be
// passed as they are. Narrow text is UTF-8.
class CFormatArgument {
public:
    CFormatArgument(const QString& text) : text(text) {}
    CFormatArgument(const char* text) : text(QString::fromUtf8(text)) {}
    CFormatArgument(const std::string& text) : text(QString::fromStdString(text)) {}
    CFormatArgument(char byte) : text(QString(QLatin1Char(byte))) {}
    CFormatArgument(int number) : text(QString::number(number)), number(number) {}

    const QString& GetText() const { return text; }
    // What it was made of, if that was a number.
    std::optional<int> GetNumber() const { return number; }

private:
    QString text;
    std::optional<int> number;
};

// Puts the arguments, in order, in place of %s, %hs, %hc, %d and %x (the argument is text already, so the
// caller writes the hexadecimal digits). A translation that needs another order names the arguments, from 1
// on, as in POSIX: "%2$s in %1$s". "%%" becomes "%". A placeholder without an argument and any other "%" stay
// as they are. A text that is used without arguments is not to be passed here: its "%" are literal.
QString FormatText(const QString& format, std::initializer_list<CFormatArgument> arguments);

// Whether a translation can take the place of a format text: each of its placeholders is of the same kind as
// the original's for that argument, and none is missing but that of a number ("One picture added." for
// "%d pictures added.").
bool FitsPlaceholders(const QString& translation, const QString& original);
