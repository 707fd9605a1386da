#include "template/parser/TemplateParsingException.h"

CTemplateParsingException TemplateError(const QString& description)
{
    return CTemplateParsingException(Text(StringId::TemplateErrorCaption), description,
                                     Text(StringId::TemplateErrorAdvice));
}
