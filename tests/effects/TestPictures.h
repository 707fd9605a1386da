#pragma once

#include <array>
#include <functional>

#include <QByteArray>
#include <QPoint>
#include <QSize>

#include "effects/ImageEffect.h"
#include "imaging/Image.h"
#include "support/ScratchFolder.h"

using Colour = std::array<int, 4>; // red, green, blue, alpha

// A picture in which every colour tells of its place; blue is 0.
CImage Gradient(QSize size);
CImage Plain(QSize size, const Colour& colour);

Colour PixelAt(const CImage& image, QPoint place);

// Saves the picture in the folder and returns its path.
QString Stored(const CScratchFolder& folder, const CImage& image, const QString& name);

// What an effect makes of a picture without a file.
CImage Applied(const CImageEffect& effect, const CImage& image);
