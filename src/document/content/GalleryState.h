#pragma once

#include <map>
#include <memory>

#include "document/content/GalleryContent.h"
#include "document/pictures/PictureListState.h"

// What a gallery holds at a moment, in parts that are changed for themselves: a value, which shares with
// those of other moments the parts that are the same in both. A state that was taken with another at hand
// holds the other's part wherever nothing has changed, so that comparing addresses is enough. All parts are
// null for a gallery that is not there.
struct GalleryState {
    using Visibility = std::map<QString, CPageVisibility::Elements>;
    struct Stamps {
        CGalleryContent::ImageStamps images;
        CGalleryContent::TextStamps texts;

        bool operator==(const Stamps&) const = default;
    };

    std::shared_ptr<const PictureListState> pictures;
    std::shared_ptr<const CGalleryLayout> layout;
    std::shared_ptr<const GalleryTexts> texts;
    std::shared_ptr<const Visibility> visibility;
    std::shared_ptr<const Stamps> stamps;
    std::shared_ptr<const GalleryRests> rests;

    bool IsThere() const { return pictures != nullptr; }
    bool operator==(const GalleryState&) const = default;
};

// former: one of the same gallery, or an empty one.
GalleryState StateOf(const CGalleryContent& gallery, const GalleryState& former);
