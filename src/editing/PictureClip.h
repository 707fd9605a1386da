#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>

#include "document/pictures/PictureInfo.h"

class CGallery;

// Pictures as they lie on the clipboard, between galleries, projects and running programs: with texts, angles
// and all that is kept of them, but for what belongs to their gallery. Child galleries have no place there.
QByteArray WriteClip(const CGallery& gallery, const std::vector<int32_t>& positions);
// What can't be read is left out. Looks for the files.
std::vector<CFilePictureInfo> ReadClip(const QByteArray& clip);
