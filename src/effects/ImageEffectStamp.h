#pragma once

#include <memory>

#include <QRect>

#include "effects/ImageEffect.h"
#include "effects/StampParams.h"

class CCanvas;

// Something laid over a finished picture, at its own size: base of the watermark and of the signature.
// Immutable while it is shared: an iterator's stamps serve all pictures of its pages and all image workers.
class CImageEffectStamp : public CImageEffect {
public:
    // "a.jpg" gives "a", the key, position and margin in radix 32, ".jpg".
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;

    virtual CStampParams GetStampParams() const = 0;
    // In pixels, on that canvas.
    virtual QSize GetStampSize(const CCanvas& canvas) const = 0;
    // canvas: the picture is on it already. rectangle: of GetStampRect.
    virtual void DrawStamp(CCanvas& canvas, const QRect& rectangle) const = 0;

    // Where the stamp goes: one pixel wider and higher than the stamp. Nothing keeps it inside the picture.
    QRect GetStampRect(const CCanvas& canvas) const;

protected:
    // kind: a letter. named: the text whose characters' sum tells stamps of a kind apart. Two texts may have
    // the same sum; a view then shows the old file.
    CImageEffectStamp(const QString& kind, const QString& named);
    CImageEffectStamp(const CImageEffectStamp&) = default;

    // Pictures are painted later, and perhaps when this effect is gone.
    virtual std::shared_ptr<const CImageEffectStamp> Copy() const = 0;

private:
    const QString nameKey;
};

// The sum of the text's UTF-16 units in 32 bits.
uint32_t CharSum(const QString& text);
