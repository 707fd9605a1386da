#pragma once

#include <ostream>

#include <QByteArray>
#include <QString>

// How a failed expectation shows Qt's texts. Found by the test library by their names.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << '"' << bytes.toStdString() << '"';
}
