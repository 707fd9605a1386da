#pragma once

#include <istream>
#include <memory>
#include <string>

#include "template/sections/TemplateSection.h"

// Elements may stand in each other, through includes too, so deep. Parsing, evaluating and deleting a tree
// recurse once for each level: no page that people write has ten, and 256 take well under a megabyte of
// stack.
constexpr int MaxNestingDepth = 256;

// Makes the section of an element whose "<%" has just been read, and parses its body. name takes the keyword
// as the page wrote it, "" for a variable element. depth is that of the new section. Null if the input ends
// inside the keyword. Throws CTemplateParsingException.
std::unique_ptr<CTemplateSection> CreateSection(std::string& name, std::istream& stream,
                                                const TemplateDepth& depth);
