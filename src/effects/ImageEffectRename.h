#pragma once

#include "effects/ImageEffect.h"

// Gives a file of the gallery a name that every server can hold. The first effect of a chain, since the
// others put their suffixes before the extension that this one chooses. Immutable; leaves pixels alone: the
// format is chosen by the name at Save.
class CImageEffectRename final : public CImageEffect {
public:
    // "/my pictures/Winter day.JPEG" gives "/my pictures/Winter10day.jpg": the folder stays.
    QString GetResultFileName(const QString& path) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override { return QStringLiteral("rename"); }
};
