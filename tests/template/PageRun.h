#pragma once

#include <memory>
#include <string>

#include "RecordingGenerator.h"
#include "TestIterator.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateParsingException.h"

// The road of a page, as every driver goes it, with a recording generator.

using Page = std::unique_ptr<CCompoundTemplateSection>;

// Throws CTemplateParsingException.
Page ParsePage(const std::string& bytes);

// The two passes over one page of the gallery.
std::string GeneratePage(CTemplateSection& root, CTestIterator& iterator, int32_t pageIndex = 0);

// What a page becomes in a gallery, or "ERROR " and the description of what is wrong with it.
std::string Generated(const std::string& bytes, CTestIterator& iterator, int32_t pageIndex = 0);
std::string Generated(const std::string& bytes);

// The error of a page: "description [the marked bytes]"; "no error" if it parses.
std::string ParseError(const std::string& bytes);
