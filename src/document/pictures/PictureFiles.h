#pragma once

#include <vector>

#include <QString>

// Which files of a folder count as pictures: those whose name ends in .gif, .png, .bmp, .jpg or .pcx, without
// regard to case. Nothing else counts; a ".jpeg" file is left to be added by hand.
bool IsPictureFile(const QString& name);

// Full paths of the pictures of a folder, in name order, hidden ones left out.
std::vector<QString> ListPictureFiles(const QString& folder);
