#pragma once

#include <QStringList>

#include "shell/frame/Commands.h"

class CGallery;
class QWidget;

// What commands and drops of the frame do to a gallery.

// Lets a person edit the gallery's watermarks, signatures or advertisement blocks. True if something was
// stored in the gallery.
bool EditGallery(CommandId command, CGallery& gallery, QWidget* parent);

// What of dropped files the program has a use for.
struct DroppedFiles {
    QString project;      // the first project among them; the pictures are left then
    QStringList pictures; // files as dropped; of a folder its own pictures, in name order
};

DroppedFiles SortDropped(const QStringList& paths);

// Adds them to the gallery and returns how many it did not have before.
int AddPictures(CGallery& gallery, const QStringList& pictures);
