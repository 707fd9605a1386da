#include "cli/Answers.h"

#include <algorithm>
#include <cstdio>

#include "common/Text.h"
#include "ftpengine/messages/ServerWords.h"

namespace {

// Servers have their words in the texts of failures.
QString OnOneLine(QString text)
{
    return Printable(text.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"))
                         .replace(QLatin1Char('\n'), QStringLiteral("\\n"))
                         .replace(QLatin1Char('\r'), QStringLiteral("\\n")));
}

// Digits up to the directory, as a port has them.
bool IsPort(const QString& text)
{
    const QString digits = text.section(QLatin1Char('/'), 0, 0);
    return std::all_of(digits.begin(), digits.end(),
                       [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

} // namespace

QString FailureLines(const QString& caption, const QString& description, const QString& advice)
{
    // Scripts look for these words, so they are the same in every language.
    return QStringLiteral("caption: ") + OnOneLine(caption) + QStringLiteral("\ndescription: ") +
           OnOneLine(description) + QStringLiteral("\nadvice: ") + OnOneLine(advice) + QLatin1Char('\n');
}

QString Printable(QString text)
{
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control) {
            character = QChar::ReplacementCharacter;
        }
    }
    return CleanServerWords(text);
}

QString WithoutPassword(const QString& argument)
{
    const QLatin1String afterScheme("://");
    const qsizetype scheme = argument.indexOf(afterScheme);
    const bool hasScheme = scheme >= 0;
    const qsizetype begin = hasScheme ? scheme + afterScheme.size() : 0;
    const qsizetype colon = argument.indexOf(QLatin1Char(':'), begin);
    // The last "@": a password may hold others, and "/" as well where somebody forgot to encode it.
    const qsizetype at = argument.lastIndexOf(QLatin1Char('@'));
    const qsizetype password = colon + 1;
    const bool isInDirectory = argument.mid(begin, colon - begin).contains(QLatin1Char('/'));
    if (colon < 0 || (at < password && (!hasScheme || isInDirectory || IsPort(argument.mid(password))))) {
        return argument;
    }
    const qsizetype end = at < password ? argument.size() : at;
    return argument.left(password) + QStringLiteral("****") + argument.mid(end);
}

void PrintOut(const QString& text)
{
    std::fputs(Narrow(text).c_str(), stdout);
    std::fflush(stdout);
}

void PrintError(const QString& text)
{
    std::fputs(Narrow(text).c_str(), stderr);
}
