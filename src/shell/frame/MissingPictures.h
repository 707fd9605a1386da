#pragma once

#include <cstdint>

class CGalleryProject;
class QWidget;

// Asks for a folder, looks through it for the pictures and watermarks of the project that are not there,
// shows what was found, and moves the entries that the person agrees to. Returns how many have moved. The
// search runs on a thread of its own and can be stopped. Screen's thread.
int32_t FindMissingPictures(CGalleryProject& project, QWidget* parent);
