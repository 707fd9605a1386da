#pragma once

#include <QDateTime>
#include <QString>

// When a photograph was taken, in the camera's local time, as its EXIF data tell (DateTimeOriginal, tag
// 0x9003). Invalid for a picture that doesn't say, and for a file that can't be read. Reads the header only;
// any thread.
QDateTime ReadDateTaken(const QString& path);
