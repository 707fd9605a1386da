#pragma once

#include <QStringList>

class CGallery;

// What of dropped files the program has a use for.
struct DroppedFiles {
    QString project;      // the first project among them; the pictures are left then
    QStringList pictures; // files as dropped; of a folder its own pictures, in name order
};

DroppedFiles SortDropped(const QStringList& paths);

// Returns how many of them the gallery did not have before.
int AddPictures(CGallery& gallery, const QStringList& paths);
