#include "common/xmldomutils.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include <QFileInfo>
#include <pugixml.hpp>

#include "common/FileSystem.h"
#include "common/Text.h"

namespace {

// The place that the error texts of this module name, whatever line finds the error: people report it.
constexpr const char* SourceFile = "xmldomutils";
constexpr int SourceLine = 32;

// Names that go through a document are ASCII by definition of the format.
QString WideName(const char* name)
{
    return QString::fromLatin1(name);
}

std::optional<int32_t> ReadLong(const QString& text)
{
    bool isNumber = false;
    const double number = std::nearbyint(text.trimmed().toDouble(&isNumber));
    // Asked this way round, since no comparison holds for "nan", which is read as a number.
    if (!isNumber || !(number >= -2147483648.0 && number <= 4294967295.0)) {
        return std::nullopt;
    }
    return static_cast<int32_t>(static_cast<int64_t>(number));
}

} // namespace

CXmlException::CXmlException(const QString& path, const QString& reason, int line)
    : CUnexpectedException(SourceFile, SourceLine, Text(StringId::XmlNotParsed, path, reason, line)),
      reason(reason),
      line(line)
{}

struct CXmlDocument::Content {
    pugi::xml_document dom;
    QByteArray bytes; // as loaded, for line numbers
};

QString CXmlElement::GetTag() const
{
    return Widen(pugi::xml_node(node).name());
}

CXmlElement CXmlElement::FindChild(const char* tag) const
{
    return {document, pugi::xml_node(node).child(tag).internal_object()};
}

std::vector<CXmlElement> CXmlElement::GetChildren(const char* tag) const
{
    std::vector<CXmlElement> children;
    for (const pugi::xml_node child : pugi::xml_node(node).children(tag)) {
        children.push_back({document, child.internal_object()});
    }
    return children;
}

CXmlElement CXmlElement::AppendChild(const char* tag)
{
    return {document, pugi::xml_node(node).append_child(tag).internal_object()};
}

void CXmlElement::SetAttribute(const char* name, const QString& value)
{
    pugi::xml_node element(node);
    pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute) {
        attribute = element.append_attribute(name);
    }
    attribute.set_value(Narrow(value).c_str());
}

void CXmlElement::SetAttribute(const char* name, int32_t value)
{
    SetAttribute(name, QString::number(value));
}

CXmlDocument::CXmlDocument() : content(std::make_unique<Content>()) {}

CXmlDocument::~CXmlDocument() = default;

CXmlElement CXmlDocument::GetRoot()
{
    return {this, content->dom.document_element().internal_object()};
}

CXmlElement CXmlDocument::CreateRoot(const char* tag)
{
    return {this, content->dom.append_child(tag).internal_object()};
}

std::vector<CXmlElement> CXmlDocument::FindAll(const char* tag)
{
    std::vector<CXmlElement> found;
    // Walked by hand: a recursive walk would end the stack on a file with absurdly deep nesting.
    pugi::xml_node node = content->dom.first_child();
    while (node) {
        if (node.type() == pugi::node_element && std::string_view(node.name()) == tag) {
            found.push_back({this, node.internal_object()});
        }
        if (node.first_child()) {
            node = node.first_child();
            continue;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
        }
        node = node.next_sibling();
    }
    return found;
}

void CXmlDocument::Save(const QString& path) const
{
    std::ostringstream text;
    content->dom.save(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    // A link stays one: the file that it leads to is replaced. Empty for a link that leads nowhere.
    const QFileInfo file(path);
    const QString target = file.isSymLink() ? file.canonicalFilePath() : QString();
    WriteFileAtomically(target.isEmpty() ? path : target, QByteArray::fromStdString(text.str()));
}

int CXmlDocument::LineAt(ptrdiff_t offset) const
{
    const qsizetype end = std::clamp<qsizetype>(offset, 0, content->bytes.size());
    return static_cast<int>(std::count(content->bytes.begin(), content->bytes.begin() + end, '\n')) + 1;
}

std::unique_ptr<CXmlDocument> CreateDocument(const QString& path)
{
    auto document = std::make_unique<CXmlDocument>();
    document->path = path;
    return document;
}

std::unique_ptr<CXmlDocument> LoadDocument(const QString& path)
{
    if (!FileExists(path)) {
        throw CXmlException(path, Text(StringId::XmlFileNotFound), 0);
    }
    // A pipe would keep the program waiting for a writer, perhaps for ever.
    if (const QFileInfo file(path); !file.isFile() && !file.isDir()) {
        throw CXmlException(path, Text(StringId::XmlNotAFile), 0);
    }
    auto document = std::make_unique<CXmlDocument>();
    document->path = path;
    QByteArray& bytes = document->content->bytes;
    try {
        bytes = ReadWholeFile(path);
    } catch (const CWin32Exception& error) {
        throw CXmlException(path, error.GetDescription(), 0);
    }
    const pugi::xml_parse_result result = document->content->dom.load_buffer(bytes.constData(), bytes.size());
    if (!result) {
        throw CXmlException(path, Widen(result.description()), document->LineAt(result.offset));
    }
    return document;
}

CVariant GetAttributeText(const CXmlElement& element, const char* name)
{
    const pugi::xml_attribute attribute = pugi::xml_node(element.node).attribute(name);
    return attribute ? CVariant(Widen(attribute.value())) : CVariant();
}

int32_t GetAttributeLong(const CXmlElement& element, const char* name)
{
    const CVariant text = GetAttributeText(element, name);
    if (text.IsEmpty()) {
        return 0;
    }
    const std::optional<int32_t> number = ReadLong(text.GetString());
    if (!number) {
        const ptrdiff_t offset = pugi::xml_node(element.node).offset_debug();
        throw CXmlException(element.document->path,
                            Text(StringId::XmlAttributeNotNumber, text.GetString(), WideName(name)),
                            element.document->LineAt(offset));
    }
    return *number;
}

std::optional<int32_t> FindAttributeLong(const CXmlElement& element, const char* name)
{
    const CVariant text = GetAttributeText(element, name);
    return text.IsEmpty() ? std::nullopt : ReadLong(text.GetString());
}
