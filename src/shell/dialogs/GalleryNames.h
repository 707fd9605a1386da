#pragma once

#include <QString>

// Names of new projects.

// The path of a project in its three pieces.
struct GalleryPath {
    QString folder;
    QString name;
    QString extension; // with its "."; empty if there is none

    QString Join() const;
};

// Pieces of a suggested path. The digits at the name's end are taken off, since a new number is looked for; a
// name without anything else becomes "My Vistorama".
GalleryPath SplitSuggestion(const QString& path);

// The name if no such file is there, else the name with the first number from 1 on of which this holds.
QString FindFreeName(const GalleryPath& path);

// Takes out the characters that file systems, scripts and links can't do with.
QString RemoveForbiddenCharacters(const QString& name);
