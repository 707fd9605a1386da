#include "effects/ImageEffectGraphicsStamp.h"

#include "effects/FileNames.h"
#include "imaging/Canvas.h"

CImageEffectGraphicsStamp::CImageEffectGraphicsStamp(const CImageStampParams& params)
    : CImageEffectStamp(QStringLiteral("g"), params.file),
      image(params.file.isEmpty() ? CImage() : CImage::FromFile(params.file)),
      params(params),
      file(FileIdentity::Of(params.file))
{
    image.AnnounceFullSize();
}

CImageEffectGraphicsStamp::CImageEffectGraphicsStamp(const QString& path, const CImage& image,
                                                     const CStampParams& place)
    : CImageEffectStamp(QStringLiteral("g"), path),
      image(image),
      params{{.position = place.position, .margin = place.margin}, path, 0}
{}

QString CImageEffectGraphicsStamp::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(CImageEffectStamp::GetResultFileName(fileName),
                      QStringLiteral("s") + QString::number(params.transparency));
}

QString CImageEffectGraphicsStamp::GetKey() const
{
    if (!file) {
        return {};
    }
    return QStringLiteral("picture %1 %2 %3 %4 %5 %6 %7 %8")
        .arg(params.position)
        .arg(params.margin)
        .arg(params.transparency)
        .arg(file->size)
        .arg(file->modified)
        .arg(file->changed)
        .arg(file->sample)
        .arg(params.file);
}

QSize CImageEffectGraphicsStamp::GetStampSize(const CCanvas&) const
{
    return image.GetSize();
}

void CImageEffectGraphicsStamp::DrawStamp(CCanvas& canvas, const QRect& rectangle) const
{
    // The rectangle takes a part of the picture as large as itself, so nothing is scaled. That is one pixel
    // more than the picture has in both directions: nothing is drawn there.
    canvas.DrawImage(image, rectangle.topLeft(), (100.0 - params.transparency) * 0.01);
}

std::shared_ptr<const CImageEffectStamp> CImageEffectGraphicsStamp::Copy() const
{
    return std::make_shared<const CImageEffectGraphicsStamp>(*this);
}
