#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "document/pictures/PictureInfo.h"

// What a list of pictures holds at a moment: a value, which shares with those of other moments whatever is
// the same in both. So two states of which one was taken with the other at hand are equal where they are the
// same objects. May be read on any thread.
struct PictureListState {
    // The entry that stands for a child gallery; what it shows lives in the child.
    struct Child {
        int32_t gallery = 0; // index
        int32_t angle = 0;
        QString nameSuffix;
        CXmlRest rest;

        bool operator==(const Child&) const = default;
    };
    using Entry = std::variant<std::shared_ptr<const CFilePictureInfo>, Child>;

    std::vector<Entry> entries; // in their order
    CVariableMap variables;     // of the list
    DateValue minDate = 0;
    DateValue maxDate = 0;

    bool operator==(const PictureListState&) const = default;
};
