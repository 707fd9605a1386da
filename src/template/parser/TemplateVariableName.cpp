#include "template/parser/TemplateVariableName.h"

#include "template/parser/TemplateParsingException.h"

namespace {

// A null text would stand for "no name given".
QString NotNull(QStringView text)
{
    return text.isEmpty() ? QStringLiteral("") : text.toString();
}

} // namespace

CTemplateVariableName::CTemplateVariableName(const QString& text)
{
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (point < 0) {
        throw InvalidVariableSyntaxError(text);
    }
    objectName = NotNull(QStringView(text).left(point));
    variableName = NotNull(QStringView(text).mid(point + 1));
}
