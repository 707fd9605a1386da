#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

// The artwork of the program. The icons of commands are line drawings in one colour: they take the colour of
// the text that they stand beside, so that they show in light and dark palettes alike, and they are drawn
// anew for each size and pixel density. Screen's thread.

// The icon of a command; name: of a file in artwork, without its extension ("rotate-left"). An empty icon for
// a name that there is none of.
QIcon LoadIcon(const QString& name);

// The icon of the program, in its own colours.
QIcon LoadProgramIcon();

// A drawing of several colours in its own size, for a screen of that many dots to the pixel.
QPixmap LoadPicture(const QString& name, qreal density);
