#pragma once

#include <QString>

// One entry of a listing on a server.
struct CFTPDirectoryItem {
    QString name;
    bool isFile = false;
    bool isDirectory = false; // not for "." and ".."
    bool isCurrent = false;   // "."
    bool isParent = false;    // ".."
};

// Reads one line, without its end, of a listing in the form of the Unix "ls -l"; no other form is known.
// False, with item unspecified, if the line isn't one.
bool ParseListLine(CFTPDirectoryItem& item, const QString& line);
