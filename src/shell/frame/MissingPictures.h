#pragma once

#include <cstdint>

class CGalleryProject;
class QString;
class QWidget;

// Asks for a folder, looks through it for the pictures and watermarks of the project that are not there,
// shows what was found, and moves the entries that the person agrees to. Returns how many have moved. The
// search runs on a thread of its own and can be stopped. Screen's thread.
int32_t FindMissingPictures(CGalleryProject& project, QWidget* parent);

// Asks for the file of the picture of the current gallery that is not at that path, and moves its entry, and
// that of the same lost path in other galleries. Where the other missing ones are found beside it or below,
// they are offered as well. Returns how many have moved. Screen's thread.
int32_t FindMissingPicture(CGalleryProject& project, const QString& path, QWidget* parent);
