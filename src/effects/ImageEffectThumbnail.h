#pragma once

#include <QSize>

#include "effects/ImageEffect.h"

// Lays a picture on the middle of a grey card of a fixed size. A smaller picture is enlarged. Immutable.
class CImageEffectThumbnail final : public CImageEffect {
public:
    // card: in pixels.
    explicit CImageEffectThumbnail(QSize card) : card(card) {}

    // "a.jpg" gives "a10075.jpg".
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override
    {
        return QStringLiteral("card %1 %2").arg(card.width()).arg(card.height());
    }

private:
    const QSize card;
};
