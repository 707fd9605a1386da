#pragma once

#include <QString>

#include "common/XmlRest.h"
#include "common/xmldomutils.h"

class CGallery;
class CGalleryContent;
class CVariableMap;

// The element "gallery" of a project file. What stands in it is told in docs/formats.md.

// Appends the element with all that a project file keeps of a gallery to the project's element. folder: that
// of the project's file, with a trailing separator.
void WriteGallery(const CGalleryContent& gallery, CXmlElement& project, const QString& folder);

enum class GalleryElementKind {
    Gallery,
    WholeProject, // the root of a file of the single-gallery kind
};

struct GalleryElementContext {
    QString folder; // of the project's file, with a trailing separator
    GalleryElementKind kind = GalleryElementKind::Gallery;
};

// Fills a gallery from its element. A number that is none counts as missing; what isn't known is kept. All
// galleries of the project have to be there already. Throws what CGallery::SetTemplate throws.
void ReadGallery(CGallery& gallery, const CXmlElement& element, const GalleryElementContext& context);

// What is known of the element "project".
XmlNames NamesOfProject();

// Variables: one element for each, under a tag that says whose they are.
void WriteVariables(CXmlElement& parent, const char* tag, const CVariableMap& variables);

// Elements without a name or without a value are left out. Those of a type that this version doesn't know,
// and those with a number that is none, go to the rest.
void ReadVariables(const CXmlElement& parent, const char* tag, CVariableMap& variables, CXmlRest& rest);
