#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

class CContentGenerator;
class CImageIterator;
class CTemplateObserver;

// Where a section stands. Handed down while a page is parsed, so that no page can exhaust the stack or repeat
// itself for ever.
struct TemplateDepth {
    int elements = 0; // elements around the section, those of the including files counted
    int includes = 0; // files that include, one through the other, the file that the section stands in
    int loops = 0;    // loops around what the section holds, those of the including files counted
    CTemplateObserver* observer = nullptr; // of the whole page; null for none
};

// A node of a parsed page. A tree is built by one Parse, bound any number of times and generated any number
// of times; it is used by one thread at a time and keeps no reference to the iterator or the generator.
//
// Bind and Generate walk a tree in the same order and make the same choices, since pictures are matched to
// their sections by the order of binding.
class CTemplateSection {
public:
    virtual ~CTemplateSection() = default;

    // The section's closing "%>" has been read.
    virtual void OnClosingBracket() {}
    // Releases everything that the section owns.
    virtual void Clear() = 0;
    virtual void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) = 0;
    virtual void AddText(const char* text, size_t length) = 0;
    // name: the keyword as the page wrote it, null for text. section: null where the input ended inside the
    // keyword of an element.
    virtual void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) = 0;
    // The pass before Generate, in which pictures register with the iterator.
    virtual void Bind(CImageIterator& iterator, CContentGenerator& generator);
    // The input ended inside the section; text is what is left of it.
    virtual void OnEndOfFile(const char* text, size_t length);

    // Reads the body of this section, up to its closing "%>" or the end of the input. The stream reports
    // positions. Throws CTemplateParsingException with the offsets of the innermost section that failed.
    void Parse(std::istream& stream);

    std::string GenerateToString(CImageIterator& iterator, CContentGenerator& generator);

    // To be called before Parse; the root of a page keeps the default.
    virtual void SetDepth(const TemplateDepth& newDepth) { depth = newDepth; }

protected:
    // Tells of what stands in the section and is never looked at. Its closing "%>" has been read.
    virtual void TellObserver(CTemplateObserver&) const {}

    TemplateDepth depth;
    uint64_t bodyStart = 0; // offset of the body in its file

private:
    // False if the input ended before the section's closing "%>".
    bool ParseBody(std::istream& stream);
    void ParseChild(std::istream& stream);
};
