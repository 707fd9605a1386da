#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "document/content/GalleryState.h"

// Some galleries of a project at a moment, and where the person was: a value, to come back to. It lives no
// longer than the project stays loaded, whose layouts and styles it points to.
struct ProjectState {
    std::map<int32_t, GalleryState> galleries; // by index
    int32_t rootGallery = 0;
    int32_t currentGallery = 0;
    // Of the current gallery, with the page that was shown.
    std::shared_ptr<const CGalleryLayout> currentLayout;

    // Whether the same things are the case in both; the page that was shown doesn't count.
    bool HasSameContent(const ProjectState& other) const
    {
        return galleries == other.galleries && rootGallery == other.rootGallery;
    }
};
