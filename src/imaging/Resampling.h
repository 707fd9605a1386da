#pragma once

#include <QRect>
#include <QSize>

// A scaling of a picture: what size the whole of it gets, and which part of that is wanted. A plain value.
struct Resampling {
    QSize size;
    QRect area;       // inside size
    double scale = 1; // the least at which the picture serves

    bool operator==(const Resampling&) const = default;
};
