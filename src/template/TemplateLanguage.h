#pragma once

#include <istream>

#include "template/parser/TemplateSection.h"

// Reads a page of a layout into an empty root, up to its end or to a "%>" that closes no element. observer:
// borrowed, has to outlive the tree. Throws CTemplateParsingException with the offsets of what failed.
void ParsePage(std::istream& stream, CTemplateSection& root, CTemplateObserver* observer = nullptr);
