#include "template/parser/TemplateParsingException.h"

CTemplateParsingException TemplateError(const QString& description)
{
    return CTemplateParsingException(Text(StringId::TemplateErrorCaption), description,
                                     Text(StringId::TemplateErrorAdvice));
}

CTemplateParsingException UnknownSectionError(const std::string& name)
{
    return TemplateError(Text(StringId::UnknownSection, name));
}

CTemplateParsingException NestedSectionError()
{
    return TemplateError(Text(StringId::NestedSection));
}

CTemplateParsingException InvalidVariableSyntaxError(const QString& text)
{
    return TemplateError(Text(StringId::InvalidVariableSyntax, text));
}

CTemplateParsingException DuplicateAttributeError(const std::string& name)
{
    return TemplateError(Text(StringId::DuplicateAttribute, name));
}

CTemplateParsingException RequiredAttributeError(const std::string& name)
{
    return TemplateError(Text(StringId::RequiredAttributeNotFound, name));
}

CTemplateParsingException UnknownAttributeError(const std::string& name)
{
    return TemplateError(Text(StringId::UnknownAttribute, name));
}

CTemplateParsingException InvalidCharacterError(char found)
{
    return TemplateError(Text(StringId::InvalidCharacterInName, found));
}

CTemplateParsingException NoOpeningQuoteError(const std::string& attributeName)
{
    return TemplateError(Text(StringId::OpeningQuoteNotFound, attributeName));
}

CTemplateParsingException UnexpectedElseError()
{
    return TemplateError(Text(StringId::UnexpectedElse));
}

CTemplateParsingException NoClosingBracketError()
{
    return TemplateError(Text(StringId::ClosingBracketNotFound));
}

CTemplateParsingException NestingTooDeepError(int limit)
{
    return TemplateError(Text(StringId::NestingTooDeep, limit));
}

CTemplateParsingException LoopsTooDeepError(int limit)
{
    return TemplateError(Text(StringId::LoopsTooDeep, limit));
}

CTemplateParsingException IncludeTooDeepError(const QString& file, int limit)
{
    return TemplateError(Text(StringId::IncludeTooDeep, file, limit));
}

CTemplateParsingException TooManyIncludesError(const QString& file, int limit)
{
    return TemplateError(Text(StringId::TooManyIncludes, file, limit));
}
