#pragma once

#include "common/xmldomutils.h"

class CGallery;

// Appends the element "gallery" with all that a project file keeps of it to the project's element.
void WriteGallery(CGallery& gallery, CXmlElement& project);
