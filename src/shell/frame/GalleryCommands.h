#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QStringList>

#include "editing/Act.h"
#include "shell/frame/Commands.h"

class CGallery;
class CGalleryProject;
class QWidget;

// What commands and drops of the frame do to a gallery.

// Lets a person edit the gallery's watermarks, signatures or advertisement blocks. Nothing if they have
// thought better of it.
std::optional<Act> AskForEffect(CommandId command, const CGallery& gallery, QWidget* parent);

// The order of the gallery's pictures by one of the sorting commands. For dates of photographs their files
// are read, while a dialog says so; nothing if the person has stopped that.
std::optional<Act> SortBy(CommandId command, const CGallery& gallery, QWidget* parent);

// Lets a person edit the titles and descriptions of those pictures of the gallery, or of all of them if no
// position is wanted, in a table; child galleries have theirs, too. Nothing if nothing was changed.
std::optional<Act> AskForPictureTexts(const CGalleryProject& project, const CGallery& gallery,
                                      const std::vector<int32_t>& wanted, QWidget* parent);

// Lets a person choose another gallery than the current one. title: of the window, or of the command that
// asks. Nothing if they have thought better of it.
std::optional<int32_t> AskForGallery(const CGalleryProject& project, int32_t current, StringId title,
                                     QWidget* parent);

// What of dropped files the program has a use for.
struct DroppedFiles {
    QString project;      // the first project among them; the pictures are left then
    QStringList pictures; // files as dropped; of a folder its own pictures, in name order
};

DroppedFiles SortDropped(const QStringList& paths);
