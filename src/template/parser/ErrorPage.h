#pragma once

#include <cstdint>
#include <string>

#include <QString>

#include "template/parser/TemplateParsingException.h"

// What a layout's author is shown of an error in a page file: the file is read again, and the body of the
// failing section is marked. A file that can't be read any more counts as empty. Thread-safe.

// A whole page, to be shown in place of the preview. It isn't parsed: its own elements stay as they stand.
std::string BuildErrorPage(const CTemplateParsingException& error, const QString& pageFile);

// The line, from 1, of a position in a page file.
int GetPageLine(uint64_t position, const QString& pageFile);

// The line, from 1, on which the failing section's body begins; 1 for an error at evaluation.
int GetErrorLine(const CTemplateParsingException& error, const QString& pageFile);
