#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QString>

// One of the pictures that a cover is made of.
struct CoverPicture {
    QString path;
    // What the name of a composed cover is made from: the path; for another cover its name alone, since the
    // folder of covers is another one in each run and published names should not be.
    QString namedBy;
    int32_t angle = 0; // quarter turns clockwise
    bool isCover = false;
    // Of another cover: what it is kept under, see CCoverCache; null for none.
    QByteArray coverKey = QByteArray();
};

// How many of a gallery's first pictures its cover shows: 0, 1, 2 or 4.
int32_t CountOfCoverPictures(int32_t pictureCount);

// The file name of a cover of 0, 1, 2 or 4 pictures: "vsm3.png" for gallery 3 without pictures, a name after
// the picture for one, after "vsm3.png" for more. No file is opened.
QString CoverFileName(int32_t galleryIndex, const std::vector<CoverPicture>& pictures);

enum class CoverState {
    Whole,   // shows all its pictures
    InPart,  // a picture could not be read, at least not as a whole, and leaves its tile empty or damaged
    Nothing, // there are none, or none could be read: the file is the picture of an empty gallery
};

// Composes the cover and writes it over what is there. Throws CExceptionBase if the file can't be written.
// Knows nothing of any document: any thread may call it.
CoverState SaveCover(const QString& path, const std::vector<CoverPicture>& pictures);
