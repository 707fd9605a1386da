#include "common/XmlRest.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <utility>

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

} // namespace

CXmlRest::CXmlRest(const CXmlElement& element, const XmlNames& known)
{
    const pugi::xml_node node(element.node);
    pugi::xml_document kept;
    pugi::xml_node start = kept.append_child("k");
    for (const pugi::xml_attribute attribute : node.attributes()) {
        if (!Holds(known.attributes, attribute.name())) {
            start.append_copy(attribute);
        }
    }
    if (start.first_attribute()) {
        const QByteArray tag = BytesOf(start); // <k a="1"/>
        attributes = tag.mid(2, tag.lastIndexOf("/>") - 2);
    }
    for (const pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_element && !Holds(known.elements, child.name())) {
            elements += BytesOf(child);
        }
    }
}

void CXmlRest::Keep(const CXmlElement& child)
{
    elements += BytesOf(pugi::xml_node(child.node));
}

void CXmlRest::WriteTo(CXmlElement& element) const
{
    if (IsEmpty()) {
        return;
    }
    pugi::xml_node node(element.node);
    pugi::xml_document kept;
    const QByteArray bytes = "<k" + attributes + ">" + elements + "</k>";
    kept.load_buffer(bytes.constData(), static_cast<size_t>(bytes.size()));
    for (const pugi::xml_attribute attribute : kept.document_element().attributes()) {
        if (!node.attribute(attribute.name())) {
            node.append_copy(attribute);
        }
    }
    const std::set<TagAndName> written = NamedChildrenOf(node);
    for (const pugi::xml_node child : kept.document_element().children()) {
        if (written.count(TagAndNameOf(child)) == 0) {
            node.append_copy(child);
        }
    }
}
