#pragma once

#include <cstdint>
#include <string>

#include <QString>

// Is told of what a page does that is no error but hardly meant, for the check of a layout. Owned by whoever
// parses the page, has to outlive its tree, and is called on that thread. A position is that of an element's
// body in its file, in bytes.
class CTemplateObserver {
public:
    virtual ~CTemplateObserver() = default;

    // What is told until the end is about the included file. An error in it comes without an end.
    virtual void OnIncludeBegin(const QString& path) = 0;
    virtual void OnIncludeEnd() = 0;

    // A file lies where the page may not read, and counts as missing.
    virtual void OnIncludeRefused(const QString& name, uint64_t position) = 0;
    // A file was found whose name differs from the one that the page writes in capitals alone.
    virtual void OnCaseDiffers(const QString& name, uint64_t position) = 0;

    // An element was given an attribute that it keeps and never looks at.
    virtual void OnAttributeKept(const std::string& name, uint64_t position) = 0;
    // A picture registers with the iterator, once for each Bind.
    virtual void OnPictureBound(const QString& id, uint64_t position) = 0;
};
