#include "effects/ImageEffectThumbnail.h"

#include "effects/EffectGeometry.h"
#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"

QString CImageEffectThumbnail::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(fileName, QString::number(card.width()) + QString::number(card.height()));
}

void CImageEffectThumbnail::Apply(CImageEffectSource& source) const
{
    const CImage& image = source.GetImage();
    source.ReplaceImage(image.OnCard(FittedSize(image.GetSize(), card), card));
}
