#pragma once

#include <cstdint>
#include <map>

#include <QString>

#include "document/content/GalleryContent.h"
#include "editing/Act.h"

// Changes of how a gallery looks. gallery: its index; the act changes nothing where it isn't there.

// By the key of the catalogue. Throws what CGallery::SetTemplate throws.
Act ChooseLayout(int32_t gallery, const QString& key);
// For the gallery and for its current page.
Act ChooseStyle(int32_t gallery, const QString& key);
// Of the elements of the current page.
Act ShowElements(int32_t gallery, const CPageVisibility::Elements& elements);
Act ChangeWatermarks(int32_t gallery, const CGalleryContent::ImageStamps& stamps);
Act ChangeSignatures(int32_t gallery, const CGalleryContent::TextStamps& stamps);
// page: file name of a page of the layout. texts: HTML by the name of the section.
Act ChangeAdvertisements(int32_t gallery, const QString& page, const std::map<QString, QString>& texts);
