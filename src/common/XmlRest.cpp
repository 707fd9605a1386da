#include "common/XmlRest.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include <QDataStream>
#include <QIODevice>
#include <pugixml.hpp>

namespace {

bool Holds(const std::vector<std::string_view>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

QByteArray BytesOf(const pugi::xml_node& node)
{
    std::ostringstream text;
    node.print(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return QByteArray::fromStdString(text.str());
}

using TagAndName = std::pair<std::string, std::string>;

TagAndName TagAndNameOf(const pugi::xml_node& node)
{
    return {node.name(), node.attribute("name").value()};
}

std::set<TagAndName> NamedChildrenOf(const pugi::xml_node& element)
{
    std::set<TagAndName> children;
    for (const pugi::xml_node child : element.children()) {
        if (child.attribute("name")) {
            children.insert(TagAndNameOf(child));
        }
    }
    return children;
}

void AppendUnknownAttributes(const pugi::xml_node& from, const XmlNames& known, pugi::xml_node& to)
{
    for (const pugi::xml_attribute attribute : from.attributes()) {
        if (!Holds(known.attributes, attribute.name())) {
            to.append_copy(attribute);
        }
    }
}

bool IsUnknown(const pugi::xml_node& child, const XmlNames& known)
{
    return child.type() == pugi::node_element && !Holds(known.elements, child.name());
}

// What the element has already stays.
void AppendMissing(const pugi::xml_node& from, pugi::xml_node& to)
{
    for (const pugi::xml_attribute attribute : from.attributes()) {
        if (!to.attribute(attribute.name())) {
            to.append_copy(attribute);
        }
    }
    const std::set<TagAndName> written = NamedChildrenOf(to);
    for (const pugi::xml_node child : from.children()) {
        if (written.count(TagAndNameOf(child)) == 0) {
            to.append_copy(child);
        }
    }
}

bool HasKeysOf(const pugi::xml_node& element, const pugi::xml_node& part, int count)
{
    for (pugi::xml_attribute key = part.first_attribute(); count > 0; key = key.next_attribute(), --count) {
        if (std::string_view(element.attribute(key.name()).value()) != key.value()) {
            return false;
        }
    }
    return true;
}

const char* const KeyCount = "keys";

// The keys that a child has already are left out with all that it has.
void WritePart(const pugi::xml_node& part, pugi::xml_node& parent)
{
    const pugi::xml_node unknown = part.first_child();
    for (pugi::xml_node child : parent.children(unknown.name())) {
        if (HasKeysOf(child, unknown, part.attribute(KeyCount).as_int())) {
            AppendMissing(unknown, child);
        }
    }
}

} // namespace

CXmlRest::CXmlRest(const CXmlElement& element, const XmlNames& known)
{
    const pugi::xml_node node(element.node);
    pugi::xml_document kept;
    pugi::xml_node start = kept.append_child("k");
    AppendUnknownAttributes(node, known, start);
    for (const pugi::xml_node child : node.children()) {
        if (IsUnknown(child, known)) {
            elements += BytesOf(child);
        }
    }
    if (start.first_attribute()) {
        const QByteArray tag = BytesOf(start); // <k a="1"/>
        attributes = tag.mid(2, tag.lastIndexOf("/>") - 2);
    }
}

void CXmlRest::Keep(const CXmlElement& child)
{
    elements += BytesOf(pugi::xml_node(child.node));
}

void CXmlRest::KeepPart(const CXmlElement& child, const XmlNames& known,
                        const std::vector<std::string_view>& keys)
{
    const pugi::xml_node node(child.node);
    pugi::xml_document kept;
    pugi::xml_node part = kept.append_child(node.name());
    AppendUnknownAttributes(node, known, part);
    for (const pugi::xml_node grandchild : node.children()) {
        if (IsUnknown(grandchild, known)) {
            part.append_copy(grandchild);
        }
    }
    if (!part.first_attribute() && !part.first_child()) {
        return;
    }
    int count = 0;
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        if (const pugi::xml_attribute attribute = node.attribute(std::string(*key).c_str())) {
            part.prepend_copy(attribute);
            ++count;
        }
    }
    parts += "<part " + QByteArray(KeyCount) + "=\"" + QByteArray::number(count) + "\">" + BytesOf(part) +
             "</part>";
}

void CXmlRest::WriteTo(CXmlElement& element) const
{
    pugi::xml_node node(element.node);
    pugi::xml_document kept;
    if (!IsEmpty()) {
        const QByteArray bytes = "<k" + attributes + ">" + elements + "</k>";
        kept.load_buffer(bytes.constData(), static_cast<size_t>(bytes.size()));
        AppendMissing(kept.document_element(), node);
    }
    if (!parts.isEmpty()) {
        const QByteArray bytes = "<k>" + parts + "</k>";
        kept.load_buffer(bytes.constData(), static_cast<size_t>(bytes.size()));
        for (const pugi::xml_node part : kept.document_element().children()) {
            WritePart(part, node);
        }
    }
}

QByteArray CXmlRest::ToBytes() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << attributes << elements << parts;
    return bytes;
}

CXmlRest CXmlRest::FromBytes(const QByteArray& bytes)
{
    CXmlRest rest;
    QDataStream stream(bytes);
    stream >> rest.attributes >> rest.elements >> rest.parts;
    return rest;
}
