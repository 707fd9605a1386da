#include "template/parser/TemplateAttributeParser.h"

#include "common/Exceptions.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"

bool CTemplateAttributeParser::Feed(char c)
{
    switch (state) {
    case State::Between:
        if (IsLetter(c)) {
            name = c;
            state = State::InName;
        }
        return false; // anything else between attributes is dropped
    case State::InName:
        if (c == '=') {
            state = State::AfterEquals;
        } else if (IsSpace(c) || IsQuote(c)) {
            throw InvalidCharacterError(c);
        } else {
            name += c;
        }
        return false;
    case State::AfterEquals:
        if (!IsQuote(c)) {
            throw NoOpeningQuoteError(name);
        }
        quote = c;
        state = State::InValue;
        return false;
    case State::InValue:
        if (c != quote) {
            value += c;
            return false;
        }
        state = State::Finished;
        return true;
    case State::Finished:
        break;
    }
    throw CUnexpectedException("TemplateAttributeParser", __LINE__); // Feed after the end
}

void CTemplateAttributeParser::AddSection(std::unique_ptr<CTemplateSection> section)
{
    if (state != State::InValue) {
        throw NoOpeningQuoteError(name);
    }
    if (!compound) {
        compound = std::make_unique<CCompoundTemplateSection>();
    }
    MoveTextToCompound();
    compound->AddSection(nullptr, std::move(section));
}

std::unique_ptr<CTemplateSection> CTemplateAttributeParser::TakeValue()
{
    if (!compound) {
        return std::make_unique<CTemplateSectionText>(value.data(), value.size());
    }
    MoveTextToCompound();
    return std::move(compound);
}

void CTemplateAttributeParser::MoveTextToCompound()
{
    if (!value.empty()) {
        compound->AddText(value.data(), value.size());
        value.clear();
    }
}
