#include "effects/GeometricEffects.h"

#include "effects/EffectGeometry.h"
#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"

QString CImageEffectResize::GetResultFileName(const QString& fileName) const
{
    const QString crop = options.crop ? QStringLiteral("d") : QString();
    return WithSuffix(fileName, QString::number(box.width()) + QString::number(box.height()) + crop);
}

void CImageEffectResize::Apply(CImageEffectSource& source) const
{
    const CImage& image = source.GetImage();
    if (options.shrinkOnly && FitsInto(image.GetSize(), box)) {
        // Other chains over the same file may ask for less.
        image.AnnounceFullSize();
        return;
    }
    if (options.crop) {
        source.ReplaceImage(image.ResampledAndCropped(FilledSize(image.GetSize(), box), box));
    } else {
        source.ReplaceImage(image.Resampled(FittedSize(image.GetSize(), box)));
    }
}

QString CImageEffectRotate::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(fileName, QStringLiteral("_r") + QString::number(angle));
}

void CImageEffectRotate::Apply(CImageEffectSource& source) const
{
    source.ReplaceImage(source.GetImage().Rotated(angle));
}

QString CImageEffectThumbnail::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(fileName, QString::number(card.width()) + QString::number(card.height()));
}

void CImageEffectThumbnail::Apply(CImageEffectSource& source) const
{
    const CImage& image = source.GetImage();
    source.ReplaceImage(image.OnCard(FittedSize(image.GetSize(), card), card));
}
