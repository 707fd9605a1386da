#pragma once

#include "template/sections/TemplateSection.h"

// A section in which no element may stand. Owned by its parent; used by one thread.
class CNoChildTemplateSection : public CTemplateSection {
public:
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
};
