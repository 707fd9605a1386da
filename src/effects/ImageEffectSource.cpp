#include "effects/ImageEffectSource.h"

#include "common/Exceptions.h"
#include "common/Text.h"
#include "effects/FileNames.h"

namespace {

QString ReasonLine(const QString& path, const QString& sourcePath, const ImageSaveResult& result)
{
    if (result.status == ImageSaveResult::Status::NotWritten) {
        return Text(StringId::ImageFileNotWritten, path, result.reason);
    }
    return sourcePath.isEmpty() ? result.reason
                                : Text(StringId::SourceNotReadable, sourcePath, result.reason);
}

} // namespace

void ThrowImageNotSaved(const QString& path, const QString& sourcePath, const ImageSaveResult& result)
{
    throw CUnexpectedException("ImageEffect", __LINE__,
                               Text(StringId::ImageNotSaved, path) + QLatin1Char('\n') +
                                   ReasonLine(path, sourcePath, result));
}

CImageEffectSource::CImageEffectSource(const QString& path) : CImageEffectSource(CImage::FromFile(path), path)
{}

CImageEffectSource::CImageEffectSource(const CImage& image, const QString& sourcePath)
    : image(image), sourcePath(sourcePath)
{}

CImageEffectSource::CImageEffectSource(const CImage& image) : image(image) {}

CImageEffectSource::CImageEffectSource(QSize size) : image(CImage::Blank(size)) {}

CImage CImageEffectSource::DetachImage()
{
    return std::exchange(image, CImage());
}

void CImageEffectSource::Save(const QString& path) const
{
    // A file is never written over itself.
    if (!sourcePath.isEmpty() && EqualsIgnoreCase(path, sourcePath)) {
        return;
    }
    const ImageSaveResult result = image.Save(path, {.format = FormatForPath(path), .quality = 100});
    if (result.status != ImageSaveResult::Status::Saved) {
        ThrowImageNotSaved(path, sourcePath, result);
    }
}
