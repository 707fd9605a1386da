#pragma once

#include <string>

#include <QSize>
#include <QString>

// The picture that stands on the screen for one whose file is not there: a quiet card of the size of its
// slot, with the name. Texts never go beyond the card: a name that is too long is cut in its middle. Returns
// an address that holds the whole drawing. slot: in pixels; sides below 1 count as 1. Thread-safe.
std::string MakeAbsentCard(const QString& fileName, QSize slot);

// What fits into the width, which is counted in widths of a plain letter: "IMG_2019…0042.jpg". A letter of a
// script with square letters counts as two.
QString CutInTheMiddle(const QString& text, int width);
