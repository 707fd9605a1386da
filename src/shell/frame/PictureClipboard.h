#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QStringList>

#include "editing/Act.h"

class CGallery;

// Pictures on the desktop's clipboard: for this program with all that belongs to them, for others as files.
// Screen's thread.

// Returns how many there are now; child galleries have no place there. With none the clipboard stays as it
// is.
int CopyToClipboard(const CGallery& gallery, const std::vector<int32_t>& positions);
// Files alone.
int CopyToClipboard(const QStringList& paths);

// What puts the pictures of the clipboard, this program's or files of another, in front of the picture of
// that position. Nothing if there are none.
std::optional<Act> PasteFromClipboard(const CGallery& gallery, int32_t position);
