#pragma once

#include "effects/ImageEffectStamp.h"

struct CanvasColour;

// A signature: a text laid over a picture, wrapped where it is wider than the picture. Immutable.
class CImageEffectTextStamp final : public CImageEffectStamp {
public:
    // A font that isn't installed gives way to the system's sans serif; a size below 1 draws nothing.
    explicit CImageEffectTextStamp(const CTextStampParams& params);
    // With the defaults of a new signature.
    CImageEffectTextStamp(const QString& text, int32_t position);

    // "a.jpg" gives "a", "t", the sum of the text's characters, position, margin, a number of font and colour
    // that may be negative, ".jpg".
    QString GetResultFileName(const QString& fileName) const override;
    QString GetKey() const override;

    CStampParams GetStampParams() const override { return params; }
    QSize GetStampSize(const CCanvas& canvas) const override;
    void DrawStamp(CCanvas& canvas, const QRect& rectangle) const override;

    // The colour of the text there: the chosen one, else black on a bright picture and white on a dark one,
    // by five points of it.
    CanvasColour GetColour(const CCanvas& canvas, const QRect& rectangle) const;

protected:
    std::shared_ptr<const CImageEffectStamp> Copy() const override;

private:
    const CTextStampParams params;
};
