#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QDateTime>
#include <QString>

class CGallery;

// By what the pictures of a gallery are put into order.
enum class SortKey {
    Name,      // of the file, numbers in it by their value: "2.jpg" before "10.jpg"
    DateTaken, // as the camera has written it; of a picture without it the date of its file
    FileDate,  // last change
    Reverse,   // as it stands, from its end
};

// Where each picture stands now, by its new position, for SortPictures. Equal ones keep their order, and
// child galleries stay in front of all pictures, in theirs. dateTaken: of a file, invalid if it says none;
// asked once for each file, and only for that key.
std::vector<int32_t> OrderBy(const CGallery& gallery, SortKey key,
                             const std::function<QDateTime(const QString& path)>& dateTaken);
