#pragma once

#include "common/xmldomutils.h"

// What the definition files of layouts and styles have in common.

// The first element of that tag. Throws CTemplateParsingException if there is none.
CXmlElement FindDefinition(CXmlDocument& document, const char* tag);

// A subfolder of the folder that holds the definition, without a trailing separator of its own.
QString DefinitionSubfolder(const QString& definitionPath, const QString& subfolder);
