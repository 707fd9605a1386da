#pragma once

#include <istream>

#include <QString>

#include "template/parser/TemplateSection.h"

// How a page is read, and what it may do. The pointers are borrowed and have to outlive the tree.
struct PageReading {
    CTemplateObserver* observer = nullptr; // null for none
    const CStopSignal* stop = nullptr;     // Bind and Generate end early when it is set; null for none
    QString folder = QString();            // which the files that it includes may not leave; empty: anywhere
};

// Reads a page of a layout into an empty root, up to its end or to a "%>" that closes no element. Throws
// CTemplateParsingException with the offsets of what failed.
void ParsePage(std::istream& stream, CTemplateSection& root, const PageReading& reading = {});
