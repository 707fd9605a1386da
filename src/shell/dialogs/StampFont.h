#pragma once

#include <QFont>
#include <QString>

#include "effects/StampParams.h"

// A font as the font dialog and a signature's record exchange it.
struct LogFont {
    int32_t height = 0; // pixels at 96 to the inch; below 0: of the characters without their leading
    int32_t weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    QString faceName = {};

    bool operator==(const LogFont&) const = default;
};

LogFont LogFontOf(const CTextStampParams& params);

// The size goes into the record as the number that it is, in pixels, though the stamp takes it as points: the
// stamp is a third larger than the font in the dialog. Projects hold it so.
void StoreLogFont(const LogFont& font, CTextStampParams& params);

// For the font dialog, which counts in points.
QFont ToQFont(const LogFont& font);
LogFont FromQFont(const QFont& font);
