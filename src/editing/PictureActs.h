#pragma once

#include <cstdint>
#include <vector>

#include <QStringList>

#include "document/pictures/PictureInfo.h"
#include "document/project/AbsentFiles.h"
#include "editing/Act.h"

class CGallery;

// Changes of the pictures of a gallery. gallery: its index; the act changes nothing if it isn't there by the
// time that it is applied. Positions count from 0, in ascending order; those outside the list count for
// nothing.

// Files that the gallery has already stay as they are, with their texts, angle and place. The others come
// where the current page adds what is new, or in front of the picture of that position.
Act AddPictures(int32_t gallery, const QStringList& paths);
Act AddPicturesBefore(int32_t gallery, const QStringList& paths, int32_t position);

// From the clipboard, with what belongs to them, in front of the picture of that position; a position outside
// the list: where the current page adds what is new. Those that the gallery has already stay as they are.
Act PastePictures(int32_t gallery, const std::vector<CFilePictureInfo>& pictures, int32_t position);
// Files leave, and child galleries stay. CutPictures: those that are on the clipboard by now.
Act TakeOutFiles(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions);
Act CutPictures(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions);

// An entry that stands for a gallery removes that gallery: see RemoveGalleryAct.
Act RemovePictures(const CGalleryProject& project, int32_t gallery, const std::vector<int32_t>& positions);

// They keep their order among themselves. before: a position, or the number of pictures for the end.
Act MovePicturesBefore(int32_t gallery, const std::vector<int32_t>& positions, int32_t before);
// By one place. Odd on purpose: the first one moved up changes places with the last, and the last one moved
// down with the first.
Act MovePictureUp(int32_t gallery, int32_t position);
Act MovePictureDown(int32_t gallery, int32_t position);

// order: where each picture stands now, by its new position. Nothing happens if it doesn't name every
// position once, as when a picture has come meanwhile.
Act SortPictures(int32_t gallery, const std::vector<int32_t>& order);

// By a quarter turn.
Act TurnPictures(int32_t gallery, const std::vector<int32_t>& positions, bool clockwise);

// With their texts and angles, to where the current page of the target adds what is new. One whose file the
// target has already stays where it is, and so do child galleries.
Act MovePicturesTo(int32_t gallery, const std::vector<int32_t>& positions, int32_t target);
Act CopyPicturesTo(int32_t gallery, const std::vector<int32_t>& positions, int32_t target);

// Pictures and watermarks whose files were found again.
Act RelocateFiles(const std::vector<FileMove>& moves);

// Goes to the page of a gallery that shows the picture, as all acts on pictures do. A page whose file has
// gone meanwhile stays, and says so when it is made.
void ShowPicture(CGallery& gallery, int32_t position);
