#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include <QString>

class CContentGenerator;
class CImageIterator;
class CStopSignal;
class CTemplateObserver;
class CTemplateSection;

// The keywords of the language: makes the section that reads an element's body. "=" is the keyword of a
// variable. Throws CTemplateParsingException for one that doesn't exist.
using SectionMaker = std::unique_ptr<CTemplateSection> (*)(const std::string& keyword);

// The files of a page, the same for all of its sections.
struct PageFiles {
    QString folder; // which no included file may lie outside of; empty: anywhere
    int loads = 0;  // of included files so far
};

// What a section is told of its surroundings. Handed down while a page is parsed. The depths see to it that
// no page can exhaust the stack or repeat itself for ever.
struct TemplateContext {
    int elements = 0; // elements around the section, those of the including files counted
    int includes = 0; // files that include, one through the other, the file that the section stands in
    int loops = 0;    // loops around what the section holds, those of the including files counted
    SectionMaker makeSection = nullptr;
    CTemplateObserver* observer = nullptr; // of the whole page; null for none
    const CStopSignal* stop = nullptr;     // null for none
    std::shared_ptr<PageFiles> page = nullptr;

    // What a page writes is of no use any more.
    bool IsStopped() const;
};

// Elements may stand in each other, through includes too, so deep. Parsing, evaluating and deleting a tree
// recurse once for each level. No page that people write has ten; 256 take well under a megabyte of stack.
constexpr int MaxNestingDepth = 256;

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
    virtual void Bind(CImageIterator&, CContentGenerator&) {}
    // The input ended inside the section; text is what is left of it.
    virtual void OnEndOfFile(const char* text, size_t length) { AddText(text, length); }

    // Reads the body of this section, up to its closing "%>" or the end of the input. The stream reports
    // positions. Throws CTemplateParsingException with the offsets of the innermost section that failed. The
    // root of a page is read by ParsePage.
    void Parse(std::istream& stream);

    std::string GenerateToString(CImageIterator& iterator, CContentGenerator& generator);

    // To be called before Parse.
    virtual void SetContext(const TemplateContext& newContext) { context = newContext; }

protected:
    // Tells of what stands in the section and is never looked at. Its closing "%>" has been read.
    virtual void TellObserver(CTemplateObserver&) const {}

    TemplateContext context;
    uint64_t bodyStart = 0; // offset of the body in its file

private:
    // False if the input ended before the section's closing "%>".
    bool ParseBody(std::istream& stream);
    void ParseChild(std::istream& stream);
};

// Makes the section of an element whose "<%" has just been read, and parses its body. name takes the keyword
// as the page wrote it, "" for a variable. context is that of the new section. Null if the input ends inside
// the keyword. Throws CTemplateParsingException.
std::unique_ptr<CTemplateSection> CreateSection(std::string& name, std::istream& stream,
                                                const TemplateContext& context);
