#pragma once

#include <functional>
#include <vector>

class CGalleryProject;
struct FileMove;
class QString;
class QWidget;

// Gives files of the project that were found again their new paths. False if none of them could have it.
using MoveFound = std::function<bool(const std::vector<FileMove>& moves)>;

// Asks for a folder, looks through it for the pictures and watermarks of the project that are not there,
// shows what was found, and moves the entries that the person agrees to. The search runs on a thread of its
// own and can be stopped. Screen's thread.
void FindMissingPictures(const CGalleryProject& project, const MoveFound& move, QWidget* parent);

// Asks for the file of the picture that is not at that path, and moves its entries in all galleries. Where
// others that are missing are found beside it or below, they are offered as well. Screen's thread.
void FindMissingPicture(const CGalleryProject& project, const QString& path, const MoveFound& move,
                        QWidget* parent);
