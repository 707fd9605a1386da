#include "cli/Answers.h"

#include <cstdio>

#include "common/Text.h"

namespace {

QString OnOneLine(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"))
        .replace(QLatin1Char('\n'), QStringLiteral("\\n"))
        .replace(QLatin1Char('\r'), QStringLiteral("\\n"));
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
    return text;
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
