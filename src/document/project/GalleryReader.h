#pragma once

#include "common/xmldomutils.h"

class CGallery;
class CPictureFinder;

// Fills a gallery from its element of a project file, or from the root of an old file that has one gallery
// only. What can't be understood is left out. All galleries of the project have to be there already. Throws
// CUnexpectedException for a number that is none, and what CGallery::SetTemplate throws.
void ReadGallery(CGallery& gallery, const CXmlElement& element, CPictureFinder& finder);
