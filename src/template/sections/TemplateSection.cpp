#include "template/sections/TemplateSection.h"

#include <sstream>

#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"
#include "template/parser/TemplateSectionFactory.h"

namespace {

constexpr size_t DelimiterLength = 2; // of "<%" and "%>"
constexpr size_t UsualTextLength = 1024;

} // namespace

void CTemplateSection::Bind(CImageIterator&, CContentGenerator&) {}

void CTemplateSection::OnEndOfFile(const char* text, size_t length)
{
    AddText(text, length);
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
        if (ParseBody(stream) && depth.observer) {
            TellObserver(*depth.observer);
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
    // unfinished "else" or name at the end of a page also leaves the elements around it open, without an
    // error.
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
    TemplateDepth childDepth = depth;
    ++childDepth.elements;
    auto section = CreateSection(name, stream, childDepth);
    AddSection(name.c_str(), std::move(section));
}
