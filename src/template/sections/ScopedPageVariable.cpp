#include "template/sections/ScopedPageVariable.h"

#include "template/contracts/ImageIterator.h"

namespace {

QString PageObject()
{
    return QStringLiteral("page");
}

} // namespace

CScopedPageVariable::CScopedPageVariable(CImageIterator& iterator, const QString& name, const CVariant& value)
    : name(name), iterator(iterator)
{
    iterator.GetVariable(PageObject(), name, saved);
    iterator.SetVariable(PageObject(), name, value);
}

CScopedPageVariable::~CScopedPageVariable()
{
    iterator.SetVariable(PageObject(), name, saved);
}
