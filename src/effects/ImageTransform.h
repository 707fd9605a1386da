#pragma once

#include <QSize>
#include <QString>

// Work on picture files without a chain. Thread-safe. JPEGs are written at quality 75, that of an encoder
// that is told nothing.

struct ResizeFileOptions {
    QSize box;              // pixels
    bool overwrite = false; // an existing result is made anew
};

// A picture larger than the box in a direction is scaled to exactly the box, its proportions not kept, and
// "_WIDTH_HEIGHT" added to the base of destinationPath. The path returned has the extension of the format
// that goes with destinationPath's. Throws CUnexpectedException if it can't be written.
QString ResizeImageFile(const QString& source, const QString& destinationPath,
                        const ResizeFileOptions& options);

// "a.bmp" turned once gives "a_rotated_1.png" beside it; if that file exists it is taken as it is. Returns
// its path, or the given path if it could not be written.
QString RotateImageFile(const QString& path, int angle);
