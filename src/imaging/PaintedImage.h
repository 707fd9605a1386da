#pragma once

#include <functional>

#include "imaging/Canvas.h"
#include "imaging/Image.h"

// Paints what becomes of a picture onto a canvas of the picture's size. Called when pixels are asked for, on
// any thread and on several at once, perhaps long after it was handed over: it owns what it needs. picture
// has its pixels already.
using Painting = std::function<void(CCanvas& canvas, const CImage& picture)>;

// The picture repainted, in its own size. Nothing is painted of a picture that has no pixels.
CImage Painted(const CImage& picture, Painting painting);
