#pragma once

#include "common/Variant.h"
#include "common/xmldomutils.h"

// Variables in a project file: one element for each, under a tag that says whose they are.

void WriteVariables(CXmlElement& parent, const char* tag, const CVariableMap& variables);

// Elements without a name, of another type than the four that a project keeps, or with a real number that is
// none, are left out. Throws CUnexpectedException for an integer that is none.
void ReadVariables(const CXmlElement& parent, const char* tag, CVariableMap& variables);
