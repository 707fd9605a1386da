#pragma once

#include <vips/vips8>

// The picture in 8-bit sRGB, with three bands, or with four if it has alpha. An embedded profile other than
// sRGB's is applied; a broken one is ignored; a picture without one is sRGB already and keeps its values.
// Nothing is computed yet. Throws vips::VError.
vips::VImage ToSrgb(const vips::VImage& image);
