#pragma once

#include <initializer_list>

#include <QString>

// One argument of a format text, already as text. Implicit, so that texts, paths, bytes and numbers can be
// passed as they are. Narrow text is UTF-8.
class CFormatArgument {
public:
    CFormatArgument(const QString& text) : text(text) {}
    CFormatArgument(const char* text) : text(QString::fromUtf8(text)) {}
    CFormatArgument(const std::string& text) : text(QString::fromStdString(text)) {}
    CFormatArgument(char byte) : text(QString(QLatin1Char(byte))) {}
    CFormatArgument(int number) : text(QString::number(number)) {}

    const QString& GetText() const { return text; }

private:
    QString text;
};

// Puts the arguments, in order, in place of %s, %hs, %hc, %d and %x (the argument is
// text already, so the caller writes the hexadecimal digits); "%%" becomes "%". A placeholder without an
// argument and any other "%" stay as they are. A text that is used without arguments is not to be passed
// here: its "%" are literal.
QString FormatText(const QString& format, std::initializer_list<CFormatArgument> arguments);
