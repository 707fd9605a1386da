#pragma once

#include "effects/ImageEffect.h"

// Turns a picture by quarter turns. Immutable.
class CImageEffectRotate final : public CImageEffect {
public:
    // angle: quarter turns clockwise, 0 to 3. Others turn as their remainder by 4 does.
    explicit CImageEffectRotate(int angle) : angle(angle) {}

    // "a.jpg" gives "a_r1.jpg".
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override { return QStringLiteral("rotate %1").arg(angle); }

private:
    const int angle;
};
