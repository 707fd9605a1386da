#pragma once

#include <cstdint>
#include <vector>

#include <QString>

#include "common/Variant.h"
#include "editing/Act.h"

// Changes of texts and links. gallery: its index; the act changes nothing where it isn't there.

// A text of the document by where it is kept.
struct TextPlace {
    enum class Owner {
        Gallery,     // the object "gallery"
        PictureList, // the object "content"
        Page,        // one output page of a layout's page
        Picture,     // or the child gallery that stands there
    };

    Owner owner = Owner::Gallery;
    QString name;           // of the variable
    QString page = {};      // of Page: the base name
    int32_t pageNumber = 0; // of Page, counted from 0
    int32_t position = 0;   // of Picture
};

struct TextChange {
    TextPlace place;
    CVariant text; // empty: the layout's own takes its place again
};

// Of one dialog: a text, or a link with its address.
Act EditText(const CGalleryProject& project, int32_t gallery, const TextChange& change);
Act EditLink(const CGalleryProject& project, int32_t gallery, const std::vector<TextChange>& changes);

// Titles and descriptions of many pictures at once.
Act EditPictureTexts(const CGalleryProject& project, int32_t gallery, const std::vector<TextChange>& changes);
