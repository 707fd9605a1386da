#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>

#include "common/Exceptions.h"
#include "common/Variant.h"

namespace pugi {
struct xml_node_struct;
}

class CXmlDocument;

// A file that could not be read, is not well-formed, or holds a value of the wrong kind.
class CXmlException final : public CUnexpectedException {
public:
    // line: from 1; 0 if the file could not be read at all.
    CXmlException(const QString& path, const QString& reason, int line);

    const QString& GetReason() const { return reason; }
    int GetLine() const { return line; }

private:
    QString reason;
    int line;
};

// An element of a document: a light handle, valid as long as its document. A null handle stands for "no such
// element"; reading from it finds nothing.
class CXmlElement {
public:
    CXmlElement() = default;

    explicit operator bool() const { return node != nullptr; }

    // Empty for a null handle.
    QString GetTag() const;

    // The first child element of that tag, or a null handle.
    CXmlElement FindChild(const char* tag) const;
    std::vector<CXmlElement> GetChildren(const char* tag) const;

    // New elements and attributes go after those that are there.
    CXmlElement AppendChild(const char* tag);
    void SetAttribute(const char* name, const QString& value);
    void SetAttribute(const char* name, int32_t value);

private:
    friend class CXmlDocument;
    friend class CXmlRest;
    friend CVariant GetAttributeText(const CXmlElement& element, const char* name);
    friend int32_t GetAttributeLong(const CXmlElement& element, const char* name);
    friend std::optional<int32_t> FindAttributeLong(const CXmlElement& element, const char* name);
    CXmlElement(CXmlDocument* document, pugi::xml_node_struct* node) : document(document), node(node) {}

    CXmlDocument* document = nullptr;
    pugi::xml_node_struct* node = nullptr;
};

// An XML document in memory. Single-threaded. Movable handles aside, it stays where it was made.
class CXmlDocument {
public:
    CXmlDocument();
    ~CXmlDocument();
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    // The document element, whatever its tag; a null handle in an empty document.
    CXmlElement GetRoot();
    CXmlElement CreateRoot(const char* tag);

    // All elements of that tag at any depth, in document order.
    std::vector<CXmlElement> FindAll(const char* tag);

    // The path that the document was loaded from; empty for a new one.
    const QString& GetPath() const { return path; }

    // The bare serialisation: UTF-8, no declaration, no white space. Written to a temporary file, synced and
    // renamed over path, so that a failure leaves the old file whole. Throws CWin32Exception.
    void Save(const QString& path) const;

private:
    friend class CXmlElement;
    friend std::unique_ptr<CXmlDocument> CreateDocument(const QString& path);
    friend std::unique_ptr<CXmlDocument> LoadDocument(const QString& path);
    friend int32_t GetAttributeLong(const CXmlElement& element, const char* name);
    int LineAt(ptrdiff_t offset) const;

    struct Content;
    std::unique_ptr<Content> content;
    QString path;
};

// path: that it is read as from; empty for none.
std::unique_ptr<CXmlDocument> CreateDocument(const QString& path = QString());

// Throws CXmlException with path, reason and line if the file can't be read or is not well-formed.
std::unique_ptr<CXmlDocument> LoadDocument(const QString& path);

// A string variant; empty if the element has no such attribute.
CVariant GetAttributeText(const CXmlElement& element, const char* name);

// 0 if the attribute is absent. A real number is rounded to the nearest integer. A value from 2^31 up to
// 2^32 - 1 wraps round, since colours are written unsigned. Throws CXmlException with path, reason and
// line if the text is no such number.
int32_t GetAttributeLong(const CXmlElement& element, const char* name);

// The same for a file in which one bad number must not cost the rest: nothing if the attribute is absent or
// its text is no such number.
std::optional<int32_t> FindAttributeLong(const CXmlElement& element, const char* name);
