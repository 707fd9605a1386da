#pragma once

#include "common/xmldomutils.h"

class CGallery;
class CGalleryContent;
class CPictureFinder;
class CVariableMap;

// The element "gallery" of a project file. What stands in it is told in docs/formats.md.

// Appends the element with all that a project file keeps of a gallery to the project's element.
void WriteGallery(const CGalleryContent& gallery, CXmlElement& project);

// Fills a gallery from its element, or from the root of a file of the single-gallery kind. What can't be
// understood is left out. All galleries of the project have to be there already. Throws CUnexpectedException
// for a number that is none, and what CGallery::SetTemplate throws.
void ReadGallery(CGallery& gallery, const CXmlElement& element, CPictureFinder& finder);

// Variables: one element for each, under a tag that says whose they are.
void WriteVariables(CXmlElement& parent, const char* tag, const CVariableMap& variables);

// Elements without a name, of another type than the four that a project keeps, or with a real number that is
// none, are left out. Throws CUnexpectedException for an integer that is none.
void ReadVariables(const CXmlElement& parent, const char* tag, CVariableMap& variables);
