#pragma once

#include "effects/ImageEffect.h"

// Makes a picture look like a print that lies on a surface: a pale border with a thin grey outline and a
// shadow. The picture shrinks inside its own bounds and fills what the border leaves; its proportions are
// not kept. Immutable.
class CImageEffectPhotoFrame final : public CImageEffect {
public:
    // frameWidth: pixels of border on each side. shadowOffset: pixels to the right and down. shadowOpacity:
    // percent; beyond 0 to 100 the nearest of the two. Where the border leaves nothing there is no picture.
    CImageEffectPhotoFrame(int frameWidth, int shadowOffset, int shadowOpacity);

    // "a.jpg" gives "af.jpg": the measures are the same in the whole program and not in the name.
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override
    {
        return QStringLiteral("frame %1 %2 %3").arg(frameWidth).arg(shadowOffset).arg(shadowOpacity);
    }

private:
    const int frameWidth;
    const int shadowOffset;
    const int shadowOpacity;
};
