#pragma once

#include "shell/frame/CommandIds.h"

class CGallery;
class QWidget;

// Lets a person edit the gallery's watermarks, signatures or advertisement blocks. True if something was
// stored in the gallery.
bool EditGallery(CommandId command, CGallery& gallery, QWidget* parent);
