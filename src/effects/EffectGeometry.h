#pragma once

#include <QSize>

// The sizes of scaled pictures. Ratios are doubles, and every conversion to pixels truncates toward zero:
// published sizes must not move by a pixel. Nothing is range-checked; a result may be empty or negative.

// Both directions at most as large.
bool FitsInto(QSize picture, QSize box);

// The proportions are kept and the box is filled in one direction. A picture of height 0 has width 0.
QSize FittedSize(QSize picture, QSize box);

// The proportions are kept and the box is covered.
QSize FilledSize(QSize picture, QSize box);
