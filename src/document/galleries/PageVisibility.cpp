#include "document/galleries/PageVisibility.h"

bool CPageVisibility::IsVisible(const QString& page, const QString& element)
{
    const bool visible = pages[page].try_emplace(element, true).first->second;
    seenElements[element] = visible;
    return visible;
}

void CPageVisibility::SetElements(const QString& page, const Elements& elements)
{
    for (const auto& [element, visible] : elements) {
        pages[page][element] = visible;
    }
    seenElements = elements;
}

void CPageVisibility::SetElement(const QString& page, const QString& element, bool visible)
{
    pages[page][element] = visible;
}
