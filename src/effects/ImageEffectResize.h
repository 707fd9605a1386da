#pragma once

#include <QSize>

#include "effects/ImageEffect.h"

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
