#pragma once

#include <cstdint>

#include <QString>

#include "common/Variant.h"

// What the file system says of a picture.
struct FileState {
    bool isThere = false; // a folder is no picture, and a pipe would keep whoever opens it waiting
    DateValue date = 0;   // last write time; 0 for none
    int64_t size = -1;    // bytes; -1 for none

    bool operator==(const FileState&) const = default;
};

FileState LookAtFile(const QString& path);
bool IsFile(const QString& path);

// What a project's file tells of a file beside its path, so that it is found again where the path leads
// nowhere.
struct FileTrace {
    QString relative;  // to the folder of the project's file, with "/"
    QString folder;    // that folder, with a trailing separator
    int64_t size = -1; // bytes; -1: not known

    // Where the file would be if it had moved together with the project. Empty for a trace without a
    // relative path.
    QString GetPath() const;

    bool operator==(const FileTrace&) const = default;
};

// From a folder, with a trailing separator, to a file, with "/". Both absolute; empty if the path isn't.
QString RelativePathOf(const QString& folder, const QString& path);
