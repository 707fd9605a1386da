#pragma once

#include <QString>

// One form for all spellings of a path: absolute, without "." and "..", and of the file itself where the path
// is that of a link, so that link and file have one lock and are saved as one. Case is kept: on a file system
// that tells case apart, projects that differ in it are two, and one must not be saved over the other.
QString NormalisedProjectPath(const QString& path);

// The file's last name without its extension: "/home/a/Trip.2024.gallery" gives "Trip.2024".
QString ProjectNameOf(const QString& path);
