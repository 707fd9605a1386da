#pragma once

#include <memory>
#include <vector>

#include <QSize>
#include <QString>
#include <QStringList>

#include "document/pictures/PictureInfo.h"

// The pictures of a folder, with a thumbnail of each: a card of one size with the date of the file on it.
// Cards are kept in CImageCache.

struct FolderPictures {
    enum class State { Listed, Missing, NotReadable };

    State state = State::Listed;
    std::vector<std::unique_ptr<CFilePictureInfo>> pictures; // in name order
    // Files whose picture could not be read, or not all of it: perhaps they are still being written.
    QStringList unfinished;
};

// A thumbnail that has been made.
struct FolderCard {
    int position = 0; // among the pictures of the folder, from 0
    QString path;     // of the picture
    QString thumbnailPath;
};

// Who wants the pictures of a folder. Called on several threads.
class CFolderPicturesListener {
public:
    // False if the pictures are not wanted any more.
    virtual bool IsWanted() const = 0;
    // Every fifth picture, one call at a time. count: of the thumbnails so far. cards: those since the last
    // call.
    virtual void OnProgress(int count, const std::vector<FolderCard>& cards) = 0;

protected:
    ~CFolderPicturesListener() = default;
};

// folder: a full path. card: in pixels. Works with one thread per core and returns when all are done, or, at
// the next rows of the pictures in progress, when they are not wanted any more; the collection has no meaning
// then. A picture that can't be read has an empty card with its name. Throws CExceptionBase if the cards have
// no place.
FolderPictures FillPicturesCollection(const QString& folder, QSize card, CFolderPicturesListener& listener);
