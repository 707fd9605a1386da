#pragma once

#include <ostream>

class CContentGenerator;
class CImageIterator;
class CTemplateSection;

// What a loop does with its body at each entry. The two passes over a page share the loop and differ in this
// alone, so that they can't disagree about what is repeated. Made on the stack of a pass; keeps no state.
class CBlogProcessor {
public:
    virtual ~CBlogProcessor() = default;
    virtual void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) = 0;
};

// Writes the body.
class CBlogGenerator final : public CBlogProcessor {
public:
    // Borrowed.
    explicit CBlogGenerator(std::ostream& out) : out(out) {}
    void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) override;

private:
    std::ostream& out;
};

// Registers the pictures of the body.
class CBlogBinder final : public CBlogProcessor {
public:
    void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) override;
};
