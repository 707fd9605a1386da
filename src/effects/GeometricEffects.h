#pragma once

#include <QSize>

#include "effects/ImageEffect.h"

// The effects that change what size or which way round a picture is.

// Scales a picture into a box and keeps its proportions. Immutable.
class CImageEffectResize final : public CImageEffect {
public:
    struct Options {
        bool shrinkOnly = true; // a picture that fits the box stays as it is
        bool crop = false;      // fill the box and cut off what overflows, centred
    };

    // box: in pixels. Not range-checked: a layout may ask for 0, and gets a picture that can't be saved.
    CImageEffectResize(QSize box, Options options) : box(box), options(options) {}

    // "a.jpg" gives "a640480.jpg", with crop "a640480d.jpg".
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override
    {
        return QStringLiteral("resize %1 %2 %3 %4")
            .arg(box.width())
            .arg(box.height())
            .arg(int{options.shrinkOnly})
            .arg(int{options.crop});
    }

private:
    const QSize box;
    const Options options;
};

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
