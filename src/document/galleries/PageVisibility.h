#pragma once

#include <map>

#include <QString>

// Which elements of a gallery's pages are shown. Elements are entered when a page first asks about them.
class CPageVisibility {
public:
    using Elements = std::map<QString, bool>;

    // An element that is not known on that page becomes visible. The answer is noted as seen.
    bool IsVisible(const QString& page, const QString& element);
    // Sets the elements of the map on that page and leaves its other elements as they are.
    void SetElements(const QString& page, const Elements& elements);
    void SetElement(const QString& page, const QString& element, bool visible);

    // Every element asked about in the current render, with its state.
    const Elements& GetSeenElements() const { return seenElements; }
    void ClearSeenElements() { seenElements.clear(); }

    // By page file name.
    const std::map<QString, Elements>& GetPages() const { return pages; }

private:
    std::map<QString, Elements> pages;
    Elements seenElements;
};
