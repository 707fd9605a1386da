#include "template/parser/TemplateSection.h"

#include <sstream>

#include "common/StopSignal.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"

namespace {

constexpr size_t DelimiterLength = 2; // of "<%" and "%>"
constexpr size_t UsualTextLength = 1024;

constexpr char VariableKeyword[] = "=";

// Reads up to the blank after the keyword, which is consumed, or to the "%>" after it, which is the body's.
// False if the input ends before.
bool ReadKeyword(std::string& name, std::istream& stream)
{
    name.reserve(UsualTextLength);
    while (const std::optional<char> byte = ReadPageByte(stream)) {
        if (IsSpace(*byte)) {
            return true;
        }
        if (*byte == '%' && PeekPageByte(stream) == '>') {
            UnreadPageByte(stream);
            return true;
        }
        name += *byte;
    }
    return false;
}

} // namespace

bool TemplateContext::IsStopped() const
{
    return stop && stop->IsSet();
}

std::string CTemplateSection::GenerateToString(CImageIterator& iterator, CContentGenerator& generator)
{
    std::ostringstream out;
    Generate(iterator, generator, out);
    return out.str();
}

void CTemplateSection::Parse(std::istream& stream)
{
    bodyStart = GetPagePosition(stream);
    try {
        if (ParseBody(stream) && context.observer) {
            TellObserver(*context.observer);
        }
    } catch (CTemplateParsingException& error) {
        // The innermost section that sees the error marks it; the sections around it leave the mark alone.
        if (error.errorStart == 0 && error.errorEnd == 0) {
            error.errorStart = bodyStart;
            error.errorEnd = GetPagePosition(stream);
        }
        throw;
    }
}

bool CTemplateSection::ParseBody(std::istream& stream)
{
    std::string text;
    text.reserve(UsualTextLength);
    const auto addTextBeforeDelimiter = [&] {
        if (text.size() > DelimiterLength) {
            AddText(text.data(), text.size() - DelimiterLength);
        }
    };
    // A child that meets the end of the input takes it away from its parents: they get no OnEndOfFile, so an
    // unfinished "else" or name at the end of a page also leaves the elements around it open, and that is
    // no error.
    while (stream.good()) {
        const std::optional<char> byte = ReadPageByte(stream);
        if (!byte) {
            OnEndOfFile(text.data(), text.size());
            return false;
        }
        text += *byte;
        if (text.ends_with("%>")) {
            addTextBeforeDelimiter();
            OnClosingBracket();
            return true;
        }
        if (text.ends_with("<%")) {
            addTextBeforeDelimiter();
            text.clear();
            ParseChild(stream);
        }
    }
    return false;
}

void CTemplateSection::ParseChild(std::istream& stream)
{
    std::string name;
    TemplateContext childContext = context;
    ++childContext.elements;
    auto section = CreateSection(name, stream, childContext);
    AddSection(name.c_str(), std::move(section));
}

std::unique_ptr<CTemplateSection> CreateSection(std::string& name, std::istream& stream,
                                                const TemplateContext& context)
{
    if (context.elements > MaxNestingDepth) {
        throw NestingTooDeepError(MaxNestingDepth);
    }
    if (!context.makeSection) {
        throw CUnexpectedException("TemplateSection", __LINE__); // a root without its context
    }
    name.clear();
    std::unique_ptr<CTemplateSection> section;
    if (PeekPageByte(stream) == '=') {
        section = context.makeSection(VariableKeyword); // "=" stays the first byte of its text
    } else if (ReadKeyword(name, stream)) {
        section = context.makeSection(name);
    } else {
        return nullptr;
    }
    section->SetContext(context);
    section->Parse(stream);
    return section;
}
