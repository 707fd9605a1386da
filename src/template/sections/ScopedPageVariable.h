#pragma once

#include <QString>

#include "common/Variant.h"

class CImageIterator;

// Overrides one variable of the current page for the length of its life, and puts back what was there, also
// on the way of an exception. A variable that was not there is left with an empty value. Lives on the stack
// of a pass over a page, whose iterator it borrows and whose page must stay the current one meanwhile.
class CScopedPageVariable {
public:
    CScopedPageVariable(CImageIterator& iterator, const QString& name, const CVariant& value);
    ~CScopedPageVariable();
    CScopedPageVariable(const CScopedPageVariable&) = delete;
    CScopedPageVariable& operator=(const CScopedPageVariable&) = delete;

private:
    CVariant saved;
    const QString name;
    CImageIterator& iterator;
};
