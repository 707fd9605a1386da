#include "effects/ImageEffectRotate.h"

#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"

QString CImageEffectRotate::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(fileName, QStringLiteral("_r") + QString::number(angle));
}

void CImageEffectRotate::Apply(CImageEffectSource& source) const
{
    source.ReplaceImage(source.GetImage().Rotated(angle));
}
