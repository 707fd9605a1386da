#pragma once

#include <cstdint>

#include "common/Exceptions.h"

// An error in a layout. The offsets are those of the failing section's body in the page file, in bytes, both
// 0 until the section is known and for an error at evaluation.
class CTemplateParsingException : public CGenericException {
public:
    using CGenericException::CGenericException;

    uint64_t errorStart = 0;
    uint64_t errorEnd = 0;
};

// An error of the page markup: the common caption and advice with this description.
CTemplateParsingException TemplateError(const QString& description);
