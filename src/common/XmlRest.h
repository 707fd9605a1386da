#pragma once

#include <string_view>
#include <vector>

#include <QByteArray>

#include "common/xmldomutils.h"

// The attributes and child elements that the reader of an element knows.
struct XmlNames {
    std::vector<std::string_view> attributes;
    std::vector<std::string_view> elements;
};

// What stands in an element and its reader doesn't know: attributes and child elements of a newer version of
// the program, or of somebody else's. Kept with what was read from the element and written back with it. Kept
// as bytes, so that it costs nothing where there is none. A plain value.
class CXmlRest {
public:
    CXmlRest() = default;
    // All of the element but what has these names.
    CXmlRest(const CXmlElement& element, const XmlNames& known);

    // Keeps a child element as well whose name is known but not what it says.
    void Keep(const CXmlElement& child);

    // Keeps what isn't known of a child element that is known, for the children of its tag that are written
    // with the same values of the attributes "keys". Gone if none is.
    void KeepPart(const CXmlElement& child, const XmlNames& known, const std::vector<std::string_view>& keys);

    // To be called after what is known was written: an attribute that is there already, and a child whose tag
    // and attribute "name" are there already, are left out.
    void WriteTo(CXmlElement& element) const;

    // For other places than a project's file; bytes that ToBytes has not made give an empty one, or what can
    // be read of them.
    QByteArray ToBytes() const;
    static CXmlRest FromBytes(const QByteArray& bytes);

    // Parts need no element to be written for them.
    bool IsEmpty() const { return attributes.isEmpty() && elements.isEmpty(); }
    bool operator==(const CXmlRest&) const = default;

private:
    QByteArray attributes; // as in a start tag
    QByteArray elements;
    QByteArray
        parts; // each with its attribute "keys": how many attributes it begins with that have to be equal
};
