#pragma once

#include "template/sections/CompoundTemplateSection.h"

// A compound whose closing "%>" must be there: the end of the input inside it is an error. Owned by its
// parent like any section; used by one thread.
class CCompoundTemplateSectionWithClosingBracket : public CCompoundTemplateSection {
public:
    void OnEndOfFile(const char* text, size_t length) override;
};
