#include "SourceLiterals.h"

#include <QRegularExpression>

namespace {

bool Has(const QString& text, const QRegularExpression& pattern)
{
    return pattern.match(text).hasMatch();
}

QRegularExpression Pattern(const char* text, QRegularExpression::PatternOptions options = {})
{
    return QRegularExpression(QString::fromLatin1(text), options);
}

QString StatementBefore(const QString& source, qsizetype position)
{
    static const QRegularExpression end = Pattern("[;{}]");
    return source.left(position).section(end, -1);
}

// Without escapes, tags, and the ends of tags that another literal begins.
QString WordsOf(QString text)
{
    static const QRegularExpression lineBreaks = Pattern(R"(\\[nrt])");
    static const QRegularExpression tags = Pattern("<[^<>]*>?");
    static const QRegularExpression tagEnd = Pattern(R"(^[^<>]*["'=/)][^<>]*>|^>)");
    static const QRegularExpression entities = Pattern("&(quot|amp|lt|gt|nbsp);?");
    text.replace(lineBreaks, QStringLiteral(" ")).replace(QStringLiteral("\\\""), QStringLiteral("\""));
    return text.remove(tags).remove(tagEnd).remove(entities);
}

bool HasTwoWords(const QString& words)
{
    static const QRegularExpression pattern =
        Pattern(R"((?x) [A-Za-z][A-Za-z']+ [.,:;!?)']*\ +['"(]?([A-Za-z][A-Za-z']+|%\d|%h?[sdxc]) |
                       (%\d+|%h?[sdxc]) [.,:;!?)']*\ +[A-Za-z][A-Za-z']+)");
    return Has(words, pattern);
}

bool IsLabel(const QString& words)
{
    static const QRegularExpression pattern =
        Pattern(R"((?x) &[A-Za-z] | ^\W*[A-Z][a-z]+(:|\.\.\.|>)$ | ^\W*[A-Za-z]+:\ $)");
    return Has(words, pattern);
}

bool IsShown(const SourceLiteral& literal, const QString& words)
{
    static const QRegularExpression widget = Pattern(
        R"((?x) \b( Q(Label|PushButton|GroupBox|CheckBox|RadioButton|Action|Menu) | Make(Button|Label|Report) |
                    Name(Control|Button) | [aA]dd(Row|Tab|Item|Action) |
                    set( (Informative|Placeholder)?Text | (Window|Sub)?Title | (Tool|Status)Tip | Accessible\w+ |
                         HeaderLabel | Suffix | Prefix ) )\()");
    static const QRegularExpression people =
        Pattern(R"(\b(Print(Out|Error)|CWrongUse|C(Generic|File|Win32|TemplateParsing)Exception)\()");
    static const QRegularExpression name = Pattern(R"((?x) ^\W*[A-Z][a-z]+\b | ^\ +[a-z]{2})");
    static const QRegularExpression word = Pattern("[A-Za-z]{2}");
    return (Has(literal.statement, widget) && Has(words, name)) ||
           (Has(literal.statement, people) && Has(words, word));
}

} // namespace

std::vector<SourceLiteral> FindLiterals(const QString& file, const QString& source)
{
    static const QRegularExpression token =
        Pattern(R"token((?x) ^\s*\#\s*include[^\n]* | //[^\n]* | /\*.*?\*/ | '(\\.|[^'\\\n])*' |
                        \bR"\((?<raw>.*?)\)" | "(?<plain>(\\.|[^"\\\n])*)")token",
                QRegularExpression::DotMatchesEverythingOption | QRegularExpression::MultilineOption);
    std::vector<SourceLiteral> literals;
    auto tokens = token.globalMatch(source);
    while (tokens.hasNext()) {
        const auto match = tokens.next();
        const QString text = match.captured(QStringLiteral("plain")) + match.captured(QStringLiteral("raw"));
        const qsizetype start = match.capturedStart();
        if (!text.isEmpty()) {
            literals.push_back({file, static_cast<int>(source.left(start).count(QLatin1Char('\n'))) + 1, text,
                                StatementBefore(source, start)});
        }
    }
    return literals;
}

bool IsForPeople(const SourceLiteral& literal)
{
    static const QRegularExpression trace =
        Pattern(R"(\b(\w*Trace\w*|qDebug|qInfo|qWarning|qCritical)(\s\w+)?\()");
    const QString words = WordsOf(literal.text);
    return !Has(literal.statement, trace) &&
           (HasTwoWords(words) || IsLabel(words) || IsShown(literal, words));
}
